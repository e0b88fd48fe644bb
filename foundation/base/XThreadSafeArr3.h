#pragma once

#include "foundation/base/XApi.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <vector>

/// A block of samples with three extents, x fastest, then y, then z, without gaps, and a lock that
/// its readers and writers share.
///
/// The sizes and the buffer change only in Create and Free, which take the lock for writing
/// themselves. Who reads holds LockForRead, who writes samples LockForWrite, for as long as the
/// pointer is in use; a thread must not lock twice or call Create or Free under its own lock.
class XAPI XThreadSafeArr3
{
public:
    XThreadSafeArr3() = default;
    XThreadSafeArr3(const XThreadSafeArr3&) = delete;
    XThreadSafeArr3& operator=(const XThreadSafeArr3&) = delete;

    /// Makes a block of zeros; what was there is dropped.
    /// @param elementSize  bytes of one sample
    /// @return 0 when a size is below 1 or memory does not suffice; the block is then as it was.
    int Create(int elementSize, int xSize, int ySize, int zSize);
    void Free();

    [[nodiscard]] std::shared_lock<std::shared_mutex> LockForRead() const
    {
        return std::shared_lock(m_mutex);
    }
    [[nodiscard]] std::unique_lock<std::shared_mutex> LockForWrite()
    {
        return std::unique_lock(m_mutex);
    }

    // under a lock
    void* GetBuffer() { return m_data.data(); } ///< null when empty
    const void* GetBuffer() const { return m_data.data(); }
    std::size_t GetByteSize() const { return m_data.size(); }
    int GetElementSize() const { return m_elementSize; }
    int GetXSize() const { return m_xSize; }
    int GetYSize() const { return m_ySize; }
    int GetZSize() const { return m_zSize; }
    /// The sample, null when the position lies outside.
    void* GetAt(int x, int y, int z);

private:
    mutable std::shared_mutex m_mutex;
    std::vector<unsigned char> m_data;
    int m_elementSize = 0;
    int m_xSize = 0;
    int m_ySize = 0;
    int m_zSize = 0;
};
