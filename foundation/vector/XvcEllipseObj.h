#pragma once

#include "foundation/vector/XHitGeometry.h"
#include "foundation/vector/XvcObj.h"

#include <vector>

/// What ellipses and their arcs have in common.
///
/// A centre, two half axes and the angle between the x axis of the world and the first half axis
/// (degrees, counter-clockwise with y upwards). The point at angle t is
/// centre + turn(rotation) * (axisX cos t, axisY sin t). A half axis may be negative, as it is when
/// its handle was pulled past the opposite end; lengths are its magnitude.
/// Hit vertices: 0 is the end of the first half axis, 1 that of the second. MoveVertex moves that
/// end along its axis while the opposite end stays; so moving 0 by a width and 1 by a height
/// changes the object by just these.
/// Nothing is drawn or hit until the centre is set, or with an axis that is no number.
class XAPI XvcEllipseObj : public XvcObj
{
    X_DECLARE_CLASS(XvcEllipseObj)
public:
    static constexpr int kDefaultResolution = 256;
    static constexpr int kMinResolution = 3;
    static constexpr int kMaxResolution = 10000;

    const tagXVector3& GetCenter() const { return m_center; }
    void GetCenter(double& x, double& y, double& z) const;
    void SetCenter(double x, double y, double z = 0.0) { SetCenter({x, y, z}); }
    void SetCenter(const tagXVector3& center)
    {
        m_center = center;
        Touch();
    }
    double GetAxisX() const { return m_axisX; }
    double GetAxisY() const { return m_axisY; }
    void GetAxis(double& axisX, double& axisY) const;
    void SetAxis(double axisX, double axisY);
    double GetRotate() const { return m_rotateDeg; }
    void SetRotate(double angleDeg); ///< no number: ignored
    /// Chords that a whole turn is drawn in, kMinResolution to kMaxResolution.
    int GetResolution() const { return m_resolution; }
    void SetResolution(int chords);

    /// Two opposite corners of the box around the unturned shape; as soon as both are set they give
    /// centre and axes, and no rotation.
    void SetPtStart(double x, double y, double z = 0.0) { SetPtStart(tagXVector3(x, y, z)); }
    void SetPtStart(const tagXVector3& corner);
    void SetPtEnd(double x, double y, double z = 0.0) { SetPtEnd(tagXVector3(x, y, z)); }
    void SetPtEnd(const tagXVector3& corner);
    const tagXVector3& GetPtStart() const
    {
        return m_ptStart;
    } ///< 1.7e308: not set, or moved since
    const tagXVector3& GetPtEnd() const { return m_ptEnd; }

    int IsSet() const;
    tagXVector3 GetPointAt(double angleDeg) const; ///< of the whole ellipse
    /// The vertices that are drawn; replaces what `outline` holds. Of a closed shape the first is
    /// not repeated. Empty when nothing is set.
    void GetOutline(std::vector<tagXVector3>& outline) const;

    void Serialize(XArchive& archive) override;
    void CalcRange() override;                     ///< of what is drawn
    tagXVectorRange GetHitExtent() const override; ///< with the ends of the half axes
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// The ends of the half axes are vertices, whether the arc runs there or not; the outline and, of
    /// closed shapes, the inside are the body.
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    void AddCtrlPoints(XPtrArray& array) override; ///< the centre, which moves the whole
    void MoveObject(double dx, double dy, double dz) override;
    /// @return the centre, which moves half as far
    tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz) override;
    void RotateObject(double x, double y, double angle) override;
    void RotateObject(double angle) override; ///< about its own centre
    /// Exact for a shape with its axes along those of the box, or a box as wide as it is high;
    /// otherwise each half axis is scaled as its direction is.
    void Normalize(double minX, double minY, double maxX, double maxY) override;
    /// The kinds have no counterpart in well-known binary, so nothing is read; the text is that of
    /// the vertices drawn, POLYGON for closed shapes, LINESTRING for others.
    XString ExportToWkt() const override;

protected:
    XvcEllipseObj() = default;
    XvcEllipseObj(const XvcEllipseObj&) = default;
    XvcEllipseObj& operator=(const XvcEllipseObj&) = default;

    virtual bool IsClosed() const = 0;
    virtual bool IsPie() const { return false; } ///< closed by way of the centre
    /// From where the arc runs and how far, counter-clockwise in degrees of the ellipse's own angle:
    /// 360 is a whole turn.
    virtual void GetSweep(double& startDeg, double& sweepDeg) const;
    virtual void DefineByPoints(); ///< called when both points are usable
    void ForgetPoints();           ///< what was moved is no longer where they say
    /// The part of Serialize behind attributes and geometry; as in XvcVertexObj.
    virtual void StoreOwn(XArchive& archive) const;
    virtual void LoadOwn(XArchive& archive);

    tagXVector3 m_center{1.7e308, 1.7e308, 0.0};
    double m_axisX = 0.0;
    double m_axisY = 0.0;
    double m_rotateDeg = 0.0;
    tagXVector3 m_ptStart{1.7e308, 1.7e308, 0.0};
    tagXVector3 m_ptEnd{1.7e308, 1.7e308, 0.0};
    int m_resolution = kDefaultResolution;
};
