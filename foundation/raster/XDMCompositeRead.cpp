#include "foundation/raster/XDMComposite.h"

#include "foundation/platform/XThread.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDrawMapping.h"
#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

/// Reads single pixels of a band at full resolution. Keeps the tile of the last one.
class XPixelReader
{
public:
    explicit XPixelReader(const XDMBand* band) : m_band(band)
    {
        band->GetLevelSize(0, m_width, m_height);
        band->GetTileSize(0, m_tileWidth, m_tileHeight);
    }

    /// kXNoData outside, without data and where the tile cannot be read.
    double Get(int column, int row)
    {
        if (column < 0 || row < 0 || column >= m_width || row >= m_height) return kXNoData;
        const int tx = column / m_tileWidth;
        const int ty = row / m_tileHeight;
        if (tx != m_tx || ty != m_ty) {
            XString message;
            m_tile = m_band->GetTile(0, tx, ty, nullptr, message);
            m_tx = tx;
            m_ty = ty;
            (m_tile ? m_goodTiles : m_failedTiles)++;
        }
        if (!m_tile) return kXNoData;
        const int x = column - tx * m_tileWidth;
        const int y = row - ty * m_tileHeight;
        if (x >= m_tile->GetWidth() || y >= m_tile->GetHeight()) return kXNoData;
        const std::size_t offset = static_cast<std::size_t>(x) * m_tile->GetSampleSize();
        const double value = XfnReadSample(m_tile->GetRow(y) + offset, m_tile->GetDataType());
        return std::isnan(value) || value == m_band->GetNullValue() ? kXNoData : value;
    }

    /// The pixel under a position in pixels, centre based.
    double GetAt(double x, double y)
    {
        const double column = std::floor(x + 0.5);
        const double row = std::floor(y + 0.5);
        if (!(column >= 0.0 && column < m_width && row >= 0.0 && row < m_height)) return kXNoData;
        return Get(static_cast<int>(column), static_cast<int>(row));
    }

    int HasFailed() const { return m_failedTiles > 0; }
    int HasSucceeded() const { return m_goodTiles > 0; }

private:
    const XDMBand* m_band;
    int m_width = 0, m_height = 0;
    int m_tileWidth = 1, m_tileHeight = 1;
    int m_tx = -1, m_ty = -1;
    std::shared_ptr<const XTile> m_tile;
    int m_goodTiles = 0, m_failedTiles = 0;
};

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

/// Where the polygon's edges cross a row of pixel centres, in rising order.
void ListCrossings(const tagPolygon& polygon, double row, std::vector<double>& crossings)
{
    crossings.clear();
    const std::size_t count = polygon.x.size();
    for (std::size_t i = 0, j = count - 1; i < count; j = i++) {
        const double yi = polygon.y[i], yj = polygon.y[j];
        if ((yi <= row) == (yj <= row)) continue;
        crossings.push_back(polygon.x[i] + (row - yi) / (yj - yi) * (polygon.x[j] - polygon.x[i]));
    }
    std::sort(crossings.begin(), crossings.end());
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
    const XDMBand* band = GetReadableBand(Channel(ch));
    tagPolygon polygon;
    if (!band || !out || !PlacePolygon(m_channels[ch], xs, ys, n, polygon)) return 0;
    if (width != polygon.width || height != polygon.height) return 0;
    XPixelReader reader(band);
    std::vector<double> crossings;
    for (int row = 0; row < height; ++row) {
        if (thread && thread->IsStopRequested()) return 0;
        double* line = out + static_cast<std::size_t>(row) * static_cast<std::size_t>(width);
        std::fill_n(line, width, kXNoData);
        ListCrossings(polygon, polygon.top + row, crossings);
        for (std::size_t k = 0; k + 1 < crossings.size(); k += 2) {
            const auto columnOf = [&](double at) {
                return static_cast<int>(
                    std::clamp(std::ceil(at) - polygon.left, 0.0, static_cast<double>(width)));
            };
            const int end = columnOf(crossings[k + 1]);
            for (int column = columnOf(crossings[k]); column < end; ++column)
                line[column] = reader.Get(polygon.left + column, polygon.top + row);
        }
        if (reader.HasFailed()) return 0;
    }
    return 1;
}
