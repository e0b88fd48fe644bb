#pragma once

#include "foundation/vector/XvcObj.h"

/// What objects that fill an upright box have in common: pictures, raster patches, text boxes.
///
/// The box stands between two stored vertices, its left top and its right bottom, which may be set
/// in any order. Corners have the hit kinds 4 lower left, 5 upper left, 6 upper right and 7 lower
/// right; MoveVertex takes the kind as its index and leaves the opposite corner where it is. A
/// corner may be dragged past the opposite one and back: its kind goes on meaning the corner
/// that the drag began with, until the next hit test.
/// A turn carries the box about a point and leaves it upright; about its own centre it stays.
/// A box with a corner that is not set (x or y 1.7e308, or not finite) has an empty range, is not
/// hit and draws nothing. A new one has both vertices at the origin.
class XAPI XvcBoxObj : public XvcObj
{
    X_DECLARE_CLASS(XvcBoxObj)
public:
    enum XCorner : int { kLowerLeft = 4, kUpperLeft, kUpperRight, kLowerRight };

    const tagXVector3& GetLeftTop() const { return m_leftTop; }
    const tagXVector3& GetRightBottom() const { return m_rightBottom; }
    void SetLeftTop(const tagXVector3& vertex);
    void SetLeftTop(double x, double y, double z = 0.0) { SetLeftTop({x, y, z}); }
    void SetRightBottom(const tagXVector3& vertex);
    void SetRightBottom(double x, double y, double z = 0.0) { SetRightBottom({x, y, z}); }

    /// The box in order, left <= right and bottom <= top; all four 1.7e308 when it is not set.
    void GetBound(double& left, double& top, double& right, double& bottom) const;
    void SetBound(double left, double top, double right, double bottom); ///< heights stay

    /// The upper left corner of the box.
    tagXVector3 GetPosition() const;
    /// Moves the box there, keeping its size; one that is not set gets both vertices there.
    void SetPosition(const tagXVector3& position);
    void SetPosition(double x, double y, double z = 0.0) { SetPosition({x, y, z}); }

    double GetZ() const { return m_leftTop.z; }
    void SetZ(double z); ///< of both vertices

    int IsSet() const;

    void Serialize(XArchive& archive) override;
    void CalcRange() override;
    /// Within the tolerances of a corner its kind, elsewhere in the box the body.
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    void AddCtrlPoints(XPtrArray& array) override; ///< the two stored vertices
    void MoveObject(double dx, double dy, double dz) override;
    /// @return the stored vertex that has the moved corner's x; the step on z moves both
    tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz) override;
    void RotateObject(double x, double y, double angle) override;
    using XvcObj::RotateObject;
    void Normalize(double minX, double minY, double maxX, double maxY) override;

protected:
    static constexpr int kCornerCount = 4;

    XvcBoxObj() = default;
    XvcBoxObj(const XvcBoxObj&) = default;
    XvcBoxObj& operator=(const XvcBoxObj&) = default;

    /// The corners in the order of their kinds, carried through the warp to draw with.
    /// @return 0 when one of them cannot be drawn
    int GetCorners(const XWarp2D* warp, tagXVector3 (&corners)[kCornerCount]) const;

    /// The part of Serialize behind attributes and box; loading throws on a bad value. What is
    /// read is kept only when all of it was good: LoadOwn sets nothing before its last read.
    virtual void StoreOwn(XArchive& archive) const;
    virtual void LoadOwn(XArchive& archive);

private:
    tagXVector3 m_leftTop;
    tagXVector3 m_rightBottom;
    bool m_isCrossedX = false; // a drag carried a side past the opposite one
    bool m_isCrossedY = false;
};
