#include "foundation/base/XCodePage.h"
#include "foundation/base/XNumber.h"
#include "foundation/base/XString.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr int kMaxWidth = 65535;

/// One conversion of a format string, without its length letters.
struct tagConversion
{
    bool left = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    bool zero = false;
    int width = 0;
    int precision = -1;
    char letter = '\0';
};

/// Hands out the arguments in order.
class XArgReader
{
public:
    XArgReader(const tagXFormatArg* args, int count) : m_args(args), m_count(count) {}

    const tagXFormatArg* Next() { return m_index < m_count ? &m_args[m_index++] : nullptr; }

private:
    const tagXFormatArg* m_args;
    int m_count;
    int m_index = 0;
};

std::int64_t ToInteger(const tagXFormatArg& arg)
{
    if (arg.kind != tagXFormatArg::Kind::Real) return static_cast<std::int64_t>(arg.bits);
    if (std::isnan(arg.real)) return 0;
    if (arg.real >= 0x1p63) return INT64_MAX;
    return arg.real < -0x1p63 ? INT64_MIN : static_cast<std::int64_t>(arg.real);
}

int ReadCount(const char*& p, XArgReader& args, int limit)
{
    if (*p == '*') {
        ++p;
        const tagXFormatArg* arg = args.Next();
        const std::int64_t value = arg ? ToInteger(*arg) : 0;
        return static_cast<int>(std::clamp<std::int64_t>(value, -limit, limit));
    }
    int value = 0;
    for (; *p >= '0' && *p <= '9'; ++p)
        value = std::min(value * 10 + (*p - '0'), limit);
    return value;
}

/// Reads what stands behind a percent sign; `p` ends behind the conversion letter.
tagConversion ReadConversion(const char*& p, XArgReader& args)
{
    tagConversion c;
    for (; *p && std::strchr("-+ #0", *p); ++p) {
        c.left |= *p == '-';
        c.plus |= *p == '+';
        c.blank |= *p == ' ';
        c.alternate |= *p == '#';
        c.zero |= *p == '0';
    }
    c.width = ReadCount(p, args, kMaxWidth);
    if (c.width < 0) {
        c.left = true;
        c.width = -c.width;
    }
    if (*p == '.') {
        ++p;
        c.precision = ReadCount(p, args, kMaxWidth);
    }
    if (std::strncmp(p, "I64", 3) == 0 || std::strncmp(p, "I32", 3) == 0) p += 3;
    while (*p && std::strchr("hlLqjzt", *p))
        ++p;
    if (*p && *p != '%') c.letter = *p++; // a percent sign starts the next conversion
    if (c.letter == 'S') c.letter = 's';  // the argument knows whether it is wide
    return c;
}

/// Appends sign or prefix and body, filled up to the width.
void AppendPadded(XString& out, const tagConversion& c, std::string_view prefix,
                  std::string_view body, bool fillWithZeros)
{
    const int used = static_cast<int>(prefix.size() + body.size());
    const int fill = std::max(c.width - used, 0);
    const XString padding(fillWithZeros && !c.left ? '0' : ' ', fill);
    if (!c.left && !fillWithZeros) out += padding;
    out.Append(prefix.data(), static_cast<int>(prefix.size()));
    if (!c.left && fillWithZeros) out += padding;
    out.Append(body.data(), static_cast<int>(body.size()));
    if (c.left) out += padding;
}

std::string_view GetSign(const tagConversion& c, bool isNegative)
{
    if (isNegative) return "-";
    return c.plus ? "+" : c.blank ? " " : "";
}

