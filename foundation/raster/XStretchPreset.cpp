#include "foundation/raster/XStretchPreset.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XGaussianRange.h"

#include <algorithm>

namespace {

constexpr int kChannels = 3;
constexpr int kClassMap = 8;

constexpr tagXStretchPreset kPresets[] = {
    {40046, "Whole Region - MinMax - Linear", 0, 1, 1},
    {40047, "Whole Region - MinMax - Equalize", 0, 1, 5},
    {40048, "Whole Region - MinMax - SqureRoot", 0, 1, 7},
    {40049, "Whole Region - Gaussian95% - Linear", 0, 3, 1},
    {40050, "Whole Region - Gaussian95% - Equalize", 0, 3, 5},
    {40051, "Whole Region - Gaussian95% - SquareRoot", 0, 3, 7},
    {40052, "Whole Region - Gaussian98% - Linear", 0, 2, 1},
    {40053, "Whole Region - Gaussian98% - Equalize", 0, 2, 5},
    {40054, "Whole Region - Gaussian98% - SquareRoot", 0, 2, 7},
    {40055, "Visible Region - MinMax - Linear", 1, 1, 1},
    {40056, "Visible Region - MinMax - Equalize", 1, 1, 5},
    {40057, "Visible Region - MinMax - SquareRoot", 1, 1, 7},
    {40058, "Visible Region - Gaussian95% - Linear", 1, 3, 1},
    {40059, "Visible Region - Gaussian95% - Eqaulize", 1, 3, 5},
    {40060, "Visible Region - Gaussian95% - SquareRoot", 1, 1, 7},
    {40061, "Visible Region - Gaussian98% - Linear", 1, 2, 1},
    {40062, "Visible Region - Gaussian98% - Equalize", 1, 2, 5},
    {40063, "Visible Region - Gaussian98% - SquareRoot", 1, 1, 7},
};

int IsEnhanced(const XDMComposite& composite)
{
    const XDMBand* first = composite.GetFirstBand();
    return first && composite.GetMode() != 3 && first->GetBandType() != kClassMap;
}

template <class Change>
void ForEachEnhanced(XDMCompManager& manager, Change change)
{
    for (int i = 0; i < manager.GetNumberOfXDMComposite(); ++i) {
        XDMComposite* composite = manager.GetXDMCompositeAt(i);
        composite->UpdateNeeded();
        if (!IsEnhanced(*composite)) continue;
        for (int ch = 0; ch < kChannels; ++ch)
            change(*composite, ch);
    }
}

} // namespace

std::span<const tagXStretchPreset> XfnGetStretchPresets()
{
    return kPresets;
}

const tagXStretchPreset* XfnFindStretchPreset(int command)
{
    const auto* found = std::ranges::find(kPresets, command, &tagXStretchPreset::command);
    return found == std::end(kPresets) ? nullptr : found;
}

int XfnCanEnhance(const XDMCompManager& manager)
{
    for (int i = 0; i < manager.GetNumberOfXDMComposite(); ++i)
        if (IsEnhanced(*manager.GetXDMCompositeAt(i))) return 1;
    return 0;
}

void XfnEnhance(XDMCompManager& manager, int cutType, int stretchType)
{
    ForEachEnhanced(manager, [&](XDMComposite& composite, int ch) {
        composite.SetCutType(cutType, ch);
        composite.SetStretchType(stretchType, ch);
    });
}

void XfnEnhanceEx(XDMCompManager& manager, int coverage, int cutType, int stretchType)
{
    ForEachEnhanced(manager, [&](XDMComposite& composite, int ch) {
        composite.SetStretchCoverage(coverage, ch);
        composite.SetCutType(cutType, ch);
        const XDMBand* band = composite.GetBand(ch);
        if (coverage == 0 && band) {
            const auto numbers = band->GetStatistics();
            double low = 0.0, high = 0.0;
            if (XfnCalcCutRange(cutType, numbers->min, numbers->max, numbers->mean, numbers->stdDev,
                                numbers->histogram.data(), low, high))
                composite.SetCutRange(low, high, ch);
        }
        composite.SetStretchType(stretchType, ch);
    });
}
