#include "foundation/raster/XTileMemory.h"

#include <map>
#include <mutex>
#include <vector>

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kMostKept = 0; // a block in use again would hide a late access
#else
constexpr std::size_t kMostKept = std::size_t{16} << 20;
#endif
constexpr std::size_t kLeastKept = std::size_t{16} << 10; // smaller ones leave no holes to speak of

struct tagXTileStore
{
    std::mutex mutex;
    std::map<std::size_t, std::vector<unsigned char*>> blocks; // by size
    std::size_t keptBytes = 0;
};

/// Never destroyed: tiles may outlive everything else of the program.
tagXTileStore& GetStore()
{
    static auto* const store = new tagXTileStore;
    return *store;
}

} // namespace

void tagXTileMemoryDelete::operator()(unsigned char* block) const noexcept
{
    if (block && byteSize >= kLeastKept) {
        tagXTileStore& store = GetStore();
        const std::scoped_lock lock(store.mutex);
        if (store.keptBytes + byteSize <= kMostKept) {
            try {
                store.blocks[byteSize].push_back(block);
                store.keptBytes += byteSize;
                return;
            } catch (...) { // no room to note it: it goes for good
            }
        }
    }
    delete[] block;
}

XTileMemory XfnNewTileMemory(std::size_t byteSize)
{
    if (byteSize >= kLeastKept) {
        tagXTileStore& store = GetStore();
        const std::scoped_lock lock(store.mutex);
        const auto found = store.blocks.find(byteSize);
        if (found != store.blocks.end()) {
            unsigned char* const block = found->second.back();
            found->second.pop_back();
            if (found->second.empty()) store.blocks.erase(found);
            store.keptBytes -= byteSize;
            return XTileMemory(block, {byteSize});
        }
    }
    return XTileMemory(new unsigned char[byteSize], {byteSize});
}
