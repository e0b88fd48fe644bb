#include "foundation/raster/XExactStatistics.h"

#include "foundation/raster/XBlockKernels.h"
#include "foundation/raster/XBlockRun.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XStatisticsKernels.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <vector>

namespace {

/// The tiles of a band at full resolution, one after another by row.
class XTileList
{
public:
    explicit XTileList(const XDMBand& band) : m_band(band)
    {
        int width = 0, height = 0, tileWidth = 1, tileHeight = 1;
        band.GetLevelSize(0, width, height);
        band.GetTileSize(0, tileWidth, tileHeight);
        m_across = (width - 1) / tileWidth + 1;
        m_count = m_across * ((height - 1) / tileHeight + 1);
    }
    int GetCount() const { return m_count; }
    std::shared_ptr<const XTile> Read(int index, const std::atomic<int>* abort,
                                      XString& message) const
    {
        return m_band.GetTile(0, index % m_across, index / m_across, abort, message);
    }

private:
    const XDMBand& m_band;
    int m_across = 0;
    int m_count = 0;
};

std::size_t CountOf(const XTile& tile)
{
    return static_cast<std::size_t>(tile.GetWidth()) * static_cast<std::size_t>(tile.GetHeight());
}

/// Counts of values, each table of 32-bit counts emptied into 64-bit ones before it can be full.
template <class T>
class XValueCounts
{
public:
    using Kernels = XValueCountKernels<T>;

    XValueCounts() : m_counts(Kernels::kTables * Kernels::kValues), m_totals(Kernels::kValues) {}

    void Add(const T* samples, std::size_t count)
    {
        constexpr std::size_t kMost = std::size_t{1} << 31;
        for (std::size_t start = 0; start < count; start += kMost) {
            const std::size_t n = std::min(kMost, count - start);
            if (m_pending + n > kMost) Settle();
            Kernels::Add(samples + start, n, m_counts.data());
            m_pending += n;
        }
    }
    const std::vector<long long>& GetTotals()
    {
        Settle();
        return m_totals;
    }

private:
    void Settle()
    {
        for (std::size_t i = 0; i < m_counts.size(); ++i)
            m_totals[i % Kernels::kValues] += m_counts[i];
        std::fill(m_counts.begin(), m_counts.end(), 0u);
        m_pending = 0;
    }

