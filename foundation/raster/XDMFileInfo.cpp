#include "foundation/raster/XDMFileInfo.h"

#include "foundation/raster/XDMFileLayout.h"

#include <algorithm>
#include <cmath>

int XfnGetXDMFileSampleSize(int dataType)
{
    static constexpr int kSizes[] = {1, 1, 2, 2, 4, 4, 4, 8};
    if (dataType < 1 || dataType > 16) return 0;
    return dataType > 8 ? 2 * kSizes[dataType - 9] : kSizes[dataType - 1];
}

namespace {

bool HasGoodHistogram(const std::vector<long long>& histogram)
{
    return (histogram.empty() || histogram.size() == 256) &&
           std::all_of(histogram.begin(), histogram.end(), [](long long n) { return n >= 0; });
}

bool IsMatrix(const std::vector<double>& values, std::size_t n)
{
    return values.empty() || values.size() == n * n;
}

template <class Values>
bool AreFinite(const Values& values)
{
    return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

/// @return null when the level is as it must be.
const char* GetFault(const tagXDMFileLevel& level, const tagXDMFileLevel* finer, int sampleSize)
{
    if (level.width < 1 || level.height < 1) return "has no pixels";
    if (level.tileWidth < 1 || level.tileWidth > kXDMFileMaxTileSide || level.tileHeight < 1 ||
        level.tileHeight > kXDMFileMaxTileSide) {
        return "has a tile size that is not allowed";
    }
    const std::size_t tileBytes = static_cast<std::size_t>(level.tileWidth) *
                                  static_cast<std::size_t>(level.tileHeight) *
                                  static_cast<std::size_t>(sampleSize);
    if (tileBytes > kXDMFileMaxTileBytes) return "has tiles that are too large";
    // both factors are below 2^31
    if (static_cast<std::uint64_t>(level.GetTileColumns()) *
            static_cast<std::uint64_t>(level.GetTileRows()) >
        kXDMFileMaxTiles) {
        return "has too many tiles";
    }
    if (finer && (level.width > finer->width || level.height > finer->height ||
                  (level.width == finer->width && level.height == finer->height))) {
        return "is not smaller than the level before it";
    }
    return nullptr;
}

const char* GetFault(const tagXDMFileWarp& warp)
{
    if (warp.terms == 0) return nullptr;
    if (warp.terms != 3 && warp.terms != 4 && warp.terms != 6 && warp.terms != 10) {
        return "has a warp of an unknown form";
    }
    const double frame[] = {warp.centerX, warp.centerY, warp.scaleX, warp.scaleY};
    const bool isFinite = std::all_of(frame, frame + 4, [](double v) { return std::isfinite(v); });
    return isFinite && AreFinite(warp.xCoeff) && AreFinite(warp.yCoeff)
               ? nullptr
               : "has a warp that is not finite";
}

const char* GetFault(const tagXDMFileReference& reference)
{
    if (!std::isfinite(reference.ulX) || !std::isfinite(reference.ulY)) {
        return "has an upper left that is not finite";
    }
    for (const double size : {reference.xPixelSize, reference.yPixelSize}) {
        if (!(size > 0.0) || std::isinf(size)) return "has a pixel size that is not above 0";
    }
    if (const char* fault = GetFault(reference.worldToPixel)) return fault;
    return GetFault(reference.pixelToWorld);
}

const char* GetFault(const tagXDMFileBand& band)
{
    if (XfnGetXDMFileSampleSize(band.dataType) == 0) return "has an unknown data type";
    if (band.compression < 0 || band.compression > 2) return "has an unknown compression";
    if (band.levels.empty() || band.levels.size() > static_cast<std::size_t>(kXDMFileMaxLevels)) {
        return "has no levels or too many";
    }
    if (const char* fault = GetFault(band.reference)) return fault;
    const tagXDMFileStatistics& statistics = band.statistics;
    for (const XDMFileStatisticsKind kind : {statistics.kind, statistics.histogramKind}) {
        if (kind < XDMFileStatisticsKind::None || kind > XDMFileStatisticsKind::Exact ||
            statistics.pixelCount < 0) {
            return "has statistics of an unknown kind";
        }
    }
    if (!HasGoodHistogram(statistics.histogram) ||
        statistics.histogram.empty() != (statistics.histogramKind == XDMFileStatisticsKind::None)) {
        return "has a histogram that is none";
    }
    if (band.radar.chirpDirection < -1 || band.radar.chirpDirection > 1) {
        return "has a chirp of an unknown direction";
    }
    return nullptr;
}

const char* GetFault(const tagXDMFileGCPSet& set)
{
    for (const tagXDMFileGCP& p : set.points) {
        if (!AreFinite(std::array{p.imageX, p.imageY, p.refX, p.refY, p.refZ})) {
            return "has a point that is not finite";
        }
    }
    return nullptr;
}

const char* GetFault(const tagXDMFileSample& sample)
{
    if (!HasGoodHistogram(sample.histogram)) return "has a histogram that is none";
    return sample.pixelCount < 0 ? "has a negative number of pixels" : nullptr;
}

const char* GetFault(const tagXDMFileRegion& region)
{
    if (region.type != 2 && region.type != 3) return "has an unknown type";
    if (region.vertices.size() % 3 != 0) return "has a vertex without all of x, y and z";
    if (!AreFinite(region.vertices)) return "has a vertex that is not finite";
    if (region.pixelCount < 0 || region.jointCount < 0) return "has a negative number of pixels";
    const std::size_t bands = region.bands.size();
    if (bands > static_cast<std::size_t>(kXDMFileMaxBands)) return "has too many bands";
    for (const tagXDMFileSample& sample : region.bands) {
        if (const char* fault = GetFault(sample)) return fault;
    }
    const bool hasMeans = region.jointMeans.empty() || region.jointMeans.size() == bands;
    return hasMeans && IsMatrix(region.coMoments, bands) ? nullptr : "has a matrix of a wrong size";
}

const char* GetFault(const tagXDMFileSignature& signature, std::size_t regionCount)
{
    std::size_t own = 0;
    for (const long long index : signature.regions) {
        if (index == -1) {
            ++own;
        } else if (index < 0 || static_cast<std::uint64_t>(index) >= regionCount) {
            return "names a region that is not there";
        }
    }
    if (own != signature.own.size()) return "names another number of regions than it holds";
    for (const tagXDMFileRegion& region : signature.own) {
        if (const char* fault = GetFault(region)) return fault;
    }
    return nullptr;
}

/// Looks at each record of a list; the first fault makes the reason.
template <class T, class Look>
int CheckList(const std::vector<T>& records, const char* what, XString& reason, Look look)
{
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (const char* fault = look(records[i])) {
            reason = XfnFormat("%s %I64d %s", what, static_cast<long long>(i + 1), fault);
            return 0;
        }
    }
    return 1;
}

int CheckLevels(const tagXDMFileBand& band, std::size_t index, XString& reason)
{
    for (std::size_t i = 0; i < band.levels.size(); ++i) {
        const char* fault = GetFault(band.levels[i], i > 0 ? &band.levels[i - 1] : nullptr,
                                     XfnGetXDMFileSampleSize(band.dataType));
        if (fault) {
            reason = XfnFormat("Level %I64d of band %I64d %s", static_cast<long long>(i),
                               static_cast<long long>(index + 1), fault);
            return 0;
        }
    }
    return 1;
}

} // namespace

