#include "foundation/vector/XvcGroup2.h"

X_IMPLEMENT_CLASS(XvcGroup2, XvcGroup)

XvcObj* XvcGroup2::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                           tagXHitFlag& hitFlag)
{
    return HitTestMembers(point, toleranceX, toleranceY, hitFlag);
}
