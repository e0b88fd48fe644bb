#include "host/XVectorLook.h"

#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMText.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcText.h"
#include "host/XVectorVisit.h"

#include <algorithm>

namespace {

constexpr double kLinePixels = -2;
constexpr double kPointPixels = -9;
constexpr unsigned kFillAlpha = 0x30;
constexpr int kDisc = 1;
constexpr tagXColor kRim = kXOpaque | 0x202020u;

bool IsPoint(const XvcObj& object)
{
    return dynamic_cast<const XvcPoint*>(&object) || dynamic_cast<const XvcMPoint*>(&object) ||
           dynamic_cast<const XvcPolypoint*>(&object);
}

// The parts of a group have looks of their own.
template <class Visit>
void VisitMembers(XvcObj& object, const Visit& visit)
{
    auto* group = dynamic_cast<XvcGroup*>(&object);
    if (!group) return visit(object);
    for (int i = 0; i < group->GetNumOfObjs(); ++i)
        VisitMembers(*group->GetObjAt(i), visit);
}

tagXColor WithAlpha(tagXColor color, unsigned alpha)
{
    return (color & ~kXOpaque) | alpha << 24;
}

void GiveLook(XvcObj& object, tagXColor color)
{
    if (IsPoint(object)) {
        object.SetLineColor(kRim);
        object.SetForeColor(color);
        object.SetThick(kPointPixels);
        if (auto* point = dynamic_cast<XvcPoint*>(&object)) point->SetType(kDisc);
        if (auto* points = dynamic_cast<XvcMPoint*>(&object))
            for (int i = 0; i < points->GetNumOfPoints(); ++i)
                points->GetPointObjAt(i)->SetType(kDisc);
        if (auto* points = dynamic_cast<XvcPolypoint*>(&object)) points->SetType(kDisc);
        return;
    }
    static const tagXFillStyle solid(tagXFillStyle::kSolid);
    object.SetLineColor(color);
    object.SetForeColor(WithAlpha(color, kFillAlpha));
    object.SetFillStyle(solid); // lines and texts know no inside
    object.SetThick(kLinePixels);
}

template <class Visit>
void VisitTexts(XvcObj& object, const Visit& visit)
{
    if (auto* text = dynamic_cast<XvcText*>(&object)) visit(*text);
    if (auto* texts = dynamic_cast<XvcMText*>(&object))
        for (int i = 0; i < texts->GetNumOfTexts(); ++i)
            visit(*texts->GetTextObjAt(i));
}

bool IsBlack(tagXColor color)
{
    constexpr tagXColor kNearBlack = 0x20;
    return (color & 0xFF) < kNearBlack && (color >> 8 & 0xFF) < kNearBlack &&
           (color >> 16 & 0xFF) < kNearBlack;
}

tagXColor GetMainColor(const XvcObj& object)
{
    return kXOpaque | (IsPoint(object) ? object.GetForeColor() : object.GetLineColor());
}

} // namespace

tagXColor XfnGetPaletteColor(int index)
{
    static const tagXColor colors[kXLayerColorCount] = {
        XfnMakeColor(255, 214, 0, 255),   // yellow
        XfnMakeColor(0, 221, 255, 255),   // cyan
        XfnMakeColor(255, 92, 205, 255),  // magenta
        XfnMakeColor(255, 138, 26, 255),  // orange
        XfnMakeColor(190, 242, 100, 255), // lime
        XfnMakeColor(255, 82, 82, 255),   // red
        XfnMakeColor(120, 170, 255, 255), // light blue
        XfnMakeColor(255, 255, 255, 255), // white
        XfnMakeColor(186, 130, 255, 255), // violet
        XfnMakeColor(94, 234, 184, 255),  // mint
    };
    return colors[((index % kXLayerColorCount) + kXLayerColorCount) % kXLayerColorCount];
}

bool XfnIsDarkColor(tagXColor color)
{
    constexpr unsigned kMiddle = 128 * 100; // of weighted hundredths
    return 30 * (color & 0xFF) + 59 * (color >> 8 & 0xFF) + 11 * (color >> 16 & 0xFF) < kMiddle;
}

bool XfnHasOwnLook(const XvcLayer& layer)
{
    static const XvcPoint plain; // any object that nobody has given a look
    const auto isPlain = [](XvcObj& object) {
        bool isSo = true;
        VisitMembers(object, [&](const XvcObj& member) {
            isSo = isSo && member.GetLineColor() == plain.GetLineColor() &&
                   member.GetForeColor() == plain.GetForeColor() &&
                   member.GetBackColor() == plain.GetBackColor() && member.GetThick() == 0 &&
                   member.GetLineStyle() == plain.GetLineStyle();
        });
        return isSo;
    };
    return !XfnVisitObjects(layer, isPlain);
}

void XfnGiveLook(XvcLayer& layer, tagXColor color)
{
    XfnVisitObjects(layer, [color](XvcObj& object) {
        VisitMembers(object, [color](XvcObj& member) { GiveLook(member, color); });
        return true;
    });
}

void XfnTurnBlackPens(XvcLayer& layer)
{
    const auto turn = [](tagXColor color) {
        return IsBlack(color) && color != 0 ? WithAlpha(0xFFFFFFu, XfnGetAlpha(color)) : color;
    };
    XfnVisitObjects(layer, [&](XvcObj& object) {
        VisitMembers(object, [&](XvcObj& member) {
            member.SetLineColor(turn(member.GetLineColor()));
            if (IsPoint(member)) member.SetForeColor(turn(member.GetForeColor()));
            VisitTexts(member,
                       [&](XvcText& text) { text.SetTextColor(turn(text.GetTextColor())); });
        });
        return true;
    });
}

void XfnColorLayer(XvcLayer& layer, tagXColor color)
{
    XfnVisitObjects(layer, [color](XvcObj& object) {
        VisitMembers(object, [color](XvcObj& member) {
            if (!IsPoint(member))
                member.SetLineColor(WithAlpha(color, XfnGetAlpha(member.GetLineColor())));
            member.SetForeColor(WithAlpha(color, XfnGetAlpha(member.GetForeColor())));
            VisitTexts(member, [](XvcText& text) { text.SetTextColor(0); }); // that of the line
        });
        return true;
    });
}

tagXColor XfnGetLayerColor(const XvcLayer& layer)
{
    tagXColor color = 0;
    const bool isOne = XfnVisitObjects(layer, [&color](XvcObj& object) {
        bool isSame = true;
        VisitMembers(object, [&](const XvcObj& member) {
            const tagXColor own = GetMainColor(member);
            if (color == 0) color = own;
            isSame = isSame && own == color;
        });
        return isSame;
    });
    return isOne ? color : 0;
}
