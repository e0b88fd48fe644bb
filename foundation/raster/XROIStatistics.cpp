#include "foundation/base/XObArray.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XGridMap.h"
#include "foundation/raster/XJointWalk.h"
#include "foundation/raster/XROI.h"

#include <cmath>
#include <new>
#include <utility>

namespace {

constexpr int kEdgeParts = 16; // a straight edge bends in another reference

/// @return 0 with a sentence when an object is no band of numbers
int ListBands(const XObArray* objects, std::vector<XDMBand*>& bands, XString& message)
{
    for (int i = 0; objects && i < objects->GetSize(); ++i) {
        auto* band = dynamic_cast<XDMBand*>(objects->GetAt(i));
        if (!band || band->GetNumOfLevels() < 1) {
            message = "A band of the region is missing or has no pixels.";
            return 0;
        }
        if (!XfnIsRealType(band->GetDataType())) {
            message.Format("Band \"%s\" is complex; a region has statistics of real bands only.",
                           band->GetBandName().GetString());
            return 0;
        }
        bands.push_back(band);
    }
    if (bands.empty()) message = "There is no band to calculate the region's statistics from.";
    return !bands.empty();
}

/// The vertices in pixels of a band; with `parts` above 1 every edge in so many pieces.
struct tagOutline
{
    std::vector<double> x, y;

    tagOutline(const XROI& region, XWorldMap& map, int parts)
    {
        const XArray<tagXVector3>& vertices = *region.GetVertexArray();
        const int count = vertices.GetSize();
        const bool isClosed = region.GetType() == kXROIPolygon && count > 1;
        for (int i = 0; i < count; ++i) {
            const tagXVector3& a = vertices[i];
            const tagXVector3& b = vertices[i + 1 < count ? i + 1 : isClosed ? 0 : i];
            const int pieces = i + 1 < count || isClosed ? parts : 1;
            for (int k = 0; k < pieces; ++k) {
                const double part = static_cast<double>(k) / pieces;
                x.push_back(a.x + part * (b.x - a.x));
                y.push_back(a.y + part * (b.y - a.y));
            }
        }
        map.MapWorld(static_cast<int>(x.size()), x.data(), y.data());
    }
};

/// @return 0 with a sentence when the region cannot be placed on the band's pixels
int MakeMask(const XROI& region, const XDMBand& first, const XDMBand& band, XRegionMask& mask,
             XString& message)
{
    XWorldMap map(first, band);
    if (!map.IsValid()) {
        message.Format("Nothing joins the reference of band \"%s\" with that of the first band.",
                       band.GetBandName().GetString());
        return 0;
    }
    tagOutline outline(region, map, XfnNeedsTransform(first, band) ? kEdgeParts : 1);
    const auto count = static_cast<int>(outline.x.size());
    const int width = band.GetXSize(), height = band.GetYSize();
    const bool isPolygon = region.GetType() == kXROIPolygon;
    int isPlaced = isPolygon
                       ? mask.SetPolygon(outline.x.data(), outline.y.data(), count, width, height)
                       : mask.SetPolyline(outline.x.data(), outline.y.data(), count, width, height);
    if (isPlaced && isPolygon && mask.IsEmpty()) { // too small to hold the centre of a pixel
        outline.x.push_back(outline.x.front());
        outline.y.push_back(outline.y.front());
        isPlaced = mask.SetPolyline(outline.x.data(), outline.y.data(), count + 1, width, height);
    }
    if (!isPlaced)
        message.Format("The vertices of region \"%s\" have no place on band \"%s\".",
                       region.GetName().GetString(), band.GetBandName().GetString());
    return isPlaced;
}

int Calculate(const XROI& region, const XObArray* objects, XThread* thread,
              tagXRegionStatistics& numbers, XString& message)
{
    std::vector<XDMBand*> bands;
    if (!ListBands(objects, bands, message)) return 0;
    const XDMBand& first = *bands.front();
    XRegionMask mask;
    if (!MakeMask(region, first, first, mask, message)) return 0;
    if (mask.IsEmpty()) {
        message.Format("Region \"%s\" lies outside the image.", region.GetName().GetString());
        return 0;
    }
    std::vector<std::size_t> others; // bands of another grid: their own pixels count
    for (std::size_t i = 0; i < bands.size(); ++i)
        if (!XfnShareGrid(first, *bands[i])) others.push_back(i);
    const int walks = static_cast<int>(others.size()) + 1;

    XBlockRun run(thread);
    run.SetPercents(0, 100 / walks);
    XJointWalk walk(bands);
    walk.SetMask(&mask);
    walk.SetNullValue(region.GetNullValue());
    walk.SetHistograms();
    if (!walk.Run(run, numbers, message)) return 0;
    for (std::size_t k = 0; k < others.size(); ++k) {
        XDMBand* band = bands[others[k]];
        XRegionMask own;
        if (!MakeMask(region, first, *band, own, message)) return 0;
        XJointWalk alone({band});
        alone.SetMask(&own);
        alone.SetNullValue(region.GetNullValue());
        alone.SetHistograms();
        tagXRegionStatistics ownNumbers;
        const int done = static_cast<int>(k) + 1;
        run.SetPercents(100 * done / walks, 100 * (done + 1) / walks);
        if (!alone.Run(run, ownNumbers, message)) return 0;
        numbers.bands[others[k]] = std::move(ownNumbers.bands.front());
    }
    if (!numbers.IsConsistent()) {
        message = "The values of the bands are too large for their variances.";
        return 0;
    }
    return 1;
}

} // namespace

int XROI::CalcStatistics(XObArray* bands, XThread* thread, XString* message)
{
    tagXRegionStatistics numbers;
    XString reason;
    int isDone = 0;
    try {
        isDone =
            Calculate(*this, bands, thread, numbers, reason) && SetStatistics(std::move(numbers));
    } catch (const std::bad_alloc&) {
        reason = "There is not enough memory for the region's statistics.";
    }
    if (message) *message = reason;
    return isDone;
}
