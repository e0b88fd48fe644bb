#include "foundation/platform/XFileMap.h"

#include "foundation/base/XFile.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <new>

/// The ranges of all maps, as the signal handler may read them: no lock, no memory of the heap.
struct XFileMap::tagRegistry
{
    /// A range is written by one thread at a time, under the mutex, with an odd version meanwhile.
    struct tagSlot
    {
        std::atomic<std::uint32_t> version;
        std::atomic<std::uintptr_t> begin; // 0: free
        std::atomic<std::uintptr_t> end;
        std::atomic<int> isLost;
    };
    static_assert(std::atomic<std::uintptr_t>::is_always_lock_free);

    static inline std::array<tagSlot, kMaxMaps> slots;
    static inline std::atomic<int> used{0}; // slots beyond were never taken
    static inline struct sigaction former;  // written before the handler stands
    static inline std::uintptr_t pageSize = 0;
    static inline std::mutex mutex; // what is not the handler's

    static void Set(tagSlot& slot, std::uintptr_t begin, std::uintptr_t end)
    {
        // a reader that sees a new end sees the odd version before it as well
        const std::uint32_t version = slot.version.load(std::memory_order_relaxed);
        slot.version.store(version + 1, std::memory_order_relaxed);
        slot.begin.store(begin, std::memory_order_release);
        slot.end.store(end, std::memory_order_release);
        slot.version.store(version + 2, std::memory_order_release);
    }

    /// The slot whose map holds the address; null when none does.
    static tagSlot* Find(std::uintptr_t address, std::uintptr_t& end)
    {
        const int count = used.load(std::memory_order_acquire);
        for (int i = 0; i < count; ++i) {
            // A thread faults in a map that it keeps alive, so its own slot is at rest; one that
            // moves meanwhile is another's and does not hold the address.
            tagSlot& slot = slots[static_cast<std::size_t>(i)];
            const std::uint32_t version = slot.version.load(std::memory_order_acquire);
            const std::uintptr_t begin = slot.begin.load(std::memory_order_acquire);
            end = slot.end.load(std::memory_order_acquire);
            if (version % 2 == 0 && version == slot.version.load(std::memory_order_relaxed) &&
                begin != 0 && address >= begin && address < end)
                return &slot;
        }
        return nullptr;
    }

    static bool PutZeros(std::uintptr_t page, std::uintptr_t end)
    {
        // The system call itself: the C library promises nothing for its own form in a handler,
        // and a sanitizer takes that one for a write.
        static_assert(sizeof(long) == sizeof(void*));
        return syscall(SYS_mmap, page, end - page, PROT_READ,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED | MAP_NORESERVE, -1, 0) != -1;
    }

    static void Handle(int signal, siginfo_t* info, void* context)
    {
        const int savedErrno = errno;
        const bool isFault = info->si_code > 0; // not one that a process sent
        std::uintptr_t end = 0;
        const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(info->si_addr);
        if (tagSlot* slot = isFault ? Find(address, end) : nullptr) {
            slot->isLost.store(1, std::memory_order_release);
            const std::uintptr_t page = address / pageSize * pageSize;
            if (PutZeros(page, end)) {
                errno = savedErrno;
                return;
            }
        }
        HandOn(signal, info, context, isFault);
        errno = savedErrno;
    }

    static void HandOn(int signal, siginfo_t* info, void* context, bool isFault)
    {
        if (former.sa_flags & SA_SIGINFO) {
            former.sa_sigaction(signal, info, context);
        } else if (former.sa_handler != SIG_DFL && former.sa_handler != SIG_IGN) {
            former.sa_handler(signal);
        } else if (former.sa_handler == SIG_DFL || isFault) {
            // a fault cannot be ignored: it comes again on return and finds nobody
            struct sigaction none
            {};
            none.sa_handler = SIG_DFL;
            sigaction(signal, &none, nullptr);
            if (!isFault) raise(signal); // blocked until the return
        }
    }

    /// Under the mutex.
    static bool Install()
    {
        static bool isInstalled = false;
        if (isInstalled) return true;
        pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
        if (sigaction(SIGBUS, nullptr, &former) != 0) return false;
        struct sigaction action
        {};
        action.sa_sigaction = Handle;
        action.sa_mask = former.sa_mask;
        action.sa_flags = SA_SIGINFO | SA_ONSTACK;
        isInstalled = sigaction(SIGBUS, &action, nullptr) == 0;
        return isInstalled;
    }

    /// Under the mutex. @return -1 when all are taken
    static int FindFree()
    {
        const int count = used.load(std::memory_order_relaxed);
        for (int i = 0; i < count; ++i)
            if (slots[static_cast<std::size_t>(i)].begin.load(std::memory_order_relaxed) == 0)
                return i;
        if (count == kMaxMaps) return -1;
        used.store(count + 1, std::memory_order_release);
        return count;
    }
};

std::shared_ptr<const XFileMap> XFileMap::Map(const XFile& file, std::size_t size)
{
    using Registry = tagRegistry;
    struct stat info;
    if (size == 0 || file.GetDescriptor() < 0 || fstat(file.GetDescriptor(), &info) != 0 ||
        !S_ISREG(info.st_mode) || static_cast<std::uint64_t>(info.st_size) < size)
        return nullptr;
    const std::shared_ptr<XFileMap> map(new (std::nothrow) XFileMap);
    if (!map) return nullptr;
    const std::lock_guard lock(Registry::mutex);
    if (!Registry::Install()) return nullptr;
    const int index = Registry::FindFree();
    if (index < 0 || size > SIZE_MAX - Registry::pageSize) return nullptr;
    void* const data = mmap(nullptr, size, PROT_READ, MAP_SHARED, file.GetDescriptor(), 0);
    if (data == MAP_FAILED) return nullptr;
    map->m_data = static_cast<const unsigned char*>(data);
    map->m_size = size;
    map->m_mappedSize = (size + Registry::pageSize - 1) / Registry::pageSize * Registry::pageSize;
    map->m_slot = index;
    Registry::tagSlot& slot = Registry::slots[static_cast<std::size_t>(index)];
    slot.isLost.store(0, std::memory_order_relaxed);
    map->m_isLost = &slot.isLost;
    const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(data);
    Registry::Set(slot, begin, begin + map->m_mappedSize);
    return map;
}

XFileMap::~XFileMap()
{
    if (m_slot < 0) return;
    const std::lock_guard lock(tagRegistry::mutex);
    // the range goes first: another mapping may take the address at once
    tagRegistry::Set(tagRegistry::slots[static_cast<std::size_t>(m_slot)], 0, 0);
    munmap(const_cast<unsigned char*>(m_data), m_mappedSize);
}

void XFileMap::Prefetch(std::size_t offset, std::size_t count) const
{
#ifdef MADV_POPULATE_READ
    if (offset >= m_size) return;
    count = std::min(count, m_size - offset);
    const std::size_t page = static_cast<std::size_t>(tagRegistry::pageSize);
    const std::size_t begin = offset / page * page;
    const int savedErrno = errno;
    // a hint: older systems refuse it, and a lost page is told by the read that follows
    madvise(const_cast<unsigned char*>(m_data) + begin, offset + count - begin, MADV_POPULATE_READ);
    errno = savedErrno;
#else
    (void)offset;
    (void)count;
#endif
}
