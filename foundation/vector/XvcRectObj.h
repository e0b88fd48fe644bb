#pragma once

#include "foundation/vector/XvcVertexObj.h"

/// What objects within a rectangle have in common: four corners that move together.
///
/// Corners: 0 lower left, 1 upper left, 2 upper right, 3 lower right. A turned object keeps their
/// order and is no longer parallel to the axes. MoveVertex takes 0 to 3, or the hit kinds 4 to 7 for
/// the same corners; the opposite corner stays and the object stays rectangular. A corner may
/// be moved past the opposite one.
/// The inside is hit as the body. Until Set nothing is set and nothing is drawn.
class XAPI XvcRectObj : public XvcVertexObj
{
    X_DECLARE_CLASS(XvcRectObj)
public:
    static constexpr int kCornerCount = 4;

    /// Two opposite corners, in any order; each height goes to the side, lower or upper, on which
    /// its corner lies. A corner that is not set or not finite leaves nothing set.
    void Set(double x0, double y0, double z0, double x1, double y1, double z1);
    void Set(const tagXVector3& a, const tagXVector3& b) { Set(a.x, a.y, a.z, b.x, b.y, b.z); }
    tagXVector3 GetLL() const { return GetAt(0); } ///< corner 0
    tagXVector3 GetUR() const { return GetAt(2); } ///< corner 2
    void GetLL(double& x, double& y, double& z) const { GetAt(0, x, y, z); }
    void GetUR(double& x, double& y, double& z) const { GetAt(2, x, y, z); }
    int IsSet() const;             ///< all four corners are coordinates
    double GetBoxWidth() const;    ///< length of the lower side
    double GetBoxHeight() const;   ///< length of the left side
    double GetBoxAngleDeg() const; ///< direction of the lower side, counter-clockwise

    tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz) override;

protected:
    XvcRectObj();
    XHitShape GetHitShape() const override { return XHitShape::Ring; }
    bool IsVertexCountAllowed(int count) const override { return count == kCornerCount; }
};
