#include "foundation/vector/XvcAxis.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbGeometry.h"

#include <algorithm>
#include <cmath>
#include <string>

X_IMPLEMENT_CLASS(XvcAxis, XvcVertexObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr tagXColor kFirstGridColor = XfnMakeColor(208, 208, 208, 255);
constexpr double kUprightDeg = 90.0;

// In heights of a line.
constexpr double kMajorTick = 0.45;
constexpr double kMinorTick = 0.25;
constexpr double kTextGap = 0.2;
constexpr double kLabelGap = 0.5;
constexpr double kTitleGap = 0.35;
constexpr double kLeastMinorStep = 0.2;         // closer minor ticks are left out
constexpr double kHeightInLengths = 1.0 / 40.0; // for ticks, when the height is not known
constexpr int kMaxTitleLines = 100;             // blank ones between axis and title

} // namespace

// How the axis lies, and what stands along it.
struct XvcAxis::tagFrame
{
    tagXVector3 start, end;
    tagXVector3 along; // unit vectors: from start to end ...
    tagXVector3 aside; // ... and to the side of the labels
    bool isUpright = false;
    double length = 0.0;
    double height = 0.0; // of the letters
    bool isHeightKnown = false;
    std::vector<tagXAxisTick> ticks;
    int stride = 1; // every so-many-th label is drawn
    bool hasMinor = true;
    double labelReach = 0.0; // of the labels to the side, in heights

    tagXVector3 GetTextPlace(const tagXVector3& onAxis) const
    {
        return onAxis + aside * ((kMajorTick + kTextGap) * height);
    }
    // Between labels and title, where the height of a line in the world is not known.
    int GetBlankLines() const
    {
        if (isHeightKnown) return 0;
        return std::min(static_cast<int>(std::ceil(labelReach)), kMaxTitleLines);
    }
    // From the place of the labels to that of the title, in heights.
    double GetTitleReach() const { return kTitleGap + (isHeightKnown ? labelReach : 0.0); }
};

XvcAxis::XvcAxis() : XvcAxis({kXNotSet, kXNotSet}, {kXNotSet, kXNotSet}) {}

XvcAxis::XvcAxis(const tagXVector3& start, const tagXVector3& end, double minimum, double maximum)
    : m_gridColor(kFirstGridColor)
{
    m_vertices.Reserve(2);
    Add(start);
    Add(end);
    SetValueRange(minimum, maximum);
    SetLineColor(kXOpaque);
}

void XvcAxis::SetVertices(const tagXVector3& start, const tagXVector3& end)
{
    Touch();
    SetAt(0, start);
    SetAt(1, end);
}

int XvcAxis::IsUpright() const
{
    const tagXVector3 step = GetEndVertex() - GetStartVertex();
    return std::fabs(step.y) > std::fabs(step.x) ? 1 : 0;
}

void XvcAxis::SetValueRange(double minimum, double maximum)
{
    Touch();
    if (!XfnIsSet(minimum) || !XfnIsSet(maximum)) return;
    Touch();
    m_scale.minimum = minimum;
    m_scale.maximum = maximum;
}

void XvcAxis::SetMajorStep(double step)
{
    Touch();
    if (step >= 0.0 && XfnIsSet(step)) m_scale.majorStep = step;
}

void XvcAxis::SetMajorCount(int count)
{
    Touch();
    m_scale.majorCount = std::clamp(count, 2, 100);
}

void XvcAxis::SetMinorCount(int count)
{
    Touch();
    m_scale.minorCount = std::clamp(count, -1, 9);
}

void XvcAxis::SetDecimals(int decimals)
{
    Touch();
    m_scale.decimals = std::clamp(decimals, -1, 15);
}

void XvcAxis::SetGridLength(double length)
{
    Touch();
    if (length >= 0.0 && XfnIsSet(length)) m_gridLength = length;
}

bool XvcAxis::IsLogUsable() const
{
    return m_scale.isLog && m_scale.minimum > 0.0 && m_scale.maximum > 0.0;
}

tagXVector3 XvcAxis::GetPlaceOf(double value) const
{
    constexpr tagXVector3 kNowhere(kXNotSet, kXNotSet, kXNotSet);
    const tagXVector3 start = GetStartVertex(), end = GetEndVertex();
    if (!XfnIsUsable(start) || !XfnIsUsable(end) || !XfnIsSet(value)) return kNowhere;
    double share;
    if (m_scale.minimum == m_scale.maximum) {
        if (value != m_scale.minimum) return kNowhere;
        share = 0.0;
    } else if (IsLogUsable()) {
        if (!(value > 0.0)) return kNowhere;
        share = std::log(value / m_scale.minimum) / std::log(m_scale.maximum / m_scale.minimum);
    } else {
        share = (value - m_scale.minimum) / (m_scale.maximum - m_scale.minimum);
    }
    if (m_invertFlag) share = 1.0 - share;
    const tagXVector3 place(start.x + (end.x - start.x) * share,
                            start.y + (end.y - start.y) * share, start.z);
    return XfnIsUsable(place) ? place : kNowhere;
}