    std::vector<std::uint32_t> m_counts;
    std::vector<long long> m_totals;
    std::size_t m_pending = 0;
};

/// What counts of values tell; counts[i] belongs to the sample whose bits are i.
template <class T>
tagXBandStatistics StatisticsOf(const std::vector<long long>& counts, double nullValue)
{
    bool hasNull = false;
    const T null = XfnNullSample<T>(nullValue, hasNull);
    const auto each = [&](auto&& take) {
        for (std::size_t i = 0; i < counts.size(); ++i)
            if (counts[i] && !(hasNull && static_cast<T>(i) == null))
                take(static_cast<T>(i), counts[i]);
    };
    tagXMoments moments;
    long long sum = 0; // whole numbers: at most 2^16 times the pixels of an image
    each([&](T sample, long long n) {
        const double value = sample;
        moments.min = moments.count ? std::min(moments.min, value) : value;
        moments.max = moments.count ? std::max(moments.max, value) : value;
        moments.count += n;
        sum += n * sample;
    });
    if (moments.count > 0)
        moments.mean = static_cast<double>(static_cast<long double>(sum) / moments.count);
    each([&](T sample, long long n) {
        const double deviation = sample - moments.mean;
        moments.squares += static_cast<double>(n) * deviation * deviation;
    });
    tagXBandStatistics statistics = XfnMakeStatistics(moments);
    const tagXBinScale scale(statistics.min, statistics.max);
    each([&](T sample, long long n) {
        statistics.histogram[static_cast<std::size_t>(scale.GetBin(sample))] += n;
    });
    return statistics;
}

template <class T>
int CalcByValue(const XDMBand& band, XBlockRun& run, tagXBandStatistics& statistics,
                XString& message)
{
    const XTileList tiles(band);
    std::vector<XValueCounts<T>> workers(
        static_cast<std::size_t>(XBlockRun::GetNumOfWorkers(tiles.GetCount())));
    const auto work = [&](int piece, int worker, XString& reason) {
        const auto tile = tiles.Read(piece, run.GetAbort(), reason);
        if (!tile) return 0;
        workers[static_cast<std::size_t>(worker)].Add(static_cast<const T*>(tile->GetData()),
                                                      CountOf(*tile));
        return 1;
    };
    if (!run.Run(tiles.GetCount(), work, nullptr, message)) return 0;
    std::vector<long long> counts = workers.front().GetTotals();
    for (std::size_t w = 1; w < workers.size(); ++w)
        std::transform(counts.begin(), counts.end(), workers[w].GetTotals().begin(), counts.begin(),
                       [](long long a, long long b) { return a + b; });
    statistics = StatisticsOf<T>(counts, band.GetNullValue());
    return 1;
}

int CalcInTwoPasses(const XDMBand& band, XBlockRun& run, tagXBandStatistics& statistics,
                    XString& message)
{
    struct tagWorker
    {
        tagXMoments moments; // of the tile in hand
        std::array<long long, 256> histogram{};
    };
    const XTileList tiles(band);
    std::vector<tagWorker> workers(
        static_cast<std::size_t>(XBlockRun::GetNumOfWorkers(tiles.GetCount())));
    const auto walk = [&](auto&& take, const std::function<void(int, int)>& join) {
        const auto work = [&](int piece, int worker, XString& reason) {
            const auto tile = tiles.Read(piece, run.GetAbort(), reason);
            if (tile) take(*tile, workers[static_cast<std::size_t>(worker)]);
            return tile ? 1 : 0;
        };
        return run.Run(tiles.GetCount(), work, join, message);
    };
    tagXMoments moments;
    run.SetPercents(0, 50);
    const auto addMoments = [&](const XTile& tile, tagWorker& worker) {
        worker.moments = {};
        XfnAddMoments(tile.GetData(), CountOf(tile), tile.GetDataType(), band.GetNullValue(),
                      worker.moments);
    };
    if (!walk(addMoments, [&](int, int worker) {
            moments.Merge(workers[static_cast<std::size_t>(worker)].moments);
        }))
        return 0;
    tagXBandStatistics numbers = XfnMakeStatistics(moments);
    run.SetPercents(50, 100);
    const auto addHistogram = [&](const XTile& tile, tagWorker& worker) {
        XfnAddHistogram(tile.GetData(), CountOf(tile), tile.GetDataType(), band.GetNullValue(),
                        numbers.min, numbers.max, worker.histogram.data());
    };
    if (numbers.IsSet() && !walk(addHistogram, nullptr)) return 0;
    for (const tagWorker& worker : workers)
        for (std::size_t bin = 0; bin < 256; ++bin)
            numbers.histogram[bin] += worker.histogram[bin];
    statistics = numbers;
    return 1;
}

} // namespace

int XfnCalcExactStatistics(const XDMBand& band, const tagXSaveControl& control,
                           tagXBandStatistics& statistics, XString& message)
{
    message.Empty();
    if (band.GetNumOfLevels() < 1) {
        message = "The band has no pixels.";
        return 0;
    }
    try {
        XBlockRun run(control);
        tagXBandStatistics numbers;
        int isDone = 0;
        switch (band.GetDataType()) {
        case kXUInt8:
            isDone = CalcByValue<std::uint8_t>(band, run, numbers, message);
            break;
        case kXInt8:
            isDone = CalcByValue<std::int8_t>(band, run, numbers, message);
            break;
        case kXUInt16:
            isDone = CalcByValue<std::uint16_t>(band, run, numbers, message);
            break;
        case kXInt16:
            isDone = CalcByValue<std::int16_t>(band, run, numbers, message);
            break;
        default:
            isDone = CalcInTwoPasses(band, run, numbers, message);
        }
        // asked last: what a file that was cut gave counts for nothing
        if (!isDone || !band.IsIntact(message)) return 0;
        numbers.hasHistogram = 1;
        statistics = numbers;
        return 1;
    } catch (const std::bad_alloc&) {
        message = "There is not enough memory for the statistics of the band.";
        return 0;
    }
}
