#include "foundation/vector/XMeasureUnits.h"

#include <iterator>

namespace {

struct tagUnit
{
    const char* name;
    const wchar_t* sign; // wide, for the code page of narrow text has its own raised two
    double factor;       // one of both is 1
    double divisor;
};

constexpr tagUnit kLengths[kXLengthUnitCount] = {
    {"Meter", L"m", 1.0, 1.0},    {"KiloMeter", L"km", 1.0, 1000.0},
    {"Mile", L"mi", 1.0, 1609.3}, {"Yard", L"yd", 1.0936, 1.0},
    {"Feet", L"ft", 3.2808, 1.0}, {"Meter", L"m", 1.0, 1.0}, // no unit
    {"NM", L"NM", 1.0, 1852.3},
};

constexpr tagUnit kAreas[kXAreaUnitCount] = {
    {"Square Meter", L"m\u00B2", 1.0, 1.0},
    {"Square KiloMeter", L"km\u00B2", 1.0, 1000000.0},
    {"Square Mile", L"mi\u00B2", 1.0, 2589846.49},
    {"Square Yard", L"yd\u00B2", 1.1958, 1.0},
    {"Square Feet", L"ft\u00B2", 10.76364864, 1.0},
    {"Acre", L"acre", 1.0, 4046.8},
};

template <std::size_t N>
const tagUnit& Get(const tagUnit (&table)[N], int unit)
{
    return table[unit >= 0 && unit < static_cast<int>(N) ? unit : 0];
}

bool Holds(const XString& upper, const char* word)
{
    return upper.Find(word) >= 0;
}

} // namespace

const char* XfnGetLengthUnitName(int unit)
{
    return Get(kLengths, unit).name;
}

const char* XfnGetAreaUnitName(int unit)
{
    return Get(kAreas, unit).name;
}

XString XfnGetLengthUnitSign(int unit)
{
    return XString(Get(kLengths, unit).sign);
}

XString XfnGetAreaUnitSign(int unit)
{
    return XString(Get(kAreas, unit).sign);
}

double XfnConvertLength(double metres, int unit)
{
    const tagUnit& found = Get(kLengths, unit);
    return metres * found.factor / found.divisor;
}

double XfnConvertArea(double squareMetres, int unit)
{
    const tagUnit& found = Get(kAreas, unit);
    return squareMetres * found.factor / found.divisor;
}

int XfnFindLengthUnit(const XString& text)
{
    XString upper = text;
    upper.MakeUpper();
    if (Holds(upper, "METER")) return Holds(upper, "KILO") ? 1 : 0;
    if (Holds(upper, "MILE")) return 2;
    if (Holds(upper, "YARD")) return 3;
    return Holds(upper, "NM") ? 6 : 4;
}

int XfnFindAreaUnit(const XString& text)
{
    XString upper = text;
    upper.MakeUpper();
    if (Holds(upper, "METER")) return Holds(upper, "KILO") ? 1 : 0;
    if (Holds(upper, "MILE")) return 2;
    if (Holds(upper, "YARD")) return 3;
    return Holds(upper, "FEET") ? 4 : 5;
}
