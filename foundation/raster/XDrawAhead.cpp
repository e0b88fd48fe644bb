#include "foundation/raster/XDrawAhead.h"

#include "foundation/base/XString.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDrawHelpers.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int kLead = 64;      // cells: bounds what is decoded for a drawing that is given up
constexpr int kWorthwhile = 3; // missing cells below which a thread costs more than it gives

} // namespace

/// What outlives the drawing while a helper has a tile in hand.
struct XDrawAhead::tagShared
{
    struct tagSource
    {
        XDMBand* band;
        std::shared_ptr<XDMBand> keeper;
        int level;
    };

    tagShared(const tagXDrawJob& job, std::shared_ptr<const XDrawGrid> cells)
        : grid(std::move(cells)), count(grid->GetNumOfCells()), drawingAbort(job.abort)
    {
        for (int ch = 0; ch < 3; ++ch) {
            const tagXDrawChannel& channel = job.channels[ch];
            sources[ch] = {channel.band, channel.keeper, channel.level};
        }
    }

    int IsCached(int cell) const
    {
        for (int ch = 0; ch < 3; ++ch) {
            int tx = 0, ty = 0;
            if (!grid->GetTileOf(cell, ch, tx, ty)) continue;
            if (!sources[ch].band->IsTileAtHand(sources[ch].level, tx, ty)) return 0;
        }
        return 1;
    }

    /// The abort word of the drawing stops helpers sooner than the drawing may come to it.
    bool IsOver() const
    {
        return isOver.load(std::memory_order_relaxed) ||
               (drawingAbort && drawingAbort->load(std::memory_order_relaxed));
    }

    void Decode(int cell, const std::atomic<int>* abort) const
    {
        for (int ch = 0; ch < 3; ++ch) {
            int tx = 0, ty = 0;
            if (IsOver()) return;
            if (!grid->GetTileOf(cell, ch, tx, ty)) continue;
            XString message; // the drawing thread meets the same failure and counts it
            sources[ch].band->GetTile(sources[ch].level, tx, ty, abort, message);
        }
    }

    void Help()
    {
        while (!IsOver()) {
            const int cell = next.fetch_add(1);
            if (cell >= count) return;
            for (int at = arrived; cell > at + kLead; at = arrived)
                arrived.wait(at);
            Decode(cell, &isOver);
        }
    }

    const std::shared_ptr<const XDrawGrid> grid;
    const int count;
    const std::atomic<int>* const drawingAbort;
    tagSource sources[3];
    std::atomic<int> next{0};    // the first cell that nobody took
    std::atomic<int> arrived{0}; // where the drawing thread is
    std::atomic<int> isOver{0};  // the drawing has ended
};

XDrawAhead::XDrawAhead(const tagXDrawJob& job, std::shared_ptr<const XDrawGrid> grid)
{
    const auto shared = std::make_shared<tagShared>(job, std::move(grid));
    const int most = XDrawHelpers::GetMostHelpers();
    int missing = 0;
    for (int cell = 0; cell < shared->count && missing < kWorthwhile * most; ++cell)
        missing += !shared->IsCached(cell);
    if (missing < kWorthwhile) return;
    XDrawHelpers* helpers = job.helpers;
    if (!helpers) {
        m_own = std::make_unique<XDrawHelpers>();
        helpers = m_own.get();
    }
    for (int i = 0; i < missing / kWorthwhile; ++i)
        if (helpers->Give([shared] { shared->Help(); })) m_shared = shared;
}

XDrawAhead::~XDrawAhead()
{
    if (!m_shared) return;
    m_shared->isOver = 1;
    m_shared->arrived = m_shared->count;
    m_shared->arrived.notify_all();
}

void XDrawAhead::Arrive(int cell)
{
    if (!m_shared) return; // the drawing decodes by itself
    tagShared& shared = *m_shared;
    shared.arrived = cell;
    shared.arrived.notify_all();
    int next = shared.next.load();
    while (cell >= next)
        if (shared.next.compare_exchange_weak(next, cell + 1)) return; // ours to decode
    if (shared.IsCached(cell)) return;
    int other = shared.next.fetch_add(1);
    while (other < shared.count && shared.IsCached(other))
        other = shared.next.fetch_add(1);
    if (other < shared.count) shared.Decode(other, shared.drawingAbort);
}
