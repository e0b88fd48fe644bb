#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

/// The units that measurements are shown in, by the index that dialogs and objects keep.
///
/// | length               | from metres | area                  | from square metres |
/// |----------------------|-------------|-----------------------|--------------------|
/// | 0 "Meter"            | as is       | 0 "Square Meter"      | as is              |
/// | 1 "KiloMeter"        | / 1000      | 1 "Square KiloMeter"  | / 1,000,000        |
/// | 2 "Mile"             | / 1609.3    | 2 "Square Mile"       | / 2589846.49       |
/// | 3 "Yard"             | x 1.0936    | 3 "Square Yard"       | x 1.1958           |
/// | 4 "Feet"             | x 3.2808    | 4 "Square Feet"       | x 10.76364864      |
/// | 6 "NM" (nautical)    | / 1852.3    | 5 "Acre"              | / 4046.8           |
///
/// Length 5 does not exist. The factors are rounder than the units themselves: hosts compare the
/// figures with those of other tools that show them so.
/// An index that does not exist counts as 0. Threads: any.
constexpr int kXLengthUnitCount = 7; ///< one past the last index
constexpr int kXAreaUnitCount = 6;
constexpr int kXNoLengthUnit = 5; ///< the index without a unit

XAPI const char* XfnGetLengthUnitName(int unit); ///< as in the table
XAPI const char* XfnGetAreaUnitName(int unit);
XAPI XString XfnGetLengthUnitSign(int unit); ///< "m", "km", "mi", "yd", "ft", "NM"
XAPI XString XfnGetAreaUnitSign(int unit);   ///< "m" with a raised two, ..., "acre"

XAPI double XfnConvertLength(double metres, int unit);
XAPI double XfnConvertArea(double squareMetres, int unit);

/// The unit that a text names, by the first of these words in it, whatever their case: "meter"
/// (with "kilo" kilometres), "mile", "yard"; then "nm", otherwise feet.
XAPI int XfnFindLengthUnit(const XString& text);
/// "meter" (with "kilo"), "mile", "yard", "feet"; otherwise acres.
XAPI int XfnFindAreaUnit(const XString& text);