double XvcAxis::GetValueAt(double x, double y) const
{
    const tagXVector3 start = GetStartVertex(), end = GetEndVertex();
    if (!XfnIsUsable(start) || !XfnIsUsable(end) || !XfnIsUsable({x, y})) return kXNotSet;
    const double length = std::hypot(end.x - start.x, end.y - start.y);
    if (!(length > 0.0) || !XfnIsSet(length)) return kXNotSet;
    double share = ((x - start.x) / length) * ((end.x - start.x) / length) +
                   ((y - start.y) / length) * ((end.y - start.y) / length);
    if (m_invertFlag) share = 1.0 - share;
    const double value = IsLogUsable()
                             ? m_scale.minimum * std::pow(m_scale.maximum / m_scale.minimum, share)
                             : m_scale.minimum + (m_scale.maximum - m_scale.minimum) * share;
    return XfnIsSet(value) ? value : kXNotSet;
}

bool XvcAxis::GetFrame(tagFrame& frame) const
{
    frame.start = GetStartVertex();
    frame.end = GetEndVertex();
    if (!XfnIsUsable(frame.start) || !XfnIsUsable(frame.end)) return false;
    frame.length = std::hypot(frame.end.x - frame.start.x, frame.end.y - frame.start.y);
    if (!(frame.length > 0.0) || !XfnIsSet(frame.length)) return false;
    frame.along = {(frame.end.x - frame.start.x) / frame.length,
                   (frame.end.y - frame.start.y) / frame.length};
    frame.isUpright = IsUpright();
    frame.aside = {-frame.along.y, frame.along.x};
    const bool isFirstSide = (frame.isUpright ? frame.aside.x : frame.aside.y) < 0.0;
    if (isFirstSide != (m_tickSide == kBelowOrLeft)) frame.aside = -frame.aside;
    frame.height = m_font.GetHeight(m_worldPerPixel);
    frame.isHeightKnown = frame.height > 0.0;
    if (!frame.isHeightKnown) frame.height = kHeightInLengths * frame.length;
    frame.ticks = XfnMakeAxisTicks(m_scale);
    std::erase_if(frame.ticks, [this](const tagXAxisTick& tick) {
        return !XfnIsUsable(GetPlaceOf(tick.value));
    });
    double widest = 0.0, least = frame.length, leastMinor = frame.length;
    const tagXAxisTick* before = nullptr;
    tagXVector3 placeBefore;
    for (const tagXAxisTick& tick : frame.ticks) {
        const tagXVector3 place = GetPlaceOf(tick.value);
        const auto shorten = [&place](double& shortest, const tagXVector3& from) {
            shortest = std::min(shortest, std::hypot(place.x - from.x, place.y - from.y));
        };
        if (&tick != frame.ticks.data()) shorten(leastMinor, placeBefore);
        placeBefore = place;
        if (tick.label.IsEmpty()) continue;
        widest = std::max(widest, m_font.GetWidth(tick.label));
        if (before) shorten(least, GetPlaceOf(before->value));
        before = &tick;
    }
    frame.hasMinor = leastMinor >= kLeastMinorStep * frame.height;
    if (!m_labelFlag) return true;
    frame.labelReach = widest > 0.0 ? (frame.isUpright ? widest : 1.0) : 0.0;
    if (frame.isHeightKnown && least > 0.0) {
        const double needed = (frame.isUpright ? 1.1 : widest + kLabelGap) * frame.height;
        frame.stride = static_cast<int>(std::clamp(std::ceil(needed / least), 1.0, 1e6));
    }
    return true;
}

void XvcAxis::CalcRange()
{
    XvcVertexObj::CalcRange();
    tagFrame frame;
    if (!GetFrame(frame) || !frame.isHeightKnown) return;
    // half as wide along the axis, from the place of texts to the side
    const auto add = [&](const tagXVector3& onAxis, double half, double from, double to) {
        const tagXVector3 place = frame.GetTextPlace(onAxis);
        for (const double side : {-half, half}) {
            for (const double reach : {from, to}) {
                const tagXVector3 corner =
                    place + (frame.along * side + frame.aside * reach) * frame.height;
                m_range.Add(corner.x, corner.y, XfnIsSet(frame.start.z) ? frame.start.z : 0.0);
            }
        }
    };
    const tagXVector3 middle = frame.start * 0.5 + frame.end * 0.5;
    add(middle, 0.0, 0.0, 0.0);
    int index = 0;
    for (const tagXAxisTick& tick : frame.ticks) {
        if (!m_labelFlag || tick.label.IsEmpty() || index++ % frame.stride) continue;
        const double width = m_font.GetWidth(tick.label);
        add(GetPlaceOf(tick.value), frame.isUpright ? 0.5 : width / 2.0, 0.0,
            frame.isUpright ? width : 1.0);
    }
    if (!m_title.IsEmpty()) {
        const double half = m_font.GetWidth(m_title) / 2.0;
        add(middle, half, 0.0, frame.GetTitleReach() + 1.0);
    }
}

