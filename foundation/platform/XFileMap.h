#pragma once

#include "foundation/base/XApi.h"

#include <atomic>
#include <cstddef>
#include <memory>

class XFile;

/// A file mapped into memory for reading, that survives a file which is cut meanwhile.
///
/// The system answers a read behind the end of a mapped file with SIGBUS, which ends a process. The
/// first map installs a handler for it, once and for good: a fault in one of these maps puts zero
/// pages from there to the end of the map and raises its lost flag; every other SIGBUS goes on to
/// the handler that was there before, or ends the process as it would have. Whoever installs a
/// handler of his own later hands on what is not his. Errors of the disk or of the network come as
/// the same signal and are answered the same.
///
/// What was read counts only when the flag is down afterwards:
///
///     const auto map = XFileMap::Map(file, size);
///     if (!map) ... read by positions instead ...
///     sum = AddUp(map->GetData(), map->GetSize());
///     if (map->IsLost()) ... it became shorter: the sum is worth nothing ...
///
/// Another process may also overwrite the bytes at any time: what must not change between a check
/// and its use is copied first.
/// Threads: any; a map is read only while a pointer to it is held. A thread that reads one must not
/// have SIGBUS blocked.
class XAPI XFileMap
{
public:
    static constexpr int kMaxMaps = 4096; ///< of the process, at one time

    /// Maps the first `size` bytes of an open file; the map stands after the file is closed.
    /// @return null when it cannot be mapped: the file is in memory or no plain file, `size` is 0 or
    ///         beyond its end, kMaxMaps are there, or the system refuses
    static std::shared_ptr<const XFileMap> Map(const XFile& file, std::size_t size);

    XFileMap(const XFileMap&) = delete;
    XFileMap& operator=(const XFileMap&) = delete;
    ~XFileMap();

    const unsigned char* GetData() const { return m_data; } ///< on a page boundary
    std::size_t GetSize() const { return m_size; }

    /// 1 once a part of the file was gone when it was read. It never falls again.
    int IsLost() const { return m_isLost->load(std::memory_order_acquire); }

    /// Has the system bring a piece into memory at once, where it can: faster than page after page.
    /// Bytes outside the map are left alone.
    void Prefetch(std::size_t offset, std::size_t count) const;

private:
    struct tagRegistry;

    XFileMap() = default;

    const unsigned char* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_mappedSize = 0; // whole pages
    int m_slot = -1;
    const std::atomic<int>* m_isLost = nullptr; // in the slot
};
