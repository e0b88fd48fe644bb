#pragma once

#include "foundation/vector/XvcObj.h"

struct XVectorPaint;

/// A point mark.
///
/// | shape code | mark          |
/// |------------|---------------|
/// | 0          | dot           |
/// | 1          | disc          |
/// | 2          | square        |
/// | 3          | triangle      |
/// | 4          | upright cross |
/// | 5          | diagonal cross|
///
/// A new point is a diagonal cross. Other codes are kept and drawn as a dot. Marks 1 to 3 are outlined in the line colour and filled
/// with the fore colour, whatever the fill style says; the others are strokes in the line colour. The
/// line style kNone leaves outlines and strokes out.
///
/// Size: the thickness is the side of the mark's box in world units; a negative one is that many
/// pixels and 0 is kDefaultPixels of them. How much of the world a mark given in pixels covers is
/// known only with SetWorldPerPixel; without it its range and hit area are those of the vertex.
/// A point that is not set (x or y 1.7e308, or not finite) has an empty range, is not hit and
/// draws nothing.
class XAPI XvcPoint : public XvcObj
{
    X_DECLARE_CLASS(XvcPoint)
public:
    static constexpr double kDefaultPixels = 9.0;

    XvcPoint() = default;
    XvcPoint(double x, double y, double z = 0.0) : m_vertex{x, y, z} {}

    const tagXVector3& GetVertex() const { return m_vertex; }
    void SetVertex(const tagXVector3& vertex)
    {
        m_vertex = vertex;
        Touch();
    }
    void SetVertex(double x, double y, double z) { SetVertex({x, y, z}); }
    double GetX() const { return m_vertex.x; }
    double GetY() const { return m_vertex.y; }
    double GetZ() const { return m_vertex.z; }
    void SetX(double x)
    {
        m_vertex.x = x;
        Touch();
    }
    void SetY(double y)
    {
        m_vertex.y = y;
        Touch();
    }
    void SetZ(double z)
    {
        m_vertex.z = z;
        Touch();
    }

    int GetType() const { return m_type; }
    void SetType(int shape)
    {
        m_type = shape;
        Touch();
    }
    /// Sides of the polygon that a renderer may draw for a disc, 3 to 360; here discs are round.
    int GetNumPieSegs() const { return m_numPieSegs; }
    void SetNumPieSegs(int count);
    /// World length of a pixel, 0 (at first) when not known; others are ignored unless positive.
    double GetWorldPerPixel() const { return m_worldPerPixel; }
    void SetWorldPerPixel(double length);
    /// A number that a renderer may keep with the point.
    unsigned GetDrawListID() const { return m_drawListID; }
    void SetDrawListID(unsigned id) { m_drawListID = id; }

    int IsSet() const;      ///< x and y are coordinates
    double GetSize() const; ///< side of the mark's box in world units; 0 when not known

    void Serialize(XArchive& archive) override;
    void CalcRange() override; ///< the mark's box; z alone in depth
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// Within the larger of both tolerances of the vertex the hit is vertex 0, elsewhere in the
    /// mark's box the body.
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    /// Records one mark of this shape code, its size the thickness of `paint`; the warp may be null.
    static void Record(XVertBuffer& buffer, const tagXVector3& vertex, int shape,
                       const XVectorPaint& paint, const XWarp2D* warp);

    void AddCtrlPoints(XPtrArray& array) override;
    void MoveObject(double dx, double dy, double dz) override;
    tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz) override;
    void RotateObject(double x, double y, double angle) override;
    using XvcObj::RotateObject;
    /// The size follows the x side of the box.
    void Normalize(double minX, double minY, double maxX, double maxY) override;
    /// An empty point becomes one that is not set.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override;

private:
    tagXVector3 m_vertex;
    int m_type = 5; // a cross shows its size
    int m_numPieSegs = 24;
    double m_worldPerPixel = 0.0;
    unsigned m_drawListID = 0;
};
