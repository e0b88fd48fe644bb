#include "foundation/raster/XJointWalk.h"

#include "foundation/raster/XBlockKernels.h"
#include "foundation/raster/XGridMap.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XStatisticsKernels.h"

#include <algorithm>
#include <cstring>
#include <memory>

/// What one thread needs: the samples of a block as doubles, and the numbers of the piece in hand.
class XJointWalk::XWorker
{
public:
    XWorker(const XJointWalk& walk, const std::atomic<int>* abort)
        : m_walk(walk),
          m_abort(abort),
          m_sources(walk.m_bands.size()),
          m_values(walk.m_bands.size() * kXBlock),
          m_valid(walk.m_bands.size() * kXBlock),
          m_products(walk.m_bands.size() * walk.m_bands.size()),
          m_moments(walk.m_bands.size()),
          m_histograms(walk.m_hasHistograms ? walk.m_bands.size() : 0),
          m_counts(m_histograms.size())
    {}

    int DoPiece(const tagPiece& piece, XString& message);

    void AddHistogramsTo(std::vector<tagXRegionBand>& bands) const;

    // of the piece
    long long m_points = 0;
    std::vector<tagXMoments> m_pieceMoments;
    tagXJointMoments m_joint;

private:
    /// The samples of one band under the tile of the piece.
    struct tagSource
    {
        std::shared_ptr<const XTile> tile;
        tagXArr2* block = nullptr;
        const unsigned char* base = nullptr;
        std::size_t rowBytes = 0;
        std::unique_ptr<XMappedReader> mapped;

        ~tagSource() { delete block; }
    };
    struct tagRun // pixels of one row: every step-th from x, relative to the tile
    {
        int y, x, count;
    };

    int OpenSource(std::size_t index, const tagPiece& piece, XString& message);
    void ListRuns();
    int Fill(std::size_t index, const tagRun& run, std::size_t at, XString& message);
    void Flush();
    void TakeBand(std::size_t index);
    void TakeJoint(std::size_t count);

    const XJointWalk& m_walk;
    const std::atomic<int>* m_abort;
    std::vector<tagSource> m_sources;
    std::vector<double> m_values;       // [bands][kXBlock]
    std::vector<unsigned char> m_valid; // the same; right where the band has gaps
    std::vector<double> m_products;
    std::vector<tagXMoments> m_moments; // of the block
    std::vector<tagXBinTables> m_histograms;
    std::vector<std::array<long long, 256>> m_counts;
    std::vector<std::size_t> m_used; // samples of each band in the block that have a value
    std::vector<tagXRowSpan> m_spans;
    std::vector<tagRun> m_runs;
    std::size_t m_filled = 0;
    int m_x0 = 0, m_y0 = 0, m_x1 = 0, m_y1 = 0; // the tile's pixels
};

int XJointWalk::XWorker::OpenSource(std::size_t index, const tagPiece& piece, XString& message)
{
    const tagBand& band = m_walk.m_bands[index];
    tagSource& source = m_sources[index];
    if (!band.sharesGrid) {
        if (!source.mapped)
            source.mapped =
                std::make_unique<XMappedReader>(*m_walk.m_bands.front().band, *band.band, m_abort);
        if (source.mapped->IsValid()) return 1;
        message.Format("Nothing joins the reference of band \"%s\" with that of the first band.",
                       band.band->GetBandName().GetString());
        return 0;
    }
    if (band.sharesTiles) {
        source.tile = band.band->GetTile(0, piece.tx, piece.ty, m_abort, message);
        if (!source.tile) return 0;
        source.base = static_cast<const unsigned char*>(source.tile->GetData());
        source.rowBytes = source.tile->GetRowBytes();
        return 1;
    }
    if (!band.band->ReadSubset(source.block, 0, m_x0, m_x1 - 1, m_y0, m_y1 - 1, m_abort, &message))
        return 0;
    source.base = static_cast<const unsigned char*>(source.block->base);
    source.rowBytes = static_cast<std::size_t>(m_x1 - m_x0) * band.band->GetDataSize();
    return 1;
}