void AppendInteger(XString& out, const tagConversion& c, const tagXFormatArg& arg)
{
    using Kind = tagXFormatArg::Kind;
    const bool isDecimal = c.letter == 'd' || c.letter == 'i' || c.letter == 's';
    const bool isSigned = arg.kind == Kind::Real || (arg.kind == Kind::Integer && arg.isSigned);
    const std::int64_t value = ToInteger(arg);
    std::uint64_t magnitude = static_cast<std::uint64_t>(value);
    std::string_view prefix;
    if (isDecimal) {
        const bool isNegative = isSigned && value < 0;
        if (isNegative) magnitude = 0 - magnitude;
        prefix = GetSign(c, isNegative);
    } else if (arg.byteSize > 0 && arg.byteSize < 8) {
        magnitude &= (std::uint64_t{1} << arg.byteSize * 8) - 1;
    }
    const bool isHex = c.letter == 'x' || c.letter == 'X' || c.letter == 'p';
    char digits[72];
    char* end = std::to_chars(digits, digits + sizeof digits, magnitude,
                              isHex             ? 16
                              : c.letter == 'o' ? 8
                                                : 10)
                    .ptr;
    if (c.letter == 'X') {
        std::transform(digits, end, digits,
                       [](char ch) { return ch >= 'a' ? static_cast<char>(ch - 'a' + 'A') : ch; });
    }
    int count = static_cast<int>(end - digits);
    if (c.precision == 0 && magnitude == 0) count = 0;
    XString body(digits, count);
    if (c.precision > count) body = XString('0', c.precision - count) + body;
    if (c.alternate && c.letter == 'o' && body[0] != '0') body = '0' + body;
    if (c.letter == 'p' || (c.alternate && isHex && magnitude != 0)) {
        prefix = c.letter == 'X' ? "0X" : "0x";
    }
    AppendPadded(out, c, prefix, body.View(), c.zero && c.precision < 0);
}

void AppendReal(XString& out, const tagConversion& c, const tagXFormatArg& arg)
{
    using Kind = tagXFormatArg::Kind;
    double value = arg.real;
    if (arg.kind == Kind::Integer) {
        value = arg.isSigned ? static_cast<double>(static_cast<std::int64_t>(arg.bits))
                             : static_cast<double>(arg.bits);
    }
    char text[kXRealTextSize];
    std::string_view body(text, XfnWriteReal(text, value, c.letter, c.precision));
    const bool isNegative = body[0] == '-';
    if (isNegative) body.remove_prefix(1);
    AppendPadded(out, c, GetSign(c, isNegative), body, c.zero && std::isfinite(value));
}

void AppendText(XString& out, const tagConversion& c, std::string_view text)
{
    if (c.precision >= 0 && static_cast<std::size_t>(c.precision) < text.size()) {
        text = text.substr(
            0, XfnFitToCharacter(text.data(), static_cast<int>(text.size()), c.precision));
    }
    AppendPadded(out, c, {}, text, false);
}

void AppendArg(XString& out, tagConversion c, const tagXFormatArg& arg)
{
    using Kind = tagXFormatArg::Kind;
    const bool isNumber = arg.kind == Kind::Integer || arg.kind == Kind::Real;
    if (arg.kind == Kind::Text) {
        AppendText(out, c, c.letter == 'c' ? arg.text.substr(0, 1) : arg.text);
    } else if (arg.kind == Kind::WideText) {
        AppendText(out, c, XString(static_cast<const wchar_t*>(arg.pointer)).View());
    } else if (arg.kind == Kind::Pointer) {
        tagXFormatArg address(reinterpret_cast<std::uintptr_t>(arg.pointer));
        c.letter = 'p';
        AppendInteger(out, c, address);
    } else if (c.letter == 'c') {
        const char ch = static_cast<char>(ToInteger(arg));
        AppendPadded(out, c, {}, {&ch, 1}, false);
    } else if (isNumber && std::strchr("fFeEgGaA", c.letter)) {
        AppendReal(out, c, arg);
    } else if (c.letter == 's' && arg.kind == Kind::Real) {
        AppendText(out, c, XfnFormatShortest(arg.real).View());
    } else {
        if (c.letter == 's') c.precision = -1;
        AppendInteger(out, c, arg);
    }
}

} // namespace

void XString::FormatList(const char* format, const tagXFormatArg* args, int count)
{
    XString out;
    XArgReader reader(args, count);
    for (const char* p = format ? format : ""; *p;) {
        const std::size_t plain = std::strcspn(p, "%");
        out.Append(p, static_cast<int>(plain));
        p += plain;
        if (!*p) break;
        if (p[1] == '%') {
            out += '%';
            p += 2;
            continue;
        }
        const char* start = p++;
        const tagConversion c = ReadConversion(p, reader);
        const bool isKnown = c.letter && std::strchr("diouxXcspfFeEgGaA", c.letter);
        const tagXFormatArg* arg = isKnown ? reader.Next() : nullptr;
        if (arg) {
            AppendArg(out, c, *arg);
        } else {
            out.Append(start, static_cast<int>(p - start));
        }
    }
    Swap(out);
}
