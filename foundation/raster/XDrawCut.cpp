#include "foundation/raster/XDrawCut.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

namespace {

/// The nearest float; numbers beyond its range stay at its ends.
float ToFloat(double value)
{
    if (std::isnan(value)) return std::numeric_limits<float>::quiet_NaN();
    return static_cast<float>(std::clamp(value, -double{FLT_MAX}, double{FLT_MAX}));
}

/// A value to compare with: one that no float can equal is none.
float ToKey(double value)
{
    constexpr double kEdge = FLT_MAX * 1.000001; // headers round the largest float on writing
    if (std::isinf(value)) return static_cast<float>(value);
    if (!(std::fabs(value) <= kEdge)) return std::numeric_limits<float>::quiet_NaN();
    return ToFloat(value);
}

} // namespace

tagXDrawCut XfnMakeCut(const tagXCutSettings& settings)
{
    double scale = DBL_MAX;
    if (settings.cutMax != settings.cutMin) {
        const double half = settings.cutMax * 0.5 - settings.cutMin * 0.5; // the whole may overflow
        scale = std::clamp(127.5 / half, -DBL_MAX, DBL_MAX);
    }
    double low = settings.cutMin;
    double offset = 0.5;
    if (settings.matchA == 0.0) { // every value is the same one: the slope would divide by 0
        offset += std::clamp((settings.matchB - low) * scale, -1e6, 1e6);
        low = scale = 0.0;
    } else {
        low = (low - settings.matchB) / settings.matchA;
        scale *= settings.matchA;
    }
    tagXDrawCut cut;
    cut.wide = {std::clamp(low, -DBL_MAX, DBL_MAX), std::clamp(scale, -DBL_MAX, DBL_MAX), offset,
                settings.null, settings.transparent};
    cut.single = {ToFloat(low), ToFloat(scale), ToFloat(offset), ToKey(settings.null),
                  ToKey(settings.transparent)};
    return cut;
}
