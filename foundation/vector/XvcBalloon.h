#pragma once

#include "foundation/vector/XvcTextBox.h"

/// A text box with a pointer from one of its sides to a position.
///
/// The pointer leaves the side that it stands before, at the place nearest to the position; a
/// position within the box has no pointer. Until a position is set there is none; CalcBound then sets
/// one below the left of the box. The border is drawn at first.
/// The range is that of the box alone, whose corners editors mark; the pointer is hit and drawn
/// outside it, and layers and views that fit to what is drawn see it. Its position is a vertex (kind
/// 1, index 0) for HitTest and MoveVertex, although the object is a box: so a tool drags it alone.
class XAPI XvcBalloon : public XvcTextBox
{
    X_DECLARE_CLASS(XvcBalloon)
public:
    explicit XvcBalloon(XHWND parent = 0);

    const tagXVector3& GetPointPosition() const { return m_point; } ///< x and y 1.7e308: not set
    void GetPointPosition(double& x, double& y, double& z) const;
    void SetPointPosition(const tagXVector3& position);
    void SetPointPosition(double x, double y, double z = 0.0) { SetPointPosition({x, y, z}); }

    void CalcBound(double width, double height) override;
    tagXVectorRange GetDrawnExtent() const override;
    /// Within the tolerances of the position vertex 0; the pointer is body as the box is.
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    void AddCtrlPoints(XPtrArray& array) override; ///< those of the box, then the position
    void MoveObject(double dx, double dy, double dz) override; ///< with the position
    tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz) override;
    void RotateObject(double x, double y, double angle) override;
    using XvcObj::RotateObject;
    void Normalize(double minX, double minY, double maxX, double maxY) override;

protected:
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;
    void RecordFrame(XVertBuffer& buffer, const tagXVector3 (&corners)[kCornerCount],
                     const XWarp2D* warp, const XVectorPaint& paint) const override;

private:
    /// The ring of box and pointer, in the object's coordinates. @return its length
    int GetOutline(tagXVector3 (&ring)[kCornerCount + 3]) const;

    tagXVector3 m_point;
};
