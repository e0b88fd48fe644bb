#include "foundation/raster/XDrawAhead.h"
#include "foundation/raster/XDrawGrid.h"
#include "foundation/raster/XDrawJob.h"
#include "foundation/raster/XDrawRowWriter.h"
#include "foundation/raster/XDrawSampler.h"

#include <memory>
#include <optional>
#include <vector>

namespace {

int IsSeparable(const tagXDrawJob& job)
{
    for (const tagXDrawChannel& channel : job.channels)
        if (channel.band && channel.mapping.GetKind() != XDrawMapping::Kind::Separable) return 0;
    return 1;
}

} // namespace

int XfnDrawRows(const tagXDrawJob& job, int isBilinear)
{
    constexpr int kStrip = 64; // rows between two trims of the tiles held
    const int n = job.x1 - job.x0;
    std::unique_ptr<XDrawSampler> samplers[3];
    std::vector<std::uint16_t> rows[3];
    const std::uint16_t* states[3] = {};
    for (int ch = 0; ch < 3; ++ch) {
        if (!job.channels[ch].band) continue;
        samplers[ch] = XDrawSampler::Make(job.channels[ch], job.abort, isBilinear, job.x0, n);
        samplers[ch]->GetTiles().SetMessage(job.message);
        rows[ch].resize(static_cast<std::size_t>(n));
        states[ch] = rows[ch].data();
    }
    // which tiles a turned picture needs is known only row by row: it decodes by itself
    std::shared_ptr<const XDrawGrid> grid;
    std::optional<XDrawAhead> ahead;
    if (IsSeparable(job)) {
        grid = std::make_shared<const XDrawGrid>(job);
        ahead.emplace(job, grid);
    }
    std::size_t span = 0;
    XDrawRowWriter writer(job, n);
    for (int y = job.y0; y < job.y1; ++y) {
        if (ahead && span < grid->GetRowSpans().size() &&
            static_cast<std::size_t>(y - job.y0) == grid->GetRowSpans()[span].begin) {
            const int across = static_cast<int>(grid->GetColumnSpans().size());
            for (int i = 0; i < across; ++i)
                ahead->Arrive(static_cast<int>(span) * across + i);
            ++span;
        }
        for (int ch = 0; ch < 3; ++ch) {
            if (job.IsAborted()) return 0;
            if (!samplers[ch]) continue;
            samplers[ch]->Fill(y, rows[ch].data());
            if ((y - job.y0) % kStrip == kStrip - 1) samplers[ch]->GetTiles().Trim();
        }
        if (job.IsAborted()) return 0; // tiles that were not read must not show as no data
        writer.Compose(states, n);
        writer.Store(n, job.bits + static_cast<std::size_t>(y) * job.stride + job.x0);
    }
    for (const auto& sampler : samplers)
        if (sampler && sampler->GetTiles().HasFailed()) return 0;
    return 1;
}
