#include "foundation/raster/XDrawAhead.h"

#include "foundation/base/XString.h"
#include "foundation/raster/XDMBand.h"

#include <algorithm>
#include <system_error>

namespace {

constexpr int kLead = 64;       // cells: bounds what is decoded for a drawing that is given up
constexpr int kMostHelpers = 3; // more would starve the rest of the program
constexpr int kWorthwhile = 3;  // missing cells below which a thread costs more than it gives

} // namespace

XDrawAhead::XDrawAhead(const tagXDrawJob& job, const XDrawGrid& grid)
    : m_job(job), m_grid(grid), m_count(grid.GetNumOfCells())
{
    int missing = 0;
    for (int cell = 0; cell < m_count && missing < kWorthwhile * kMostHelpers; ++cell)
        missing += !IsCached(cell);
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    const int helpers = std::min({cores - 1, kMostHelpers, missing / kWorthwhile});
    for (int i = 0; i < helpers; ++i) {
        try {
            m_helpers.emplace_back([this] { Help(); });
        } catch (const std::system_error&) {
            break; // no thread to be had: the drawing decodes by itself
        }
    }
}

XDrawAhead::~XDrawAhead()
{
    m_isOver = 1;
    m_arrived = m_count;
    m_arrived.notify_all();
    for (std::thread& helper : m_helpers)
        helper.join();
}

int XDrawAhead::IsCached(int cell) const
{
    for (int ch = 0; ch < 3; ++ch) {
        int tx = 0, ty = 0;
        if (!m_grid.GetTileOf(cell, ch, tx, ty)) continue;
        const tagXDrawChannel& channel = m_job.channels[ch];
        if (!channel.band->IsTileAtHand(channel.level, tx, ty)) return 0;
    }
    return 1;
}

void XDrawAhead::Decode(int cell) const
{
    for (int ch = 0; ch < 3; ++ch) {
        int tx = 0, ty = 0;
        if (m_isOver.load(std::memory_order_relaxed)) return;
        if (!m_grid.GetTileOf(cell, ch, tx, ty)) continue;
        XString message; // the drawing thread meets the same failure and counts it
        const tagXDrawChannel& channel = m_job.channels[ch];
        channel.band->GetTile(channel.level, tx, ty, m_job.abort, message);
    }
}

void XDrawAhead::Arrive(int cell)
{
    if (m_helpers.empty()) return;
    m_arrived = cell;
    m_arrived.notify_all();
    int next = m_next.load();
    while (cell >= next)
        if (m_next.compare_exchange_weak(next, cell + 1)) return; // ours to decode
    if (IsCached(cell)) return;
    const int other = m_next.fetch_add(1);
    if (other < m_count) Decode(other);
}

void XDrawAhead::Help()
{
    while (!m_isOver && !m_job.IsAborted()) {
        const int cell = m_next.fetch_add(1);
        if (cell >= m_count) return;
        for (int arrived = m_arrived; cell > arrived + kLead; arrived = m_arrived)
            m_arrived.wait(arrived);
        if (m_isOver) return;
        Decode(cell);
    }
}