void XJointWalk::XWorker::ListRuns()
{
    m_runs.clear();
    if (m_walk.m_mask) {
        m_walk.m_mask->ListSpans(m_x0, m_y0, m_x1, m_y1, m_spans);
        for (const tagXRowSpan& span : m_spans)
            m_runs.push_back({span.y - m_y0, span.x0 - m_x0, span.x1 - span.x0});
        return;
    }
    const int step = m_walk.m_step;
    const auto firstFrom = [step](int at) { return (at + step - 1) / step * step; };
    const int x = firstFrom(m_x0);
    if (x >= m_x1) return;
    const int count = (m_x1 - 1 - x) / step + 1;
    for (int y = firstFrom(m_y0); y < m_y1; y += step)
        m_runs.push_back({y - m_y0, x - m_x0, count});
}

int XJointWalk::XWorker::Fill(std::size_t index, const tagRun& run, std::size_t at,
                              XString& message)
{
    const tagBand& band = m_walk.m_bands[index];
    tagSource& source = m_sources[index];
    double* values = m_values.data() + index * kXBlock + at;
    unsigned char* valid = m_valid.data() + index * kXBlock + at;
    const auto count = static_cast<std::size_t>(run.count);
    std::size_t used = 0;
    if (source.mapped) {
        if (!source.mapped->Read(m_y0 + run.y, m_x0 + run.x, m_walk.m_step, run.count, values)) {
            message = source.mapped->GetMessage();
            return 0;
        }
        used = XStatisticsKernels<double>::Convert(values, count, 1, false, 0.0, values, valid);
    } else {
        const unsigned char* row = source.base + source.rowBytes * static_cast<std::size_t>(run.y);
        used = XfnDispatchRealType<std::size_t>(band.band->GetDataType(), [&]<class T>(const T*) {
            bool hasNull = false;
            const T null = XfnNullSample<T>(band.band->GetNullValue(), hasNull);
            return XStatisticsKernels<T>::Convert(reinterpret_cast<const T*>(row) + run.x, count,
                                                  static_cast<std::size_t>(m_walk.m_step), hasNull,
                                                  null, values, valid);
        });
    }
    // a row of flags is whole as soon as one sample of the block has a gap
    const bool hadGaps = m_used[index] < at;
    if (used == count && (hadGaps || m_walk.m_nullValue != kXNotSet)) std::memset(valid, 1, count);
    if (m_walk.m_nullValue != kXNotSet) {
        const double null =
            XfnDispatchRealType<double>(band.band->GetDataType(), [&]<class T>(const T*) {
                bool hasNull = false;
                const T sample = XfnNullSample<T>(m_walk.m_nullValue, hasNull);
                return hasNull ? static_cast<double>(sample) : kXNotSet;
            });
        used = XfnExcludeValue(values, count, null, valid);
    }
    if (used < count && !hadGaps) std::memset(m_valid.data() + index * kXBlock, 1, at);
    m_used[index] += used;
    return 1;
}

void XJointWalk::XWorker::TakeBand(std::size_t index)
{
    double* values = m_values.data() + index * kXBlock;
    double packed[kXBlock];
    const std::size_t used = m_used[index];
    if (used < m_filled) {
        // the joint numbers need the block as it is
        XfnPackBlock(values, m_valid.data() + index * kXBlock, m_filled, packed);
        values = packed;
    }
    const tagBand& band = m_walk.m_bands[index];
    if (!band.binTable.empty())
        XfnTableBins(values, used, band.binTable.data(), m_histograms[index]);
    else if (m_walk.m_hasHistograms && XfnIsSet(band.histogramMin))
        XfnBlockBins(values, used, {band.histogramMin, band.histogramMax}, m_histograms[index]);
    m_moments[index] = XfnBlockMoments(values, used);
    m_pieceMoments[index].Merge(m_moments[index]);
}

void XJointWalk::XWorker::TakeJoint(std::size_t count)
{
    const auto bands = static_cast<int>(m_walk.m_bands.size());
    tagXJointMoments block;
    block.count = static_cast<long long>(count);
    for (const tagXMoments& moments : m_moments)
        block.means.push_back(moments.mean);
    block.coMoments.resize(m_products.size());
    XfnBlockProducts(m_values.data(), kXBlock, bands, count, block.coMoments.data());
    m_joint.Merge(block);
}

