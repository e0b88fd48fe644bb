#include "foundation/vector/XOgrStyle.h"

#include "foundation/base/XFillStyle.h"
#include "foundation/base/XNumber.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolypoint.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <map>

namespace {

constexpr double kPixelsPerInch = 96.0;

using Parameters = std::map<std::string, std::string, std::less<>>;

char GetLower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
}

/// Walks through "NAME(key:value,key:"value");NAME(...)".
class Reader
{
public:
    explicit Reader(std::string_view text) : m_text(text) {}

    /// The next tool and its parameters; false behind the last one.
    bool Read(std::string& name, Parameters& parameters)
    {
        name.clear();
        parameters.clear();
        while (!IsEnd() && m_text[m_at] != '(') {
            const char letter = m_text[m_at++];
            if (letter == ';' || letter == ' ') {
                name.clear();
            } else {
                name += GetLower(letter);
            }
        }
        if (IsEnd()) return false;
        ++m_at;
        while (!IsEnd() && m_text[m_at] != ')') {
            std::string key;
            while (!IsEnd() && m_text[m_at] != ':' && m_text[m_at] != ')') {
                const char letter = m_text[m_at++];
                if (letter != ' ') key += GetLower(letter);
            }
            if (IsEnd() || m_text[m_at] == ')') break;
            ++m_at;
            parameters[key] = ReadValue();
            if (!IsEnd() && m_text[m_at] == ',') ++m_at;
        }
        if (!IsEnd()) ++m_at;
        return true;
    }

private:
    bool IsEnd() const { return m_at >= m_text.size(); }

