#include "foundation/vector/XScaleBarLayout.h"

#include "foundation/base/XNumber.h"
#include "foundation/base/XSentinels.h"
#include "foundation/reference/XGeodesy.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XAxisTicks.h"
#include "foundation/vector/XMarkFont.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr int kPixelCoord = 1;
constexpr int kMapCoord = 3;
constexpr double kHalfTurnDeg = 180.0;
constexpr int kDigits = 12;

// Of the height of the letters.
constexpr double kBarHeight = 0.75;
constexpr double kTextGap = 0.1;  // between bar and labels
constexpr double kLabelGap = 0.5; // between labels
constexpr double kLeastField = 0.4;
constexpr double kWidthSlack = 1.08; // hinted letters are wider at some sizes

constexpr double kMaxFontShare = 0.6;        // of the rectangle's height
constexpr double kBarShares[] = {0.35, 0.1}; // of the rectangle's width; rather smaller letters
constexpr double kFontStep = 0.85;
constexpr double kLeastFont = 0.3; // of the height wanted; then there are no labels
constexpr int kMaxCandidates = 8;

struct Unit
{
    XString sign;
    double size = 1.0; // in base units
};

// Lengths of the reference, in base units: metres on the ellipsoid, else units of the coordinates.
class Ruler
{
public:
    Ruler(const tagXScaleBarFrame& frame, const XSpatialReference& reference)
        : m_frame(frame), m_reference(reference)
    {
        const bool isMap = reference.GetCoordType() == kMapCoord;
        m_isGeodesic = isMap && reference.IsGeographic();
        m_metres = isMap ? reference.GetLinearUnits() : 0.0;
        if (m_isGeodesic) {
            m_metres = 1.0;
            const double radians = reference.GetAngularUnits();
            const double degrees = radians * kHalfTurnDeg / std::numbers::pi;
            // a degree in radians is rounded; undone it must be a degree again
            if (degrees > 0.0 && std::fabs(degrees - 1.0) > 1e-12) m_degrees = degrees;
        }
    }

    // Of a piece of the line at height `y`, 1.7e308 where there is none.
    double Measure(double left, double right, double y) const
    {
        if (!m_isGeodesic) return right - left;
        const auto at = [&](double x) {
            return (m_frame.origin + m_frame.alongX * x + m_frame.alongY * y) * m_degrees;
        };
        const tagXVector3 a = at(left), b = at(right);
        if (std::fabs(b.x - a.x) > kHalfTurnDeg) return kXNotSet;
        return XfnGeodesicDistance(a.x, a.y, b.x, b.y, m_reference.GetSemiMajor(),
                                   m_reference.GetFlattening());
    }

    // The longest piece whose ends do not come near to each other again around the globe.
    double GetLongest(double width) const
    {
        const double turn = std::fabs(m_frame.alongX.x) * m_degrees;
        return m_isGeodesic && turn * width > kHalfTurnDeg ? kHalfTurnDeg / turn : width;
    }

    Unit ChooseUnit(double length) const
    {
        const auto isUnit = [this](double metres) {
            return std::fabs(m_metres / metres - 1.0) < 1e-5;
        };
        if (!(m_metres > 0.0)) return {m_reference.GetCoordType() == kPixelCoord ? "px" : "units"};
        if (isUnit(1.0)) return length >= 1000.0 * kAlmost ? Unit{"km", 1000.0} : Unit{"m"};
        if (isUnit(0.3048)) return length >= 5280.0 * kAlmost ? Unit{"mi", 5280.0} : Unit{"ft"};
        if (isUnit(1000.0)) return {"km"};
        if (isUnit(0.9144)) return {"yd"};
        if (isUnit(1852.0)) return {"NM"};
        return {m_reference.GetUnitName()};
    }

private:
    static constexpr double kAlmost = 1.0 - 1e-9;