void XJointWalk::XWorker::Flush()
{
    if (m_filled == 0) return;
    m_points += static_cast<long long>(m_filled);
    bool isWhole = true;
    for (std::size_t i = 0; i < m_used.size(); ++i) {
        isWhole &= m_used[i] == m_filled;
        TakeBand(i);
    }
    std::size_t count = m_filled;
    if (!isWhole) {
        unsigned char all[kXBlock];
        std::memset(all, 1, m_filled);
        for (std::size_t i = 0; i < m_used.size(); ++i)
            for (std::size_t s = 0; s < m_filled && m_used[i] < m_filled; ++s)
                all[s] &= m_valid[i * kXBlock + s];
        count = static_cast<std::size_t>(std::count(all, all + m_filled, 1));
        for (std::size_t i = 0; i < m_used.size(); ++i) {
            double* values = m_values.data() + i * kXBlock;
            const bool isCentred = m_used[i] == m_filled; // by TakeBand, about its own mean
            const double shift = isCentred ? m_moments[i].mean : 0.0;
            XfnPackBlock(values, all, m_filled, values);
            m_moments[i].mean = XfnCentreBlock(values, count) + shift;
        }
    }
    if (count > 0) TakeJoint(count);
    m_filled = 0;
    std::fill(m_used.begin(), m_used.end(), std::size_t{0});
}

int XJointWalk::XWorker::DoPiece(const tagPiece& piece, XString& message)
{
    const std::size_t bands = m_walk.m_bands.size();
    const XDMBand& first = *m_walk.m_bands.front().band;
    int tileWidth = 0, tileHeight = 0;
    first.GetTileSize(0, tileWidth, tileHeight);
    m_x0 = piece.tx * tileWidth;
    m_y0 = piece.ty * tileHeight;
    m_x1 = std::min(m_x0 + tileWidth, first.GetXSize());
    m_y1 = std::min(m_y0 + tileHeight, first.GetYSize());
    m_points = 0;
    m_pieceMoments.assign(bands, {});
    m_joint.Reset(static_cast<int>(bands));
    m_used.assign(bands, 0);
    ListRuns();
    if (m_runs.empty()) return 1;
    for (std::size_t i = 0; i < bands; ++i)
        if (!OpenSource(i, piece, message)) return 0;
    for (tagRun run : m_runs) {
        while (run.count > 0) {
            tagRun part = run;
            part.count = std::min(run.count, static_cast<int>(kXBlock - m_filled));
            for (std::size_t i = 0; i < bands; ++i)
                if (!Fill(i, part, m_filled, message)) return 0;
            m_filled += static_cast<std::size_t>(part.count);
            if (m_filled == kXBlock) Flush();
            run.x += part.count * m_walk.m_step;
            run.count -= part.count;
        }
    }
    Flush();
    for (std::size_t i = 0; i < m_histograms.size(); ++i)
        m_histograms[i].MoveTo(m_counts[i].data());
    for (tagSource& source : m_sources)
        source.tile.reset();
    return 1;
}

void XJointWalk::XWorker::AddHistogramsTo(std::vector<tagXRegionBand>& bands) const
{
    for (std::size_t i = 0; i < m_counts.size(); ++i)
        for (std::size_t bin = 0; bin < 256; ++bin)
            bands[i].histogram[bin] += m_counts[i][bin];
}

XJointWalk::XJointWalk(std::vector<XDMBand*> bands)
{
    const XDMBand& first = *bands.front();
    int width = 0, height = 0;
    first.GetTileSize(0, width, height);
    for (XDMBand* band : bands) {
        int w = 0, h = 0;
        band->GetTileSize(0, w, h);
        const bool sharesGrid = XfnShareGrid(first, *band);
        m_bands.push_back(
            {band, sharesGrid, sharesGrid && w == width && h == height, kXNotSet, kXNotSet, {}});
    }
}

