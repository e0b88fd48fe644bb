#include "foundation/vector/XvcScaleBar.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>

X_IMPLEMENT_CLASS(XvcScaleBar, XvcRectObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr double kFirstFontShare = 1.0 / 3.0; // of the rectangle's height
constexpr double kMaxLineShare = 0.2;         // of a side that the outline may take

constexpr const char* kNames[kXScaleBarTypeCount] = {
    "Line with ticks", "Alternating bar", "Double alternating bar",
    "Stepped line",    "Hollow bar",      "Line",
    "Ruler",
};

// Draws the pieces of a bar, told along its sides.
class Drawer
{
public:
    Drawer(XVertBuffer& buffer, const tagXScaleBarFrame& frame, const tagXScaleBarLayout& layout,
           const XWarp2D* warp, const XVectorPaint& paint)
        : m_buffer(buffer), m_frame(frame), m_layout(layout), m_warp(warp), m_paint(paint)
    {
        m_back.foreColour = paint.fill.backColour;
    }

    void Draw(int type)
    {
        switch (type) {
        case kXScaleBarTicks:
            return DrawTicks();
        case kXScaleBarAlternating:
            return DrawRow(m_layout.divisions, m_layout.bottom, m_layout.top, 0);
        case kXScaleBarDouble:
            DrawRow(m_layout.divisions, m_layout.bottom, GetMiddle(), 1);
            return DrawRow(m_layout.divisions, GetMiddle(), m_layout.top, 0);
        case kXScaleBarStepped:
            return DrawSteps();
        case kXScaleBarHollow:
            return DrawHollow();
        case kXScaleBarLine:
            return AddLine({{m_layout.left, Towards(1.0)},
                            {m_layout.left, Towards(0.0)},
                            {m_layout.right, Towards(0.0)},
                            {m_layout.right, Towards(1.0)}});
        case kXScaleBarRuler:
            return DrawRuler();
        }
    }

    tagXVector3 ToWorld(double x, double y) const
    {
        return m_frame.origin + m_frame.alongX * x + m_frame.alongY * y;
    }

private:
    double GetMiddle() const { return (m_layout.bottom + m_layout.top) / 2.0; }
    double GetTick(double i) const
    {
        return m_layout.left + (m_layout.right - m_layout.left) * i / m_layout.divisions;
    }
    // From the edge away from the labels (0) to that next to them (1).
    double Towards(double share) const
    {
        const bool isBelow = m_frame.align & kXTextBottom;
        return m_layout.bottom + (m_layout.top - m_layout.bottom) * (isBelow ? 1.0 - share : share);
    }

    void AddLine(std::vector<tagXVector3> path)
    {
        ToWorld(path);
        m_buffer.AddPolyline(path.data(), path.size(), m_paint.line);
    }

    void AddField(double left, double bottom, double right, double top, const tagXVertFill* fill)
    {
        std::vector<tagXVector3> field{{left, bottom}, {left, top}, {right, top}, {right, bottom}};
        ToWorld(field);
        m_buffer.AddPolygon(field.data(), field.size(), m_paint.GetLine(), fill);
    }

    void ToWorld(std::vector<tagXVector3>& path) const
    {
        for (tagXVector3& vertex : path)
            vertex = ToWorld(vertex.x, vertex.y);
        XfnWarpVertices(path, m_warp);
    }

    // The fore colour begins, or with `phase` 1 the back colour.
    void DrawRow(int fields, double bottom, double top, int phase)
    {
        const tagXVertFill* const fills[2] = {m_paint.GetFill(),
                                              m_paint.GetFill() ? &m_back : nullptr};
        for (int i = 0; i < fields; ++i) {
            const double share = static_cast<double>(m_layout.divisions) / fields;
            AddField(GetTick(i * share), bottom, GetTick((i + 1) * share), top,
                     fills[(i + phase) % 2]);
        }
    }

    void DrawTicks()
    {
        AddLine({{m_layout.left, Towards(0.0)}, {m_layout.right, Towards(0.0)}});
        for (int i = 0; i <= 2 * m_layout.divisions; ++i) {
            const double at = GetTick(i / 2.0);
            AddLine({{at, Towards(0.0)}, {at, Towards(i % 2 ? 0.45 : 1.0)}});
        }
    }

    void DrawSteps()
    {
        std::vector<tagXVector3> path{{m_layout.left, Towards(1.0)}};
        for (int i = 0; i < m_layout.divisions; ++i) {
            const double level = Towards(i % 2 ? 1.0 : 0.0);
            path.push_back({GetTick(i), level});
            path.push_back({GetTick(i + 1), level});
        }
        path.push_back({m_layout.right, Towards(m_layout.divisions % 2 ? 1.0 : 0.0)});
        AddLine(std::move(path));
    }

    void DrawHollow()
    {
        for (int i = 0; i < m_layout.divisions; ++i) {
            AddField(GetTick(i), m_layout.bottom, GetTick(i + 1), m_layout.top, nullptr);
            if (i % 2 == 0) AddLine({{GetTick(i), GetMiddle()}, {GetTick(i + 1), GetMiddle()}});
        }
    }

    void DrawRuler()
    {
        const double edge = Towards(0.55);
        DrawRow(2 * m_layout.divisions, std::min(edge, Towards(0.0)), std::max(edge, Towards(0.0)),
                0);
        for (int i = 0; i <= m_layout.divisions; ++i)
            AddLine({{GetTick(i), edge}, {GetTick(i), Towards(1.0)}});
    }

    XVertBuffer& m_buffer;
    const tagXScaleBarFrame& m_frame;
    const tagXScaleBarLayout& m_layout;
    const XWarp2D* m_warp;
    const XVectorPaint& m_paint;
    tagXVertFill m_back;
};

} // namespace