    const tagXScaleBarFrame& m_frame;
    const XSpatialReference& m_reference;
    bool m_isGeodesic = false;
    double m_metres = 0.0; // in a base unit; 0: they are no lengths on the ground
    double m_degrees = 1.0;
};

// The trial of one height of letters.
class Fitting
{
public:
    Fitting(const tagXScaleBarFrame& frame, const XMarkFont& font, const Ruler& ruler,
            double fontHeight, double leastShare)
        : m_frame(frame), m_font(font), m_ruler(ruler), m_leastShare(leastShare)
    {
        m_layout.fontHeight = fontHeight;
        const double gap = kTextGap * fontHeight;
        const double room = frame.height - fontHeight - gap;
        const double bar = fontHeight > 0.0 ? std::min(room, kBarHeight * fontHeight) : room * 0.5;
        const double edge = (frame.height - fontHeight - gap - bar) / 2.0;
        const bool isBelow = frame.align & kXTextBottom;
        m_layout.bottom = isBelow ? edge + fontHeight + gap : edge;
        m_layout.top = m_layout.bottom + bar;
        m_layout.textBottom = isBelow ? edge : m_layout.top + gap;
    }

    bool Run(tagXScaleBarLayout& result)
    {
        const double longest = m_ruler.GetLongest(m_frame.width);
        double left, right;
        PutBar(0.0, m_frame.width, longest, left, right);
        double base = m_ruler.Measure(left, right, GetMiddle());
        if (!XfnIsSet(base)) return false;
        for (int i = 0; i < kMaxCandidates; ++i) {
            const Unit unit = m_ruler.ChooseUnit(base);
            const double value = XfnGetRoundStepDown(base / unit.size);
            if (!(value > 0.0)) return false;
            m_layout.length = value;
            m_layout.unit = unit.sign;
            if (FitBar(value * unit.size, longest) && FitLabels()) {
                result = m_layout;
                return true;
            }
            base = value * unit.size * 0.99;
        }
        return false;
    }

private:
    double GetMiddle() const { return (m_layout.bottom + m_layout.top) / 2.0; }
    double GetTextWidth(const XString& text) const
    {
        return m_layout.fontHeight > 0.0 ? m_font.GetWidth(text) * m_layout.fontHeight * kWidthSlack
                                         : 0.0;
    }
    XString Format(int index) const { return XfnFormatGeneral(m_layout.division * index, kDigits); }
    XString FormatWhole() const
    {
        return XfnFormatGeneral(m_layout.length, kDigits) + " " + m_layout.unit;
    }

    void PutBar(double low, double high, double length, double& left, double& right) const
    {
        left = m_frame.align & kXTextLeft    ? low
               : m_frame.align & kXTextRight ? high - length
                                             : (low + high - length) / 2.0;
        right = left + length;
    }

    // Where the ends are that lie `base` apart, with room for the labels that stand over them.
    bool FitBar(double base, double longest)
    {
        double low = 0.0, high = m_frame.width;
        if (m_frame.hasDivisions) {
            const XString number = XfnFormatGeneral(m_layout.length, kDigits);
            low += GetTextWidth("0") / 2.0;
            high -= GetTextWidth(FormatWhole()) - GetTextWidth(number) / 2.0;
        }
        const double y = GetMiddle();
        double least = 0.0, most = std::min(high - low, longest);
        if (!(most > 0.0)) return false;
        const auto measure = [&](double length) {
            PutBar(low, high, length, m_layout.left, m_layout.right);
            return m_ruler.Measure(m_layout.left, m_layout.right, y);
        };
        const double whole = measure(most);
        if (!XfnIsSet(whole) || whole < base) return false;
        // in the plane the first step is exact; on the ellipsoid lengths grow with their pieces
        double length = most * (base / whole);
        for (int i = 0; i < 60 && least < most; ++i) {
            const double found = measure(length);
            if (!XfnIsSet(found)) return false;
            if (std::fabs(found - base) <= 1e-13 * base) break;
            (found < base ? least : most) = length;
            // a chord first, halves where it does not close in
            const double next = length * (base / found);
            length = i < 8 && next > least && next < most ? next : (least + most) / 2.0;
        }
        return m_layout.fontHeight <= 0.0 || length >= m_leastShare * m_frame.width;
    }

