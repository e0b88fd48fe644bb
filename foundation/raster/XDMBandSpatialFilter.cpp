#include "foundation/raster/XDMBandSpatialFilter.h"

#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

X_IMPLEMENT_CLASS(XDMBandSpatialFilter, XDMBandDerived)

namespace {

constexpr int kTileSide = 256; // a strip of the inner band would be mostly apron

// a difference may well be the number that stands for no data before
bool HasOwnNull(const tagXSpatialFilter& filter)
{
    return filter.type == kXFilterSobel || filter.type == kXFilterLaplacian;
}

} // namespace

int XDMBandSpatialFilter::Create(XDMBand* inner, int type, int kernelSize)
{
    if (type < kXFilterNone || type > kXFilterLaplacian) return 0;
    const tagXSpatialFilter filter = XfnMakeSpatialFilter(type, kernelSize);
    return filter.kernelSize == kernelSize ? SetFilter(inner, filter) : 0;
}

int XDMBandSpatialFilter::SetFilter(XDMBand* inner, const tagXSpatialFilter& filter)
{
    const int type = inner ? XfnGetFilteredType(filter, inner->GetDataType()) : kXTypeNone;
    if (type == kXTypeNone || !SetInnerBand(inner, type, kTileSide, XfnGetFilterRadius(filter)))
        return 0;
    m_filter = filter;
    if (HasOwnNull(filter)) SetNullValue(std::numeric_limits<double>::quiet_NaN());
    // only these give numbers that the table knows
    if (filter.type != kXFilterNone && filter.type != kXFilterMedian) SetGISTable({}, 0);
    return 1;
}

void XDMBandSpatialFilter::OnSourceNullValue(double value)
{
    if (!HasOwnNull(m_filter)) SetNullValue(value);
    DropPixels();
}

std::shared_ptr<const XTile> XDMBandSpatialFilter::ReadTile(int level, int tx, int ty,
                                                            const std::atomic<int>* abort,
                                                            XString& message) const
{
    int levelWidth, levelHeight, tileWidth, tileHeight;
    GetLevelSize(level, levelWidth, levelHeight);
    GetTileSize(level, tileWidth, tileHeight);
    const int radius = XfnGetFilterRadius(m_filter);
    const int x0 = tx * tileWidth;
    const int y0 = ty * tileHeight;
    const int width = std::min(tileWidth, levelWidth - x0);
    const int height = std::min(tileHeight, levelHeight - y0);
    // what the apron lacks at the rim of the level
    const int left = std::max(radius - x0, 0);
    const int top = std::max(radius - y0, 0);
    const int right = std::max(radius - (levelWidth - x0 - width), 0);
    const int bottom = std::max(radius - (levelHeight - y0 - height), 0);
    const int wide = width + 2 * radius;
    const int high = height + 2 * radius;

    tagXArr2 window;
    tagXArr2* block = &window;
    if (!GetInnerBand()->ReadLevelWindow(block, level, x0 - radius + left, y0 - radius + top,
                                         wide - left - right, high - top - bottom, abort, &message))
        return nullptr;
    const int type = GetInnerBand()->GetDataType();
    const std::size_t size = static_cast<std::size_t>(XfnGetDataTypeSize(type));
    const std::size_t rowBytes = size * static_cast<std::size_t>(window.width);
    const void* samples = window.base;
    std::vector<unsigned char> apron;
    if (left || top || right || bottom) {
        apron.resize(size * static_cast<std::size_t>(wide) * static_cast<std::size_t>(high));
        for (int y = 0; y < window.height; ++y)
            std::memcpy(apron.data() + size * (static_cast<std::size_t>(wide) *
                                                   static_cast<std::size_t>(y + top) +
                                               static_cast<std::size_t>(left)),
                        window.base + rowBytes * static_cast<std::size_t>(y), rowBytes);
        XfnRepeatRim(apron.data(), static_cast<int>(size), wide, high, left, right, top, bottom);
        samples = apron.data();
    }
    const auto tile = std::make_shared<XTile>(GetDataType(), width, height);
    if (m_filter.type == kXFilterNone)
        std::memcpy(tile->GetFillData(), samples, tile->GetByteSize());
    else
        XfnFilterBlock(m_filter, type, samples, width, height, GetInnerBand()->GetNullValue(),
                       tile->GetFillData(), GetNullValue());
    return tile;
}
