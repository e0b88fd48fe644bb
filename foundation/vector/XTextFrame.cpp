#include "foundation/vector/XTextFrame.h"

#include "foundation/base/XWarp2D.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVertexMath.h"

#include <cmath>
#include <numbers>

namespace {
constexpr double kDegPerRad = 180.0 / std::numbers::pi;
}

XTextFrame::XTextFrame(const tagXVector3& at, double unit, double angleDeg, const XWarp2D* warp)
    : origin(at)
{
    const double angle = angleDeg / kDegPerRad;
    across = {unit * std::cos(angle), unit * std::sin(angle), 0.0};
    down = {unit * std::sin(angle), -unit * std::cos(angle), 0.0};
    if (warp) {
        const tagXVector3 before = origin;
        warp->Warp(origin.x, origin.y);
        for (tagXVector3* step : {&across, &down}) {
            step->x += before.x;
            step->y += before.y;
            warp->Warp(step->x, step->y);
            step->x -= origin.x;
            step->y -= origin.y;
        }
    }
    const auto hasLength = [](const tagXVector3& step) {
        const double length = std::hypot(step.x, step.y);
        return length > 0.0 && XfnIsSet(length);
    };
    isUsable = XfnIsUsable(origin) && hasLength(across) && hasLength(down);
}

tagXVector3 XTextFrame::ToWorld(double x, double y) const
{
    return {origin.x + across.x * x + down.x * y, origin.y + across.y * x + down.y * y, origin.z};
}

double XTextFrame::GetAngleDeg() const
{
    return std::atan2(across.y, across.x) * kDegPerRad;
}

void XTextFrame::Record(XVertBuffer& buffer, tagXVertText text) const
{
    if (!isUsable) return;
    text.position = ToWorld(text.position.x, text.position.y);
    text.height *= std::hypot(down.x, down.y);
    text.width *= std::hypot(across.x, across.y);
    text.angleDeg = GetAngleDeg();
    const int flag = buffer.GetFontSizeFlag();
    buffer.SetFontSizeFlag(0);
    buffer.AddText(text);
    buffer.SetFontSizeFlag(flag);
}