void XvcAxis::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                 const tagXDrawAttrs* attrs)
{
    tagFrame frame;
    if (!buffer || !GetFrame(frame)) return;
    const XWarp2D* const map = ChooseWarp(warp);
    const XVectorPaint paint(*this, attrs);
    const auto addLine = [&](const tagXVector3& a, const tagXVector3& b, const tagXVertLine& line) {
        std::vector<tagXVector3> path{a, b};
        XfnWarpVertices(path, map);
        buffer->AddPolyline(path.data(), path.size(), line);
    };
    tagXVertLine grid;
    grid.colour = m_gridColor;
    for (const tagXAxisTick& tick : frame.ticks) {
        if (!(m_gridLength > 0.0) || !tick.isMajor) continue;
        const tagXVector3 at = GetPlaceOf(tick.value);
        addLine(at, at - frame.aside * m_gridLength, grid);
    }
    tagXVertLine tickLine = paint.line;
    if (!tickLine.style.IsNone()) tickLine.style = tagXLineStyle(tagXLineStyle::kSolid);
    tagXVertText text;
    const bool isFirstSide = m_tickSide == kBelowOrLeft;
    text.align = frame.isUpright ? kXTextMiddle | (isFirstSide ? kXTextRight : kXTextLeft)
                                 : kXTextCentre | (isFirstSide ? kXTextTop : kXTextBottom);
    int index = 0;
    for (const tagXAxisTick& tick : frame.ticks) {
        const tagXVector3 at = GetPlaceOf(tick.value);
        if (!tick.isMajor && !frame.hasMinor) continue;
        const bool isLong = tick.isMajor && index % frame.stride == 0;
        addLine(at, at + frame.aside * ((isLong ? kMajorTick : kMinorTick) * frame.height),
                tickLine);
        if (tick.label.IsEmpty() || index++ % frame.stride || !m_labelFlag) continue;
        text.position = frame.GetTextPlace(at);
        text.text = tick.label;
        m_font.Record(*buffer, text, map, paint.line.colour);
    }
    addLine(frame.start, frame.end, paint.line);

    if (m_title.IsEmpty()) return;
    // blank lines keep the title off the labels, whatever a line is high in the world
    const std::string blank(static_cast<std::size_t>(frame.GetBlankLines()), '\n');
    const bool isBehind = frame.isUpright == isFirstSide; // its foot is towards the axis
    text.text = isBehind ? m_title + blank.c_str() : XString(blank.c_str()) + m_title;
    text.align = kXTextCentre | (isBehind ? kXTextBottom : kXTextTop);
    text.angleDeg = frame.isUpright ? kUprightDeg : 0.0;
    text.position = frame.GetTextPlace(frame.start * 0.5 + frame.end * 0.5) +
                    frame.aside * (frame.GetTitleReach() * frame.height);
    m_font.Record(*buffer, text, map, paint.line.colour);
}

void XvcAxis::ScaleLengths(double factorX, double factorY)
{
    XvcVertexObj::ScaleLengths(factorX, factorY);
    SetGridLength(m_gridLength * (IsUpright() ? factorX : factorY)); // runs across the axis
    m_font.Scale(factorY);
}

XString XvcAxis::ExportToWkt() const
{
    return XWktWriter::FromLine(m_vertices);
}

void XvcAxis::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << m_scale.minimum << m_scale.maximum << GetLogFlag()
            << m_scale.majorStep << m_scale.majorCount << m_scale.minorCount << m_scale.decimals
            << m_title << m_invertFlag << m_tickSide << m_labelFlag << m_gridLength << m_gridColor
            << m_worldPerPixel;
    m_font.Store(archive);
}

void XvcAxis::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    double minimum = 0.0, maximum = 0.0, majorStep = 0.0, gridLength = 0.0, worldPerPixel = 0.0;
    int logFlag = 0, majorCount = 0, minorCount = 0, decimals = 0;
    int invertFlag = 0, tickSide = 0, labelFlag = 0;
    tagXColor gridColor = 0;
    XString title;
    XMarkFont font;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    archive >> minimum >> maximum >> logFlag >> majorStep >> majorCount >> minorCount >> decimals >>
        title >> invertFlag >> tickSide >> labelFlag >> gridLength >> gridColor >> worldPerPixel;
    font.Load(archive);
    m_scale = tagXAxisScale();
    SetValueRange(minimum, maximum);
    SetLogFlag(logFlag);
    SetMajorStep(majorStep);
    SetMajorCount(majorCount);
    SetMinorCount(minorCount);
    SetDecimals(decimals);
    SetInvertFlag(invertFlag);
    SetTickSide(tickSide);
    SetLabelFlag(labelFlag);
    SetGridLength(gridLength);
    m_gridColor = gridColor;
    SetWorldPerPixel(worldPerPixel);
    m_title = title;
    m_font = font;
}