std::vector<XJointWalk::tagPiece> XJointWalk::ListPieces() const
{
    const XDMBand& first = *m_bands.front().band;
    int width = 0, height = 0;
    first.GetTileSize(0, width, height);
    const int across = (first.GetXSize() - 1) / width + 1;
    const int down = (first.GetYSize() - 1) / height + 1;
    std::vector<char> isTouched(static_cast<std::size_t>(across) * down, m_mask ? 0 : 1);
    if (m_mask)
        for (const tagXRowSpan& span : m_mask->GetSpans())
            for (int tx = span.x0 / width; tx <= (span.x1 - 1) / width; ++tx)
                isTouched[static_cast<std::size_t>(span.y / height) * across + tx] = 1;
    std::vector<tagPiece> pieces;
    for (int ty = 0; ty < down; ++ty)
        for (int tx = 0; tx < across; ++tx)
            if (isTouched[static_cast<std::size_t>(ty) * across + tx]) pieces.push_back({tx, ty});
    return pieces;
}

void XJointWalk::SetUpHistogram(tagBand& band) const
{
    const int type = band.band->GetDataType();
    const auto known = type == kXUInt8 ? nullptr : band.band->GetStatistics();
    band.histogramMin = known ? known->min : 0.0;
    band.histogramMax = known ? known->max : 255.0;
    constexpr long long kWorthwhile = 65536; // fewer pixels cost less than the table
    const bool isLong = !m_mask || m_mask->GetPixelCount() > kWorthwhile;
    if (!isLong || band.band->GetDataSize() > 2 || !XfnIsSet(band.histogramMin)) return;
    const tagXBinScale scale(band.histogramMin, band.histogramMax);
    band.binTable.resize(65536);
    for (int bits = 0; bits < 65536; ++bits) {
        const bool isSigned = type == kXInt8 || type == kXInt16;
        const double value = isSigned ? static_cast<std::int16_t>(bits) : bits;
        band.binTable[static_cast<std::size_t>(bits)] =
            static_cast<std::uint8_t>(scale.GetBin(value));
    }
}

int XJointWalk::Run(XBlockRun& run, tagXRegionStatistics& numbers, XString& message)
{
    tagXRegionStatistics total;
    total.bands.resize(m_bands.size());
    total.joint.Reset(static_cast<int>(m_bands.size()));
    for (std::size_t i = 0; i < m_bands.size() && m_hasHistograms; ++i) {
        if (run.IsStopped()) return 0;
        tagBand& band = m_bands[i];
        SetUpHistogram(band);
        total.bands[i].histogramMin = band.histogramMin;
        total.bands[i].histogramMax = band.histogramMax;
    }
    const std::vector<tagPiece> pieces = ListPieces();
    const int count = static_cast<int>(pieces.size());
    std::vector<std::unique_ptr<XWorker>> workers;
    for (int i = 0; i < XBlockRun::GetNumOfWorkers(count); ++i)
        workers.push_back(std::make_unique<XWorker>(*this, run.GetAbort()));
    const auto work = [&](int piece, int worker, XString& reason) {
        return workers[static_cast<std::size_t>(worker)]->DoPiece(
            pieces[static_cast<std::size_t>(piece)], reason);
    };
    const auto join = [&](int, int worker) {
        const XWorker& done = *workers[static_cast<std::size_t>(worker)];
        total.pointCount += done.m_points;
        total.joint.Merge(done.m_joint);
        for (std::size_t i = 0; i < total.bands.size() && done.m_points > 0; ++i)
            total.bands[i].moments.Merge(done.m_pieceMoments[i]);
    };
    if (!run.Run(count, work, join, message)) return 0;
    for (const tagBand& band : m_bands)
        if (!band.band->IsIntact(message)) return 0;
    for (const auto& worker : workers)
        worker->AddHistogramsTo(total.bands);
    for (tagXRegionBand& band : total.bands)
        if (band.moments.count > 0)
            band.moments.mean = std::clamp(band.moments.mean, band.moments.min, band.moments.max);
    numbers = std::move(total);
    return 1;
}
