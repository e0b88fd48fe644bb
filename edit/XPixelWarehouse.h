#pragma once

#include "foundation/base/XApi.h"

#include <cstddef>
#include <vector>

/// Counts of how many clones share the pixels of a picture or raster patch.
///
/// The pixels are named by one or two addresses and not touched here: the objects hold them by
/// count of their own. Threads: the user interface thread.
class XAPI XPixelWarehouse
{
public:
    struct Record
    {
        const void* pixels;
        const void* header; ///< a second name of the same pixels; null when there is none
        int count;
    };

    int GetSize() const { return static_cast<int>(m_records.size()); }
    int IsEmpty() const { return m_records.empty(); }
    const Record& GetAt(int index) const { return m_records.at(static_cast<std::size_t>(index)); }

    /// The count of the record that has one of the two addresses rises, else there is a new record.
    void Add(const void* pixels, const void* header);
    void AddByPixels(const void* pixels) { Add(pixels, kNoHeader); }
    /// Lowers the count; a record of count 1 goes.
    /// @return the count before, 0 without a record
    int Release(const void* pixels, const void* header);
    int ReleaseByPixels(const void* pixels) { return Release(pixels, kNoHeader); }
    void Clear() { m_records.clear(); }

private:
    static const void* const kNoHeader;
    std::vector<Record>::iterator Find(const void* pixels, const void* header);

    std::vector<Record> m_records;
};
