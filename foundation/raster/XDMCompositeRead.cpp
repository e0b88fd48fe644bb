#include "foundation/raster/XDMComposite.h"

#include "foundation/platform/XThread.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDrawMapping.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XPixelReader.h"
#include "foundation/raster/XRegionMask.h"
#include "foundation/raster/XSaveControl.h"
#include "foundation/raster/XStatisticsKernels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

/// A band whose samples can be told as one number, or null.
const XDMBand* GetReadableBand(const tagXCompositeChannel* channel)
{
    const bool isReadable = channel && channel->band && channel->warp.IsValid() &&
                            XfnIsRealType(channel->band->GetDataType());
    return isReadable ? channel->band : nullptr;
}

struct tagPolygon
{
    std::vector<double> x, y;                     // in pixels, centre based
    int left = 0, top = 0, width = 0, height = 0; // the block inside the band
};

/// 0 when a vertex is not finite or the polygon lies outside the band.
int PlacePolygon(const tagXCompositeChannel& channel, const double* xs, const double* ys, int n,
                 tagPolygon& polygon)
{
    if (!xs || !ys || n < 1) return 0;
    double minX = HUGE_VAL, minY = HUGE_VAL, maxX = -HUGE_VAL, maxY = -HUGE_VAL;
    for (int i = 0; i < n; ++i) {
        double x = xs[i], y = ys[i];
        channel.warp.Warp(x, y);
        if (!std::isfinite(x) || !std::isfinite(y)) return 0;
        polygon.x.push_back(x);
        polygon.y.push_back(y);
        minX = std::min(minX, x), maxX = std::max(maxX, x);
        minY = std::min(minY, y), maxY = std::max(maxY, y);
    }
    const int lastX = channel.band->GetXSize() - 1;
    const int lastY = channel.band->GetYSize() - 1;
    if (maxX < -0.5 || maxY < -0.5 || minX >= lastX + 0.5 || minY >= lastY + 0.5) return 0;
    const auto pixelOf = [](double at, int last) {
        return static_cast<int>(std::clamp(std::floor(at + 0.5), 0.0, static_cast<double>(last)));
    };
    polygon.left = pixelOf(minX, lastX);
    polygon.top = pixelOf(minY, lastY);
    polygon.width = pixelOf(maxX, lastX) - polygon.left + 1;
    polygon.height = pixelOf(maxY, lastY) - polygon.top + 1;
    return 1;
}

/// Fills the runs inside one tile from its samples, `out` being the block of the polygon.
void ReadRuns(const XTile& tile, int tileX, int tileY, double nullValue,
              const std::vector<tagXRowSpan>& runs, const tagPolygon& polygon, double* out)
{
    XfnDispatchRealType<int>(tile.GetDataType(), [&]<class T>(const T*) {
        bool hasNull = false;
        const T null = XfnNullSample<T>(nullValue, hasNull);
        for (const tagXRowSpan& run : runs) {
            const T* samples = reinterpret_cast<const T*>(tile.GetRow(run.y - tileY));
            double* line = out + static_cast<std::size_t>(run.y - polygon.top) *
                                     static_cast<std::size_t>(polygon.width);
            XStatisticsKernels<T>::ReadValues(samples + (run.x0 - tileX),
                                              static_cast<std::size_t>(run.x1 - run.x0), hasNull,
                                              null, line + (run.x0 - polygon.left));
        }
        return 1;
    });
}

} // namespace

double XDMComposite::ReadPixel(int ch, double x, double y) const
{
    const XDMBand* band = GetReadableBand(Channel(ch));
    if (!band) return kXNoData;
    m_channels[ch].warp.Warp(x, y);
    return XPixelReader(band).GetAt(x, y);
}

int XDMComposite::CalcLineSizeMax(int ch, double x0, double y0, double x1, double y1) const
{
    if (!GetReadableBand(Channel(ch))) return 0;
    m_channels[ch].warp.Warp(x0, y0);
    m_channels[ch].warp.Warp(x1, y1);
    const double length = std::round(std::max(std::fabs(x1 - x0), std::fabs(y1 - y0)));
    if (!(length < std::numeric_limits<int>::max())) return 0; // NaN too
    return static_cast<int>(length) + 1;
}

int XDMComposite::ReadLine(int ch, double x0, double y0, double x1, double y1, double* out,
                           int count) const
{
    const XDMBand* band = GetReadableBand(Channel(ch));
    if (!band || !out || count < 1) return 0;
    if (!std::isfinite(x0) || !std::isfinite(y0) || !std::isfinite(x1) || !std::isfinite(y1))
        return 0;
    XPixelReader reader(band);
    for (int i = 0; i < count; ++i) {
        const double part = count > 1 ? static_cast<double>(i) / (count - 1) : 0.0;
        double x = i == count - 1 && i > 0 ? x1 : x0 + (x1 - x0) * part;
        double y = i == count - 1 && i > 0 ? y1 : y0 + (y1 - y0) * part;
        m_channels[ch].warp.Warp(x, y);
        out[i] = reader.GetAt(x, y);
    }
    return !reader.HasFailed() || reader.HasSucceeded();
}

void XDMComposite::CalcROISizeMax(int ch, const double* xs, const double* ys, int n, int& width,
                                  int& height) const
{
    width = height = 0;
    tagPolygon polygon;
    if (!GetReadableBand(Channel(ch)) || !PlacePolygon(m_channels[ch], xs, ys, n, polygon)) return;
    width = polygon.width;
    height = polygon.height;
}

int XDMComposite::ReadROI(int ch, const double* xs, const double* ys, int n, double* out, int width,
                          int height, XThread* thread) const
{
    tagXSaveControl control;
    control.thread = thread;
    return ReadROI(ch, xs, ys, n, out, width, height, control);
}

int XDMComposite::ReadROI(int ch, const double* xs, const double* ys, int n, double* out, int width,
                          int height, const tagXSaveControl& control) const
{
    const XDMBand* band = GetReadableBand(Channel(ch));
    tagPolygon polygon;
    if (!band || !out || !PlacePolygon(m_channels[ch], xs, ys, n, polygon)) return 0;
    if (width != polygon.width || height != polygon.height) return 0;
    std::fill_n(out, static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kXNoData);
    XRegionMask mask;
    if (!mask.SetPolygon(polygon.x.data(), polygon.y.data(), n, band->GetXSize(), band->GetYSize()))
        return 0;
    int tileWidth = 0, tileHeight = 0;
    band->GetTileSize(0, tileWidth, tileHeight);
    const std::atomic<int>* stop = control.thread ? control.thread->GetStopFlag() : control.abort;
    std::vector<tagXRowSpan> runs;
    const int right = polygon.left + width, bottom = polygon.top + height;
    const auto count = [](int first, int end, int size) {
        return (end - 1) / size - first / size + 1;
    };
    XSaveProgress progress(control, static_cast<long long>(count(polygon.top, bottom, tileHeight)) *
                                        count(polygon.left, right, tileWidth));
    for (int y = polygon.top / tileHeight * tileHeight; y < bottom; y += tileHeight) {
        for (int x = polygon.left / tileWidth * tileWidth; x < right; x += tileWidth) {
            if (progress.IsStopped()) return 0;
            mask.ListSpans(x, y, x + tileWidth, y + tileHeight, runs);
            if (!runs.empty()) {
                XString message;
                const auto tile = band->GetTile(0, x / tileWidth, y / tileHeight, stop, message);
                if (!tile) return 0;
                ReadRuns(*tile, x, y, band->GetNullValue(), runs, polygon, out);
            }
            progress.Step();
        }
    }
    return 1;
}
