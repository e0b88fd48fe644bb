#pragma once

#include "foundation/vector/XvcGroup.h"

/// A group that is drawn, stored and moved as one, whose members are picked one by one: the hit test
/// answers the frontmost member hit, with its own hit flag, instead of the group.
class XAPI XvcGroup2 : public XvcGroup
{
    X_DECLARE_CLASS(XvcGroup2)
public:
    XvcGroup2() = default;

    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
};
