#include "foundation/vector/XSymbolOutline.h"

#include "foundation/base/XNumber.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <string_view>
#include <utility>

namespace {

constexpr double kMaxNumber = 1000.0;
constexpr double kMaxSweepDeg = 360.0;
constexpr double kChordDeg = 7.5; // 48 chords a turn: no corner shows below some 200 pixels
constexpr double kSide = 2.0 * XSymbolOutline::kHalfSide;

struct tagShape
{
    char code;
    std::size_t leastNumbers;
    bool isCurve; // exactly so many numbers; else pairs
    bool isClosed;
};

constexpr tagShape kShapes[] = {{'L', 4, false, false},
                                {'P', 6, false, true},
                                {'C', 3, true, true},
                                {'E', 4, true, true},
                                {'A', 5, true, false}};

bool IsGap(char ch)
{
    return ch == ' ' || ch == ',' || ch == '\n' || ch == '\t' || ch == '\r';
}

std::string_view Trim(std::string_view text)
{
    while (!text.empty() && IsGap(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsGap(text.back()))
        text.remove_suffix(1);
    return text;
}

// @return false for anything that is no number, or one that is too large
bool ReadNumbers(std::string_view text, std::vector<double>& numbers)
{
    numbers.clear();
    for (text = Trim(text); !text.empty(); text = Trim(text)) {
        double value = 0.0;
        const int used = XfnReadNumber(text.data(), text.size(), value);
        if (used <= 0 || std::fabs(value) > kMaxNumber) return false;
        text.remove_prefix(static_cast<std::size_t>(used));
        if (!text.empty() && !IsGap(text.front())) return false;
        numbers.push_back(value);
    }
    return true;
}

const tagShape* FindShape(char code)
{
    const auto found = std::find_if(std::begin(kShapes), std::end(kShapes),
                                    [code](const tagShape& shape) { return shape.code == code; });
    return found == std::end(kShapes) ? nullptr : found;
}

bool AreCountsGood(const tagShape& shape, const std::vector<double>& numbers)
{
    if (shape.isCurve) return numbers.size() == shape.leastNumbers;
    return numbers.size() >= shape.leastNumbers && numbers.size() % 2 == 0;
}

// @return false for radii that are not positive and sweeps beyond a turn
bool AddVertices(char code, const std::vector<double>& numbers, std::vector<tagXVector3>& vertices)
{
    if (code == 'L' || code == 'P') {
        for (std::size_t i = 0; i < numbers.size(); i += 2) {
            vertices.push_back({numbers[i] / kSide, numbers[i + 1] / kSide});
        }
        return true;
    }
    const double radiusX = numbers[2];
    const double radiusY = code == 'E' ? numbers[3] : radiusX;
    const double beginDeg = code == 'A' ? numbers[3] : 0.0;
    const double sweepDeg = code == 'A' ? numbers[4] : 360.0;
    if (!(radiusX > 0.0) || !(radiusY > 0.0) || std::fabs(sweepDeg) > kMaxSweepDeg) return false;
    const int chords = std::max(1, static_cast<int>(std::ceil(std::fabs(sweepDeg) / kChordDeg)));
    const int count = code == 'A' ? chords + 1 : chords; // closed ones close by themselves
    for (int i = 0; i < count; ++i) {
        const double angle = (beginDeg + sweepDeg * i / chords) * std::numbers::pi / 180.0;
        vertices.push_back({(numbers[0] + radiusX * std::cos(angle)) / kSide,
                            (numbers[1] + radiusY * std::sin(angle)) / kSide});
    }
    return true;
}

} // namespace

int XSymbolOutline::Set(const XString& text, XString& error)
{
    constexpr const char* kRule =
        "A part of a symbol is one of s, f, b and k, then one of L, P, C, "
        "E and A, then its numbers.";
    if (text.GetLength() > kMaxTextLength) {
        error = "The text of a symbol is too long.";
        return 0;
    }
    XSymbolOutline made;
    std::vector<double> numbers;
    std::string_view rest = text.View();
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(';'), rest.size());
        const std::string_view part = Trim(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (part.empty()) continue;
        const tagShape* const shape = part.size() > 1 ? FindShape(part[1]) : nullptr;
        if (!shape || std::string_view("sfbk").find(part[0]) == std::string_view::npos ||
            !ReadNumbers(part.substr(2), numbers)) {
            error = kRule;
            return 0;
        }
        const auto first = static_cast<std::uint32_t>(made.m_vertices.size());
        if (!AreCountsGood(*shape, numbers) ||
            !AddVertices(shape->code, numbers, made.m_vertices)) {
            error =
                "A part of a symbol has too few or too many numbers, or one that it cannot have.";
            return 0;
        }
        const auto count = static_cast<std::uint32_t>(made.m_vertices.size()) - first;
        made.m_parts.push_back({part[0], shape->isClosed || part[0] != 's', first, count});
    }
    for (const tagXVector3& vertex : made.m_vertices)
        made.m_range.Add(vertex.x, vertex.y, 0.0);
    made.m_text = text;
    *this = std::move(made);
    return 1;
}

void XSymbolOutline::Record(XVertBuffer* buffer, const XWarp2D& place, const XWarp2D* warp,
                            const XVectorPaint& paint) const
{
    if (!buffer) return;
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    std::vector<tagXVector3> vertices = m_vertices;
    for (tagXVector3& vertex : vertices) {
        place.Warp(vertex.x, vertex.y);
        if (!XfnIsUsable(vertex)) vertex = {kNan, kNan};
    }
    XfnWarpVertices(vertices, warp);
    tagXVertFill inLine;
    inLine.foreColour = paint.line.colour;
    tagXVertFill inBack;
    inBack.foreColour = paint.fill.backColour;
    for (const tagPart& part : m_parts) {
        const tagXVector3* const from = vertices.data() + part.first;
        if (part.role == 's' && !part.isClosed) {
            buffer->AddPolyline(from, part.count, paint.line);
        } else if (part.role == 'k') {
            if (paint.GetLine()) buffer->AddPolygon(from, part.count, nullptr, &inLine);
        } else {
            const tagXVertFill* fill = nullptr;
            if (part.role == 'f') fill = paint.GetFill();
            if (part.role == 'b') fill = &inBack;
            buffer->AddPolygon(from, part.count, paint.GetLine(), fill);
        }
    }
}
