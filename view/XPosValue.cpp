#include "view/XPosValue.h"

#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMBandComplex.h"
#include "foundation/raster/XDMBandSpatialFilter.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kChannels = 3;
constexpr int kFilterReach = 11; // half of the largest block a filter is asked for

struct tagXPixel
{
    int x = 0;
    int y = 0;
};

// The pixel of a band that covers a world point. Rounded down, not to zero: half a pixel beyond the
// left edge is as much outside as beyond the right one.
bool FindPixel(const XDMComposite& composite, int ch, double worldX, double worldY,
               tagXPixel& pixel)
{
    const XDMBand& band = *composite.GetBand(ch);
    composite.ConvWorldToPixelCoord(worldX, worldY, ch);
    const double x = std::floor(worldX + 0.5), y = std::floor(worldY + 0.5);
    if (!(x >= 0.0 && y >= 0.0 && x < band.GetXSize() && y < band.GetYSize())) return false;
    pixel = {static_cast<int>(x), static_cast<int>(y)};
    return true;
}

// Reads a pixel out of a block that reaches so many pixels to each side, held inside the band.
bool ReadAround(XDMBand& band, const tagXPixel& pixel, int reach, double& real, double& imaginary)
{
    const int x0 = std::max(0, pixel.x - reach), y0 = std::max(0, pixel.y - reach);
    const int x1 = std::min(band.GetXSize() - 1, pixel.x + reach);
    const int y1 = std::min(band.GetYSize() - 1, pixel.y + reach);
    tagXArr2 samples;
    tagXArr2* block = &samples;
    if (!band.ReadSubset(block, 0, x0, x1, y0, y1, nullptr)) return false;
    const unsigned char* sample = block->At(pixel.x - x0, pixel.y - y0);
    return sample && XfnReadComplexSample(sample, block->dataType, real, imaginary);
}

XPosRead ReadChannels(const XDMComposite& composite, double worldX, double worldY, int reach,
                      double (&values)[3])
{
    for (int ch = 0; ch < kChannels; ++ch) {
        XDMBand* band = composite.GetBand(ch);
        if (!band) continue;
        tagXPixel pixel;
        if (!FindPixel(composite, ch, worldX, worldY, pixel)) return XPosRead::Outside;
        double imaginary = 0;
        if (!ReadAround(*band, pixel, reach, values[ch], imaginary)) values[ch] = kXNoData;
    }
    return XPosRead::Done;
}

XPosRead ReadComplex(const XDMComposite& composite, XDMBand& band, double worldX, double worldY,
                     double (&values)[3])
{
    tagXPixel pixel;
    if (!FindPixel(composite, 0, worldX, worldY, pixel)) return XPosRead::Outside;
    double real = 0, imaginary = 0;
    if (ReadAround(band, pixel, 0, real, imaginary)) {
        values[0] = real;
        values[1] = imaginary;
    }
    return XPosRead::Done;
}

} // namespace

XPosRead XfnReadPosValue(const XDMComposite& composite, double worldX, double worldY, XPosWay way,
                         double (&values)[3])
{
    std::fill(std::begin(values), std::end(values), kXNoData);
    XDMBand* first = composite.GetBand(0);
    if (!composite.GetBand(0) && !composite.GetBand(1) && !composite.GetBand(2))
        return XPosRead::Nothing;
    if (!first || dynamic_cast<XDMBandSpatialFilter*>(first))
        return ReadChannels(composite, worldX, worldY, kFilterReach, values);
    auto* part = dynamic_cast<XDMBandComplex*>(first);
    XDMBand* read = part && part->GetInnerBand() ? part->GetInnerBand() : first;
    if (!XfnIsRealType(read->GetDataType()))
        return ReadComplex(composite, *read, worldX, worldY, values);
    if (way == XPosWay::Direct) return ReadChannels(composite, worldX, worldY, 0, values);
    for (int ch = 0; ch < kChannels; ++ch)
        values[ch] = composite.ReadPixel(ch, worldX, worldY);
    return XPosRead::Done;
}

XPosRead XfnReadPosValue(const XDMCompManager* manager, double worldX, double worldY, XPosWay way,
                         double (&values)[3])
{
    std::fill(std::begin(values), std::end(values), kXNoData);
    for (long i = manager ? manager->GetNumberOfXDMComposite() - 1 : -1; i >= 0; --i) {
        const XDMComposite* composite = manager->GetXDMCompositeAt(static_cast<int>(i));
        if (!composite) continue;
        const XPosRead result = XfnReadPosValue(*composite, worldX, worldY, way, values);
        if (result != XPosRead::Nothing) return result;
    }
    return XPosRead::Nothing;
}