const char* XfnGetScaleBarName(int type)
{
    return type >= 0 && type < kXScaleBarTypeCount ? kNames[type] : nullptr;
}

XvcScaleBar::XvcScaleBar() : m_textAlign(kXTextCentre | kXTextTop) {}

void XvcScaleBar::SetSR(const XSpatialReference* reference)
{
    Touch();
    m_reference = reference ? *reference : XSpatialReference();
}

void XvcScaleBar::SetType(int type)
{
    Touch();
    if (XfnGetScaleBarName(type)) m_type = type;
}

tagXScaleBarFrame XvcScaleBar::GetFrame() const
{
    tagXScaleBarFrame frame;
    const double width = GetBoxWidth(), height = GetBoxHeight();
    if (!IsSet() || !(width > 0.0) || !(height > 0.0)) return frame;
    const double thick = !XfnIsSet(GetThick()) ? 0.0
                         : GetThick() < 0.0    ? -GetThick() * m_worldPerPixel
                                               : GetThick();
    const double margin = std::min(thick, kMaxLineShare * std::min(width, height)) / 2.0;
    frame.alongX = (GetAt(3) - GetAt(0)) * (1.0 / width);
    frame.alongY = (GetAt(1) - GetAt(0)) * (1.0 / height);
    frame.origin = GetAt(0) + (frame.alongX + frame.alongY) * margin;
    frame.width = width - 2.0 * margin;
    frame.height = height - 2.0 * margin;
    frame.fontHeight = m_font.GetHeight(m_worldPerPixel);
    if (!(frame.fontHeight > 0.0)) frame.fontHeight = kFirstFontShare * height;
    frame.align = m_textAlign;
    frame.hasDivisions = m_type != kXScaleBarLine;
    return frame;
}

tagXScaleBarLayout XvcScaleBar::GetLayout() const
{
    return XfnLayoutScaleBar(GetFrame(), m_font, m_reference);
}

void XvcScaleBar::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                     const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    const tagXScaleBarFrame frame = GetFrame();
    const tagXScaleBarLayout layout = XfnLayoutScaleBar(frame, m_font, m_reference);
    if (layout.divisions < 1) return;
    const XVectorPaint paint(*this, attrs);
    Drawer drawer(*buffer, frame, layout, ChooseWarp(warp), paint);
    drawer.Draw(m_type);
    for (const tagXScaleLabel& label : layout.labels) {
        tagXVertText text;
        text.position = drawer.ToWorld(label.textLeft, layout.textBottom);
        text.text = label.text;
        text.align = kXTextLeft | kXTextBottom;
        text.angleDeg = GetBoxAngleDeg();
        m_font.RecordInWorld(*buffer, text, layout.fontHeight, ChooseWarp(warp), paint.line.colour);
    }
}

void XvcScaleBar::ScaleLengths(double factorX, double factorY)
{
    XvcRectObj::ScaleLengths(factorX, factorY);
    m_font.Scale(factorY);
}

void XvcScaleBar::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << m_type << m_textAlign << m_worldPerPixel;
    m_font.Store(archive);
    XfnStoreReference(archive, m_reference);
}

void XvcScaleBar::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    int type = 0, align = 0;
    double worldPerPixel = 0.0;
    XMarkFont font;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    archive >> type >> align >> worldPerPixel;
    font.Load(archive);
    const XSpatialReference reference = XfnLoadReference(archive);
    if (!XfnGetScaleBarName(type)) throw XFileException(XFileException::kInvalidFile);
    m_type = type;
    m_textAlign = align;
    SetWorldPerPixel(worldPerPixel);
    m_font = font;
    m_reference = reference;
}
