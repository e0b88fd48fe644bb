#include "vecprop/XObjectUnit.h"

#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcObj.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kPlaces = 3;
constexpr int kDegreePlaces = 9;
constexpr double kMostDegrees = 1000.0; // as a coordinate, with turns to spare

int GetPlaces(const tagXVectorRange& range)
{
    if (range.IsEmpty()) return kDegreePlaces;
    const double most = std::max({std::fabs(range.minX), std::fabs(range.maxX),
                                  std::fabs(range.minY), std::fabs(range.maxY)});
    return most < kMostDegrees ? kDegreePlaces : kPlaces;
}

} // namespace

tagXObjectUnit XfnGetObjectUnit(const XvcObj& object)
{
    static constexpr struct
    {
        const char* name;
        tagXObjectUnit unit;
    } kUnits[] = {{"metre", {"m", "metres", kPlaces}},
                  {"degree", {"\xC2\xB0", "degrees", kDegreePlaces}},
                  {"kilometre", {"km", "kilometres", 6}},
                  {"foot", {"ft", "feet", kPlaces}},
                  {"US survey foot", {"ft", "feet", kPlaces}}};
    const XvcLayer* layer = object.GetParentLayer();
    const XvcBase* base = layer ? layer->GetParentBase() : nullptr;
    if (base && !base->GetSR()->IsEmpty()) {
        const XString name = base->GetSR()->GetUnitName();
        for (const auto& known : kUnits)
            if (name == known.name) return known.unit;
    }
    tagXObjectUnit unit;
    unit.places = GetPlaces(object.GetRange());
    return unit;
}
