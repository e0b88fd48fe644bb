#pragma once

#include "foundation/base/XString.h"

#include <sys/stat.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <tuple>
#include <vector>

class GDALDataset;

/// For the sources of this folder only: one image file, open in as many handles as threads read it at
/// once, a few at most. The bands of a file share it; the last one closes the file.
///
/// The file may change under an open program. One that was written over is refused from then on; one
/// that was deleted or replaced goes on through the handles that are open.
class XGdalSource
{
public:
    /// A handle that belongs to the calling thread while this lives; null when there is none.
    class Handle
    {
    public:
        Handle() = default;
        Handle(XGdalSource* source, GDALDataset* dataset) : m_source(source), m_dataset(dataset) {}
        Handle(Handle&& other) noexcept : m_source(other.m_source), m_dataset(other.m_dataset)
        {
            other.m_dataset = nullptr;
        }
        Handle& operator=(Handle&&) = delete;
        ~Handle();
        explicit operator bool() const { return m_dataset != nullptr; }
        GDALDataset* operator->() const { return m_dataset; }
        GDALDataset* Get() const { return m_dataset; }

    private:
        XGdalSource* m_source = nullptr;
        GDALDataset* m_dataset = nullptr;
    };

    /// The right to decode one place of the file, so that two threads do not decode it both.
    class Turn
    {
    public:
        using Key = std::tuple<int, int, int>; ///< level, tile column (-1 for the row), tile row
        /// Waits for who has it. Not valid when `abort` rose meanwhile.
        Turn(XGdalSource& source, const Key& key, const std::atomic<int>* abort);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        bool IsMine() const { return m_isMine; }

    private:
        XGdalSource& m_source;
        Key m_key;
        bool m_isMine = false;
    };

    /// A band that wants its tiles filled together with those of its siblings.
    struct tagMember
    {
        std::uint64_t owner;
        int bandNumber; // from 1
        std::int64_t lastMiss;
    };

    /// Opens with one of `drivers` (a list that ends in null; null for all).
    /// @return null with a sentence in `error`
    static std::shared_ptr<XGdalSource> Open(const XString& path, const char* const* drivers,
                                             XString& error);
    ~XGdalSource();

    const XString& GetPath() const { return m_path; }
    const XString& GetDriverName() const { return m_driverName; }

    /// 0 when the file was written over, replaced or deleted since it was opened.
    int IsAsOpened() const
    {
        bool isInPlace = false;
        return IsSameFile(isInPlace);
    }

    Handle Acquire(const std::atomic<int>* abort, XString& message);
    void LimitHandles(int count);

    /// Rises when the levels of the bands come from somewhere else; tiles that were decoded before
    /// are then not kept.
    std::uint64_t GetGeneration() const { return m_generation.load(); }
    void NoteNewLevels() { ++m_generation; }

    void AddMember(std::uint64_t owner, int bandNumber);
    void RemoveMember(std::uint64_t owner);
    /// Notes that `owner` misses a tile. @return the members to fill with it, `owner` first: all
    /// when there are few, else those that missed one lately
    std::vector<tagMember> NoteMiss(std::uint64_t owner);

private:
    XGdalSource(const XString& path, const char* const* drivers);
    GDALDataset* OpenDataset(XString& error) const;
    void Release(GDALDataset* dataset);
    int IsSameFile(bool& isInPlace) const;

    XString m_path;
    XString m_driverName;
    const char* const* m_drivers;
    struct stat m_status = {};
    bool m_hasStatus = false;
    int m_width = 0;
    int m_height = 0;
    int m_bands = 0;

    std::atomic<std::uint64_t> m_generation{0};

    std::mutex m_mutex; // everything below
    std::condition_variable m_changed;
    std::vector<GDALDataset*> m_idle;
    int m_handles = 0;
    int m_maxHandles = 4;
    std::set<Turn::Key> m_turns;
    std::vector<tagMember> m_members;
    std::int64_t m_misses = 0;
};

/// The pyramid that was made for a raster file, open; null when there is none that can be read.
std::shared_ptr<XGdalSource> XfnOpenLevels(const XString& path);

/// What GDAL learns about a file stays in the memory: nothing is written beside the user's image.
void XfnKeepPamUnwritten(GDALDataset* dataset);