int XfnCheckXDMFileInfo(const tagXDMFileInfo& info, XString& reason)
{
    if (info.bands.empty() || info.bands.size() > static_cast<std::size_t>(kXDMFileMaxBands)) {
        reason = info.bands.empty() ? "There is no band" : "There are too many bands";
        return 0;
    }
    const bool hasHeaderBands =
        info.headerBands.size() == 3 &&
        std::all_of(info.headerBands.begin(), info.headerBands.end(), [&](long long band) {
            return band >= -1 && band < static_cast<long long>(info.bands.size());
        });
    if (!info.headerBands.empty() && !hasHeaderBands) {
        reason = "The bands for red, green and blue are not there";
        return 0;
    }
    const auto look = [](const auto& record) { return GetFault(record); };
    if (!CheckList(info.bands, "Band", reason, look)) return 0;
    for (std::size_t i = 0; i < info.bands.size(); ++i) {
        if (!CheckLevels(info.bands[i], i, reason)) return 0;
    }
    if (!IsMatrix(info.correlation, info.bands.size()) ||
        !IsMatrix(info.covariance, info.bands.size())) {
        reason = "The matrix of the bands has a wrong size";
        return 0;
    }
    return CheckList(info.gcpSets, "Control point set", reason, look) &&
           CheckList(info.regions, "Region", reason, look) &&
           CheckList(info.signatures, "Signature", reason,
                     [&](const tagXDMFileSignature& signature) {
                         return GetFault(signature, info.regions.size());
                     });
}
