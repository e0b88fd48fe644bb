#include "foundation/base/XNumber.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

namespace {

constexpr int kMaxPrecision = 1100; // no double has more digits behind the point

bool IsBlank(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

bool IsDigit(char ch)
{
    return ch >= '0' && ch <= '9';
}

/// Blanks and the characters of `set` behind them: all that a number at `text` can consist of, so
/// that reading from the middle of a large text does not walk to its end.
std::string_view GetSpan(const char* text, const char* set)
{
    if (!text) return {};
    std::size_t length = 0;
    while (IsBlank(text[length]))
        ++length;
    while (text[length] && std::strchr(set, text[length]))
        ++length;
    return {text, length};
}

/// True when the decimal number `text`, too large or too small for a double, is too large.
bool IsLarge(std::string_view text)
{
    std::int64_t magnitude = 0; // the power of ten of the first digit that is not 0
    bool isFraction = false;
    bool isFound = false;
    std::size_t i = 0;
    for (; i < text.size() && (IsDigit(text[i]) || text[i] == '.'); ++i) {
        if (text[i] == '.') {
            isFraction = true;
        } else {
            isFound = isFound || text[i] != '0';
            if (isFound && !isFraction) ++magnitude;
            if (!isFound && isFraction) --magnitude;
        }
    }
    std::int64_t exponent = 0;
    if (i < text.size()) {
        i += i + 1 < text.size() && text[i + 1] == '+' ? 2 : 1;
        const auto result = std::from_chars(text.data() + i, text.data() + text.size(), exponent);
        if (result.ec != std::errc()) exponent = text[i] == '-' ? INT_MIN : INT_MAX;
    }
    return exponent > -magnitude;
}

int ReadSpan(std::string_view text, double& value)
{
    value = 0.0;
    std::size_t i = 0;
    while (i < text.size() && IsBlank(text[i]))
        ++i;
    const bool isNegative = i < text.size() && text[i] == '-';
    if (isNegative || (i < text.size() && text[i] == '+')) ++i;
    // from_chars would take a second sign and the words for infinity and NaN
    if (i == text.size() || !(IsDigit(text[i]) || text[i] == '.')) return 0;
    const char* begin = text.data() + i;
    double read = 0.0;
    const auto result = std::from_chars(begin, text.data() + text.size(), read);
    if (result.ec == std::errc::invalid_argument) return 0;
    if (result.ec == std::errc::result_out_of_range) {
        const std::string_view digits(begin, static_cast<std::size_t>(result.ptr - begin));
        read = IsLarge(digits) ? std::numeric_limits<double>::max() : 0.0;
    }
    read = std::min(read, std::numeric_limits<double>::max());
    value = isNegative ? -read : read;
    return static_cast<int>(result.ptr - text.data());
}

int ReadIntegerSpan(std::string_view text, std::int64_t& value)
{
    value = 0;
    std::size_t i = 0;
    while (i < text.size() && IsBlank(text[i]))
        ++i;
    const bool isNegative = i < text.size() && text[i] == '-';
    if (i < text.size() && text[i] == '+') ++i;
    const std::size_t first = i + isNegative;
    if (first >= text.size() || !IsDigit(text[first])) return 0;
    const auto result = std::from_chars(text.data() + i, text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) value = isNegative ? INT64_MIN : INT64_MAX;
    return static_cast<int>(result.ptr - text.data());
}

std::string_view Hold(const char* text, std::size_t length)
{
    return text ? std::string_view(text, std::min<std::size_t>(length, INT_MAX))
                : std::string_view();
}

} // namespace

int XfnReadNumber(const char* text, double& value)
{
    const std::string_view span = GetSpan(text, "0123456789+-.eE");
    return XfnReadNumber(span.data(), span.size(), value);
}

int XfnReadNumber(const char* text, std::size_t length, double& value)
{
    return ReadSpan(Hold(text, length), value);
}

int XfnReadBoxNumber(const char* text, double& value)
{
    const std::string_view span = GetSpan(text, "0123456789+-.,eE");
    if (std::count(span.begin(), span.end(), ',') != 1 || span.find('.') != span.npos) {
        return XfnReadNumber(text, value);
    }
    XString pointed(span);
    pointed.SetAt(static_cast<int>(span.find(',')), '.');
    return XfnReadNumber(pointed, value);
}

int XfnReadInteger(const char* text, std::int64_t& value)
{
    const std::string_view span = GetSpan(text, "0123456789+-");
    return XfnReadInteger(span.data(), span.size(), value);
}

int XfnReadInteger(const char* text, std::size_t length, std::int64_t& value)
{
    return ReadIntegerSpan(Hold(text, length), value);
}

double XfnToDouble(const char* text)
{
    double value;
    XfnReadNumber(text, value);
    return value;
}

double XfnBoxToDouble(const char* text)
{
    double value;
    XfnReadBoxNumber(text, value);
    return value;
}

int XfnToInt(const char* text)
{
    std::int64_t value;
    XfnReadInteger(text, value);
    return static_cast<int>(std::clamp<std::int64_t>(value, INT_MIN, INT_MAX));
}

int XfnWriteReal(char* buffer, double value, char conversion, int precision)
{
    const bool isUpper = conversion >= 'A' && conversion <= 'Z';
    const char kind = isUpper ? static_cast<char>(conversion - 'A' + 'a') : conversion;
    char* const limit = buffer + kXRealTextSize;
    char* end = buffer;
    if (std::signbit(value) && !std::isnan(value)) *end++ = '-';
    const double magnitude = std::fabs(value);
    if (!std::isfinite(value)) {
        std::memcpy(end, std::isnan(value) ? "nan" : "inf", 3);
        end += 3;
    } else if (kind == 'a') {
        std::memcpy(end, "0x", 2);
        end += 2;
        end = precision < 0 ? std::to_chars(end, limit, magnitude, std::chars_format::hex).ptr
                            : std::to_chars(end, limit, magnitude, std::chars_format::hex,
                                            std::min(precision, kMaxPrecision))
                                  .ptr;
    } else {
        const auto format = kind == 'e'   ? std::chars_format::scientific
                            : kind == 'g' ? std::chars_format::general
                                          : std::chars_format::fixed;
        const int digits = precision < 0 ? 6 : std::min(precision, kMaxPrecision);
        end = std::to_chars(end, limit, magnitude, format, digits).ptr;
    }
    if (isUpper) {
        std::transform(buffer, end, buffer, [](char ch) {
            return ch >= 'a' && ch <= 'z' ? static_cast<char>(ch - 'a' + 'A') : ch;
        });
    }
    return static_cast<int>(end - buffer);
}

XString XfnFormatNumber(double value, int decimals)
{
    char text[kXRealTextSize];
    return XString(text, XfnWriteReal(text, value, 'f', std::max(decimals, 0)));
}

XString XfnFormatGeneral(double value, int digits)
{
    char text[kXRealTextSize];
    return XString(text, XfnWriteReal(text, value, 'g', std::max(digits, 0)));
}

XString XfnFormatShortest(double value)
{
    char text[kXRealTextSize];
    if (!std::isfinite(value)) return XString(text, XfnWriteReal(text, value, 'g', 0));
    const char* end = std::to_chars(text, text + sizeof text, value).ptr;
    return XString(text, static_cast<int>(end - text));
}
