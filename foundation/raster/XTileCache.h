#pragma once

#include "foundation/raster/XTile.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <unordered_map>

/// Which tile: the band that owns it, the level, and the place within the level.
struct tagXTileKey
{
    std::uint64_t owner = 0; ///< from XTileCache::NewOwner, never used twice
    int level = 0;
    int tx = 0;
    int ty = 0;

    friend bool operator==(const tagXTileKey&, const tagXTileKey&) = default;
};

template <>
struct std::hash<tagXTileKey>
{
    std::size_t operator()(const tagXTileKey& key) const noexcept;
};

/// Decoded tiles within one byte budget, the least recently used going first.
///
/// Only a store: it decodes nothing. Tiles are shared, so a caller may keep a tile for as long as
/// it likes; eviction only drops the cache's share. A tile larger than the budget is not kept.
/// Threads: every operation from any thread. The shards have a lock each and no operation holds two.
class XAPI XTileCache
{
public:
    /// The cache of the process: a quarter of the physical memory, at most 2 GiB.
    static XTileCache& Get();
    static std::uint64_t NewOwner();

    explicit XTileCache(std::size_t budgetBytes);
    XTileCache(const XTileCache&) = delete;
    XTileCache& operator=(const XTileCache&) = delete;

    /// @return null when the tile is not there
    std::shared_ptr<const XTile> Find(const tagXTileKey& key);
    void Insert(const tagXTileKey& key, std::shared_ptr<const XTile> tile);

    void Remove(const tagXTileKey& key);
    void RemoveOwner(std::uint64_t owner);
    /// The tiles of the levels from `first` on.
    void RemoveLevels(std::uint64_t owner, int first);
    void Clear();

    void SetBudget(std::size_t budgetBytes);
    std::size_t GetBudget() const { return m_budget.load(std::memory_order_relaxed); }
    std::size_t GetByteSize() const { return m_bytes.load(std::memory_order_relaxed); }

private:
    static constexpr int kShardCount = 16;
    static constexpr std::uint64_t kNever = UINT64_MAX;

    struct tagEntry
    {
        tagXTileKey key;
        std::shared_ptr<const XTile> tile;
        std::uint64_t tick;
    };
    struct tagShard
    {
        std::mutex mutex;
        std::list<tagEntry> entries; // newest first
        std::unordered_map<tagXTileKey, std::list<tagEntry>::iterator> places;
        std::atomic<std::uint64_t> oldestTick{kNever};
    };

    tagShard& ShardOf(const tagXTileKey& key);
    static void NoteOldest(tagShard& shard);
    void Shrink();
    template <class Wanted>
    void RemoveIf(const Wanted& isWanted);

    std::array<tagShard, kShardCount> m_shards;
    std::atomic<std::size_t> m_budget;
    std::atomic<std::size_t> m_bytes{0};
    std::atomic<std::uint64_t> m_tick{0};
};