    bool FitLabels()
    {
        const double whole = m_layout.right - m_layout.left;
        const double height = m_layout.fontHeight;
        m_layout.labels.clear();
        m_layout.divisions = 1;
        m_layout.division = m_layout.length;
        if (!m_frame.hasDivisions) {
            const double width = GetTextWidth(FormatWhole());
            const double at = (m_layout.left + m_layout.right) / 2.0;
            if (width > m_frame.width) return false;
            const double textLeft =
                std::clamp(at - width / kWidthSlack / 2.0, 0.0, m_frame.width - width);
            if (height > 0.0) m_layout.labels.push_back({at, textLeft, FormatWhole()});
            return true;
        }
        // 1 is five times 0.2 or two times 0.5, 2 is four times 0.5 or two times 1, 5 is five times 1
        const double power = std::pow(10.0, std::floor(std::log10(m_layout.length) + 1e-9));
        const bool isTwo = std::lround(m_layout.length / power) == 2;
        const bool isFive = std::lround(m_layout.length / power) == 5;
        const int choices[2] = {isTwo ? 4 : 5, isFive ? 5 : 2};
        for (const int divisions : choices) {
            SetDivisions(divisions);
            if (PlaceLabels(1)) return true;
        }
        for (const int divisions : choices) { // labels at the ends alone
            SetDivisions(divisions);
            if (whole / divisions >= kLeastField * height && PlaceLabels(divisions)) return true;
        }
        SetDivisions(1);
        return PlaceLabels(1);
    }

    void SetDivisions(int divisions)
    {
        m_layout.divisions = divisions;
        m_layout.division = m_layout.length / divisions;
    }

    // A label at every `stride`-th part. @return false when two of them touch
    bool PlaceLabels(int stride)
    {
        m_layout.labels.clear();
        if (!(m_layout.fontHeight > 0.0)) return true;
        double end = -m_frame.width;
        for (int i = 0; i <= m_layout.divisions; i += stride) {
            const double at =
                m_layout.left + (m_layout.right - m_layout.left) * i / m_layout.divisions;
            const XString number = Format(i);
            const double width = GetTextWidth(number);
            const double textLeft = at - width / kWidthSlack / 2.0;
            if (textLeft < end + kLabelGap * m_layout.fontHeight) return false;
            end = textLeft + width;
            m_layout.labels.push_back(
                {at, textLeft, i < m_layout.divisions ? number : FormatWhole()});
        }
        return true;
    }

    const tagXScaleBarFrame& m_frame;
    const XMarkFont& m_font;
    const Ruler& m_ruler;
    double m_leastShare;
    tagXScaleBarLayout m_layout;
};

} // namespace

tagXScaleBarLayout XfnLayoutScaleBar(const tagXScaleBarFrame& frame, const XMarkFont& font,
                                     const XSpatialReference& reference)
{
    tagXScaleBarLayout layout;
    if (!(frame.width > 0.0) || !(frame.height > 0.0) || !XfnIsSet(frame.width) ||
        !XfnIsSet(frame.height)) {
        return layout;
    }
    const Ruler ruler(frame, reference);
    const double wanted =
        frame.fontHeight > 0.0 ? std::min(frame.fontHeight, kMaxFontShare * frame.height) : 0.0;
    for (const double share : kBarShares) {
        for (double height = wanted; height > kLeastFont * wanted; height *= kFontStep) {
            if (Fitting(frame, font, ruler, height, share).Run(layout)) return layout;
        }
    }
    Fitting(frame, font, ruler, 0.0, 0.0).Run(layout);
    return layout;
}