    std::string ReadValue()
    {
        std::string value;
        const bool isQuoted = !IsEnd() && m_text[m_at] == '"';
        if (isQuoted) ++m_at;
        while (!IsEnd()) {
            char letter = m_text[m_at];
            if (isQuoted ? letter == '"' : letter == ',' || letter == ')') break;
            const bool isEscape = letter == '\\' && m_at + 1 < m_text.size() && isQuoted;
            if (isEscape && (m_text[m_at + 1] == '"' || m_text[m_at + 1] == '\\')) {
                letter = m_text[++m_at];
            }
            value += letter;
            ++m_at;
        }
        if (isQuoted && !IsEnd()) ++m_at;
        while (isQuoted && !IsEnd() && m_text[m_at] != ',' && m_text[m_at] != ')')
            ++m_at;
        return value;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

int GetHexDigit(char letter)
{
    if (letter >= '0' && letter <= '9') return letter - '0';
    letter = GetLower(letter);
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

/// "#RRGGBB" or "#RRGGBBAA"; others leave `color` alone.
bool ReadColor(const Parameters& parameters, std::string_view key, tagXColor& color)
{
    const auto found = parameters.find(key);
    if (found == parameters.end()) return false;
    const std::string& text = found->second;
    if ((text.size() != 7 && text.size() != 9) || text[0] != '#') return false;
    unsigned parts[4] = {0, 0, 0, 255};
    for (std::size_t i = 1; i < text.size(); ++i) {
        const int digit = GetHexDigit(text[i]);
        if (digit < 0) return false;
        unsigned& part = parts[(i - 1) / 2];
        part = i % 2 ? static_cast<unsigned>(digit) : part * 16 + static_cast<unsigned>(digit);
    }
    color = XfnMakeColor(parts[0], parts[1], parts[2], parts[3]);
    return true;
}

/// World units when positive, pixels when negative; 0 when there is none.
double ReadLength(const Parameters& parameters, std::string_view key)
{
    const auto found = parameters.find(key);
    double value = 0.0;
    if (found == parameters.end()) return 0.0;
    const int used = XfnReadNumber(found->second.c_str(), value);
    if (used == 0 || !(value > 0.0)) return 0.0;
    const std::string unit = found->second.substr(static_cast<std::size_t>(used));
    if (unit == "g") return value;
    if (unit == "pt") return -value * kPixelsPerInch / 72.0;
    if (unit == "mm") return -value * kPixelsPerInch / 25.4;
    if (unit == "cm") return -value * kPixelsPerInch / 2.54;
    if (unit == "in") return -value * kPixelsPerInch;
    return -value;
}

/// The number at the end of the first name in a list such as "mapinfo-pen-2,ogr-pen-3" that begins with
/// `prefix`; -1 without one.
int ReadNumber(const Parameters& parameters, std::string_view key, std::string_view prefix)
{
    const auto found = parameters.find(key);
    if (found == parameters.end()) return -1;
    const std::size_t at = found->second.find(prefix);
    return at == std::string::npos ? -1 : XfnToInt(found->second.c_str() + at + prefix.size());
}

bool ReadFlag(const Parameters& parameters, std::string_view key)
{
    const auto found = parameters.find(key);
    return found != parameters.end() && found->second == "1";
}

void ReadPen(const Parameters& parameters, XOgrStyle& style)
{
    constexpr int kStyles[] = {
        tagXLineStyle::kSolid,   tagXLineStyle::kNone,       tagXLineStyle::kDash,
        tagXLineStyle::kDash,    tagXLineStyle::kLongDash,   tagXLineStyle::kDot,
        tagXLineStyle::kDashDot, tagXLineStyle::kDashDotDot, tagXLineStyle::kSparseDot};
    style.hasPen = true;
    ReadColor(parameters, "c", style.penColor);
    style.penWidth = ReadLength(parameters, "w");
    const int number = ReadNumber(parameters, "id", "ogr-pen-");
    if (number >= 0 && number < static_cast<int>(std::size(kStyles))) {
        style.penStyle = kStyles[number];
    } else if (parameters.find("p") != parameters.end()) {
        style.penStyle = tagXLineStyle::kDash;
    }
}

void ReadBrush(const Parameters& parameters, XOgrStyle& style)
{
    constexpr int kStyles[] = {tagXFillStyle::kSolid,
                               tagXFillStyle::kNone,
                               tagXFillStyle::kHorizontal,
                               tagXFillStyle::kVertical,
                               tagXFillStyle::kBackwardDiagonal,
                               tagXFillStyle::kForwardDiagonal,
                               tagXFillStyle::kCross,
                               tagXFillStyle::kDiagonalCross};
    style.hasBrush = true;
    ReadColor(parameters, "fc", style.brushFore);
    ReadColor(parameters, "bc", style.brushBack);
    const int number = ReadNumber(parameters, "id", "ogr-brush-");
    style.brushStyle = number >= 0 && number < static_cast<int>(std::size(kStyles))
                           ? kStyles[number]
                           : tagXFillStyle::kSolid;
}

void ReadSymbol(const Parameters& parameters, XOgrStyle& style)
{
    // cross, diagonal cross, circle twice, square twice, triangle twice
    constexpr int kShapes[] = {4, 5, 1, 1, 2, 2, 3, 3};
    style.hasSymbol = true;
    ReadColor(parameters, "c", style.symbolColor);
    style.symbolSize = ReadLength(parameters, "s");
    const int number = ReadNumber(parameters, "id", "ogr-sym-");
    if (number >= 0 && number < static_cast<int>(std::size(kShapes))) {
        style.symbolShape = kShapes[number];
    }
}

void ReadLabel(const Parameters& parameters, XOgrStyle::Label& label)
{
    const auto get = [&](const char* key) {
        const auto found = parameters.find(key);
        return found == parameters.end() ? std::string() : found->second;
    };
    label.isGiven = true;
    label.text = get("t");
    label.font = get("f").substr(0, get("f").find(','));
    label.size = ReadLength(parameters, "s");
    label.angleDeg = XfnToDouble(get("a").c_str());
    ReadColor(parameters, "c", label.color);
    label.isBold = ReadFlag(parameters, "bo");
    label.isItalic = ReadFlag(parameters, "it");
    label.isUnderlined = ReadFlag(parameters, "un");
    // three columns in the rows base line, middle, top, bottom
    const int anchor = XfnToInt(get("p").c_str());
    constexpr int kColumns[] = {kXTextLeft, kXTextCentre, kXTextRight};
    constexpr int kRows[] = {kXTextBottom, kXTextMiddle, kXTextTop, kXTextBottom};
    const int place = anchor >= 1 && anchor <= 12 ? anchor - 1 : 0;
    label.align = kColumns[place % 3] | kRows[place / 3];
}

} // namespace

XOgrStyle XOgrStyle::Parse(std::string_view text)
{
    XOgrStyle style;
    Reader reader(text);
    std::string name;
    Parameters parameters;
    while (reader.Read(name, parameters)) {
        if (name == "pen") {
            ReadPen(parameters, style);
        } else if (name == "brush") {
            ReadBrush(parameters, style);
        } else if (name == "symbol") {
            ReadSymbol(parameters, style);
        } else if (name == "label") {
            ReadLabel(parameters, style.label);
        }
    }
    return style;
}

void XOgrStyle::Apply(XvcObj& object) const
{
    if (auto* group = dynamic_cast<XvcGroup*>(&object)) {
        for (int i = 0; i < group->GetNumOfObjs(); ++i)
            Apply(*group->GetObjAt(i));
        return;
    }
    auto* point = dynamic_cast<XvcPoint*>(&object);
    auto* points = dynamic_cast<XvcPolypoint*>(&object);
    if (point || points) {
        const bool isGiven = hasSymbol || hasPen;
        if (!isGiven) return;
        const tagXColor color = hasSymbol ? symbolColor : penColor;
        object.SetLineColor(color);
        object.SetForeColor(color);
        if (hasSymbol && symbolSize != 0.0) object.SetThick(symbolSize);
        if (point && symbolShape >= 0) point->SetType(symbolShape);
        if (points && symbolShape >= 0) points->SetType(symbolShape);
        return;
    }
    if (hasPen) {
        object.SetLineColor(penColor);
        object.SetThick(penWidth);
        object.SetLineStyle(tagXLineStyle(penStyle));
    }
    if (!dynamic_cast<XvcPolygon*>(&object) && !dynamic_cast<XvcMPolygon*>(&object)) return;
    if (!hasBrush) {
        object.SetFillStyle(tagXFillStyle(tagXFillStyle::kNone));
        return;
    }
    object.SetForeColor(brushFore);
    object.SetBackColor(brushBack);
    object.SetFillStyle(tagXFillStyle(brushStyle));
    // a brush alone draws no outline
    if (!hasPen) object.SetLineStyle(tagXLineStyle(tagXLineStyle::kNone));
}
