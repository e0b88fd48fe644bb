#pragma once

#include "foundation/base/XString.h"

#include <cstddef>
#include <cstdint>

/// Reading and writing numbers as text, the same under every locale.
///
/// Reading: blanks, tabs and line ends before the number are skipped, a sign may stand before it,
/// then the longest leading decimal number counts ("12abc" is 12, "1e" is 1, ".5" is 0.5). Words
/// for infinity and NaN and hexadecimal forms are no numbers. What a double cannot hold is held at
/// its largest finite value, what is too small becomes 0: a number read is always finite.
///
/// Threads: any.

/// Reads the number at the start of `text`; the decimal separator is the point.
/// @return the number of bytes used, blanks included; 0 when there is no number or `text` is null,
///         then `value` is 0.
XAPI int XfnReadNumber(const char* text, double& value);

/// The same over exactly `length` bytes, which need no terminator.
XAPI int XfnReadNumber(const char* text, std::size_t length, double& value);

/// The form for number boxes: a comma counts as the point when it is the only separator in the
/// number ("1,5" is 1.5; "1,234.5" and "1,2,3" read as 1, as in a file).
XAPI int XfnReadBoxNumber(const char* text, double& value);

/// Reads a whole number, held at the ends of 64 bits; results as XfnReadNumber.
XAPI int XfnReadInteger(const char* text, std::int64_t& value);
XAPI int XfnReadInteger(const char* text, std::size_t length, std::int64_t& value);

/// The number at the start of `text`, 0 when there is none.
XAPI double XfnToDouble(const char* text);
XAPI double XfnBoxToDouble(const char* text); ///< with the comma of XfnReadBoxNumber
/// The whole number at the start of `text`, held at the ends of 32 bits; 0 when there is none.
XAPI int XfnToInt(const char* text);

/// `value` with exactly `decimals` digits behind the point (0..1100), rounded correctly.
/// NaN and infinity give "nan", "inf", "-inf".
XAPI XString XfnFormatNumber(double value, int decimals);

/// `value` with at most `digits` significant digits, in the shorter of both notations (%g).
XAPI XString XfnFormatGeneral(double value, int digits);

/// The shortest text that reads back as exactly `value`.
XAPI XString XfnFormatShortest(double value);

/// The bytes XfnWriteReal may need.
inline constexpr int kXRealTextSize = 1536;

/// Writes `value` into `buffer` of at least kXRealTextSize bytes, without a terminator.
/// @param conversion  f, e, g or a as in printf (capitals give capitals)
/// @param precision   as in printf, held at 0..1100; negative means the conversion's default
///                    (6; for a: as many as needed)
/// @return the number of bytes written; a minus sign stands first.
XAPI int XfnWriteReal(char* buffer, double value, char conversion, int precision);
