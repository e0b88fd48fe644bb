#include "foundation/raster/XTileCache.h"

#include <unistd.h>

#include <algorithm>

std::size_t std::hash<tagXTileKey>::operator()(const tagXTileKey& key) const noexcept
{
    std::uint64_t h = key.owner * 0x9E3779B97F4A7C15ull;
    h ^= (static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.tx)) << 32 |
          static_cast<std::uint32_t>(key.ty)) +
         static_cast<std::uint64_t>(key.level) * 0xD1B54A32D192ED03ull;
    h ^= h >> 32;
    h *= 0xD6E8FEB86659FD93ull;
    h ^= h >> 32;
    return static_cast<std::size_t>(h);
}

XTileCache& XTileCache::Get()
{
    static XTileCache* const cache = [] {
        const long pages = ::sysconf(_SC_PHYS_PAGES);
        const long pageBytes = ::sysconf(_SC_PAGESIZE);
        std::size_t budget = std::size_t(512) << 20;
        if (pages > 0 && pageBytes > 0)
            budget = static_cast<std::size_t>(pages) * static_cast<std::size_t>(pageBytes) / 4;
        // never destroyed: bands of static files leave after everything else
        return new XTileCache(std::min(budget, std::size_t(2) << 30));
    }();
    return *cache;
}

std::uint64_t XTileCache::NewOwner()
{
    static std::atomic<std::uint64_t> next{1};
    return next.fetch_add(1, std::memory_order_relaxed);
}

XTileCache::XTileCache(std::size_t budgetBytes) : m_budget(budgetBytes) {}

XTileCache::tagShard& XTileCache::ShardOf(const tagXTileKey& key)
{
    // the low bits choose the bucket within the shard's own table
    return m_shards[(std::hash<tagXTileKey>()(key) >> 40) % kShardCount];
}

void XTileCache::NoteOldest(tagShard& shard)
{
    shard.oldestTick.store(shard.entries.empty() ? kNever : shard.entries.back().tick,
                           std::memory_order_relaxed);
}

std::shared_ptr<const XTile> XTileCache::Find(const tagXTileKey& key)
{
    tagShard& shard = ShardOf(key);
    const std::lock_guard lock(shard.mutex);
    const auto place = shard.places.find(key);
    if (place == shard.places.end()) return nullptr;
    place->second->tick = m_tick.fetch_add(1, std::memory_order_relaxed);
    shard.entries.splice(shard.entries.begin(), shard.entries, place->second);
    NoteOldest(shard);
    return place->second->tile;
}

void XTileCache::Insert(const tagXTileKey& key, std::shared_ptr<const XTile> tile)
{
    if (!tile || tile->GetByteSize() > GetBudget()) return;
    const std::size_t bytes = tile->GetByteSize();
    std::shared_ptr<const XTile> replaced; // freed outside the lock
    {
        tagShard& shard = ShardOf(key);
        const std::lock_guard lock(shard.mutex);
        const std::uint64_t tick = m_tick.fetch_add(1, std::memory_order_relaxed);
        const auto place = shard.places.find(key);
        if (place != shard.places.end()) {
            replaced = std::move(place->second->tile);
            m_bytes.fetch_sub(replaced->GetByteSize(), std::memory_order_relaxed);
            place->second->tile = std::move(tile);
            place->second->tick = tick;
            shard.entries.splice(shard.entries.begin(), shard.entries, place->second);
        } else {
            shard.entries.push_front({key, std::move(tile), tick});
            try {
                shard.places.emplace(key, shard.entries.begin());
            } catch (...) {
                shard.entries.pop_front();
                throw;
            }
        }
        m_bytes.fetch_add(bytes, std::memory_order_relaxed);
        NoteOldest(shard);
    }
    if (GetByteSize() > GetBudget()) Shrink();
}

void XTileCache::Shrink()
{
    while (GetByteSize() > GetBudget()) {
        const auto oldest = std::min_element(
            m_shards.begin(), m_shards.end(), [](const tagShard& a, const tagShard& b) {
                return a.oldestTick.load(std::memory_order_relaxed) <
                       b.oldestTick.load(std::memory_order_relaxed);
            });
        if (oldest->oldestTick.load(std::memory_order_relaxed) == kNever) return;
        std::shared_ptr<const XTile> dropped; // freed outside the lock
        const std::lock_guard lock(oldest->mutex);
        if (oldest->entries.empty()) continue; // another thread was faster
        dropped = std::move(oldest->entries.back().tile);
        oldest->places.erase(oldest->entries.back().key);
        oldest->entries.pop_back();
        m_bytes.fetch_sub(dropped->GetByteSize(), std::memory_order_relaxed);
        NoteOldest(*oldest);
    }
}

template <class Wanted>
void XTileCache::RemoveIf(const Wanted& isWanted)
{
    for (tagShard& shard : m_shards) {
        std::list<tagEntry> dropped; // freed outside the lock
        const std::lock_guard lock(shard.mutex);
        for (auto it = shard.entries.begin(); it != shard.entries.end();) {
            const auto next = std::next(it);
            if (isWanted(it->key)) {
                m_bytes.fetch_sub(it->tile->GetByteSize(), std::memory_order_relaxed);
                shard.places.erase(it->key);
                dropped.splice(dropped.end(), shard.entries, it);
            }
            it = next;
        }
        NoteOldest(shard);
    }
}

void XTileCache::Remove(const tagXTileKey& key)
{
    std::shared_ptr<const XTile> dropped; // freed outside the lock
    tagShard& shard = ShardOf(key);
    const std::lock_guard lock(shard.mutex);
    const auto place = shard.places.find(key);
    if (place == shard.places.end()) return;
    dropped = std::move(place->second->tile);
    m_bytes.fetch_sub(dropped->GetByteSize(), std::memory_order_relaxed);
    shard.entries.erase(place->second);
    shard.places.erase(place);
    NoteOldest(shard);
}

void XTileCache::RemoveOwner(std::uint64_t owner)
{
    RemoveIf([owner](const tagXTileKey& key) { return key.owner == owner; });
}

void XTileCache::RemoveLevels(std::uint64_t owner, int first)
{
    RemoveIf([=](const tagXTileKey& key) { return key.owner == owner && key.level >= first; });
}

void XTileCache::Clear()
{
    RemoveIf([](const tagXTileKey&) { return true; });
}

void XTileCache::SetBudget(std::size_t budgetBytes)
{
    m_budget.store(budgetBytes, std::memory_order_relaxed);
    Shrink();
}
