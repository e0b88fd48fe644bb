#include "view/XSelectionMarks.h"

#include "foundation/base/XObList.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XDrawAttrs.h"
#include "foundation/vector/XvcPoint.h"

#include <iterator>

namespace {

constexpr double kHalfStampPixels = 3.0;

/// Draws the square that marks a control location.
class ControlStamp
{
public:
    ControlStamp(XVertBuffer& buffer, const XBackBuffer& target, tagXColor color) : m_buffer(buffer)
    {
        target.ConvPixelToWorldLength(m_dx, m_dy);
        m_line.colour = color;
        m_fill.style.SetStyle(tagXFillStyle::kNone); // what lies below a mark stays in sight
        m_fill.foreColour = color;
    }

    void Add(const tagXVector3& at)
    {
        const tagXVector3 corners[] = {{at.x - m_dx, at.y - m_dy},
                                       {at.x + m_dx, at.y - m_dy},
                                       {at.x + m_dx, at.y + m_dy},
                                       {at.x - m_dx, at.y + m_dy}};
        m_buffer.AddPolygon(corners, std::size(corners), &m_line, &m_fill);
    }

private:
    XVertBuffer& m_buffer;
    double m_dx = kHalfStampPixels;
    double m_dy = kHalfStampPixels;
    tagXVertLine m_line;
    tagXVertFill m_fill;
};

} // namespace

void XfnRecordSelection(XVertBuffer& buffer, const XObList& selection, const XBackBuffer& target,
                        tagXColor color)
{
    tagXDrawAttrs outline;
    outline.lineStyle.emplace(tagXLineStyle::kSelection);
    outline.lineColor = color;
    outline.thick = 0.0;

    ControlStamp stamp(buffer, target, color);
    for (__POSITION* pos = selection.GetHeadPosition(); pos;) {
        auto* object = dynamic_cast<XvcObj*>(selection.GetNext(pos));
        if (!object) continue;
        object->CreateVertexBuffer(&buffer, nullptr, &outline);
        if (XfnIsExactly(object, "XvcPoint")) {
            const auto* point = static_cast<const XvcPoint*>(object);
            if (point->IsSet()) stamp.Add(point->GetVertex());
        }
    }
}
