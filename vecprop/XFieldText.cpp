#include "vecprop/XFieldText.h"

#include "foundation/base/XNumber.h"
#include "foundation/base/XSentinels.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

constexpr const char* kBlanks = " \t\r\n";

XString WriteNumber(const tagXObjectField& field, double value)
{
    if (!XfnIsSet(value) || (value == 0.0 && *field.whenZero)) return {};
    const bool isPixels = field.kind == XFieldKind::Length && value <= 0.0;
    if (field.kind == XFieldKind::Length) value = std::fabs(value);
    if (field.measure != XFieldMeasure::Other && !isPixels)
        return XfnFormatPlaces(value, field.places);
    if (field.digits > 0) return XfnFormatGeneral(value, field.digits);
    return field.decimals < 0 ? XfnFormatShortest(value) : XfnFormatNumber(value, field.decimals);
}

bool IsBlank(const XString& text)
{
    return std::strspn(text, kBlanks) == static_cast<std::size_t>(text.GetLength());
}

int Refuse(XString& error, const XString& reason)
{
    error = reason;
    return 0;
}

int CheckRange(const tagXObjectField& field, double value, XString& error)
{
    const auto write = [](double limit) { return XfnFormatGeneral(limit, 10); };
    const bool isSize = field.least == 0.0;
    if (field.isNonZero && value == 0.0)
        return Refuse(error, isSize ? "Must be above 0." : "Must not be 0.");
    if (value >= field.least && value <= field.most) return 1;
    if (isSize) return Refuse(error, field.isNonZero ? "Must be above 0." : "Must not be below 0.");
    return Refuse(error,
                  XString("Must be from ") + write(field.least) + " to " + write(field.most) + ".");
}

int ReadCount(const tagXObjectField& field, const XString& text, XFieldValue& value, XString& error)
{
    double number;
    if (!XfnReadWholeNumber(text, field.unit, number) || number != std::floor(number))
        return Refuse(error, "Enter a whole number.");
    if (!CheckRange(field, number, error)) return 0;
    value = static_cast<int>(number);
    return 1;
}

int ReadKnots(const XString& text, XFieldValue& value, XString& error)
{
    XString rest = text;
    rest.Replace(";", " ");
    rest.Trim();
    XString knots;
    double last = kXNoData;
    while (!rest.IsEmpty()) {
        double knot;
        const int used = XfnReadBoxNumber(rest, knot);
        if (used == 0 || (used < rest.GetLength() && !std::strchr(kBlanks, rest[used])))
            return Refuse(error, "Enter numbers with blanks between them.");
        if (!XfnIsSet(knot)) return Refuse(error, "A knot is too large.");
        if (knot < last) return Refuse(error, "A knot must not be below the one before.");
        last = knot;
        if (!knots.IsEmpty()) knots += ' ';
        knots += XfnFormatShortest(knot);
        rest = rest.Mid(used);
        rest.TrimLeft();
    }
    value = knots;
    return 1;
}

} // namespace

XString XfnFormatPlaces(double value, int places)
{
    if (places < 0 || value == 0.0) return XfnFormatShortest(value + 0.0);
    constexpr int kDigits = 6;
    constexpr double kMost = 1e12;
    const double size = std::fabs(value);
    // three digits at least are told of a small number
    if (!(size >= std::pow(10.0, 2 - places) && size < kMost))
        return XfnFormatGeneral(value, kDigits);
    XString text = XfnFormatNumber(value, places);
    if (text.Find('.') >= 0) {
        text.TrimRight("0");
        text.TrimRight(".");
    }
    return text;
}

int XfnReadWholeNumber(const XString& text, const char* unit, double& value)
{
    double number;
    const int used = XfnReadBoxNumber(text, number);
    if (used == 0 || !XfnIsSet(number)) return 0;
    XString rest = text.Mid(used);
    rest.Trim();
    if (!rest.IsEmpty() && !(rest == unit)) return 0;
    value = number;
    return 1;
}

XString XfnFieldToText(const tagXObjectField& field, const XFieldValue& value)
{
    switch (field.kind) {
    case XFieldKind::Number:
    case XFieldKind::Length:
        return WriteNumber(field, std::get<double>(value));
    case XFieldKind::Count:
    case XFieldKind::Choice:
    case XFieldKind::Flag:
    case XFieldKind::Opacity:
        return XfnFormat("%d", std::get<int>(value));
    case XFieldKind::Color: {
        const tagXColor color = std::get<tagXColor>(value);
        return XfnFormat("#%02X%02X%02X", XfnGetRed(color), XfnGetGreen(color), XfnGetBlue(color));
    }
    default:
        return std::get<XString>(value);
    }
}

int XfnFieldFromText(const tagXObjectField& field, const XString& text, int isPixels,
                     XFieldValue& value, XString& error)
{
    double number;
    switch (field.kind) {
    case XFieldKind::Count:
        return ReadCount(field, text, value, error);
    case XFieldKind::Knots:
        return ReadKnots(text, value, error);
    case XFieldKind::Number:
    case XFieldKind::Length:
        if (*field.whenZero && IsBlank(text))
            number = 0.0;
        else if (!XfnReadWholeNumber(text, field.unit, number))
            return Refuse(error, "Enter a number.");
        if (!CheckRange(field, number, error)) return 0;
        number += 0.0; // no zero with a sign
        value = field.kind == XFieldKind::Length && isPixels && number > 0.0 ? -number : number;
        return 1;
    default:
        value = text;
        return 1;
    }
}
