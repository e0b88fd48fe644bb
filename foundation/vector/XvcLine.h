#pragma once

#include "foundation/vector/XLineEnd.h"
#include "foundation/vector/XvcVertexObj.h"

/// A straight line from one vertex to another, with a shape at either end (XLineEnd.h has the table
/// of shapes).
///
/// Size of an end shape: its length along the line in world units; a negative one is that many
/// pixels, and 0 (at first) is kDefaultPixels of them or four times a thickness in pixels, whichever
/// is larger; with a thickness in world units four times that. What pixels are in the world is
/// known with SetWorldPerPixel only; until then a size in pixels is a tenth of the line's length.
/// Shapes are never longer than the line. Range and hit test see the line, the range its end shapes
/// too.
class XAPI XvcLine : public XvcVertexObj
{
    X_DECLARE_CLASS(XvcLine)
public:
    static constexpr double kDefaultPixels = kXLineEndPixels;

    XvcLine(); ///< neither vertex is set; nothing is drawn
    XvcLine(const tagXVector3& start, const tagXVector3& end);

    void SetStartVertex(const tagXVector3& vertex) { SetAt(0, vertex); }
    void SetStartVertex(double x, double y, double z) { SetAt(0, x, y, z); }
    void SetEndVertex(const tagXVector3& vertex) { SetAt(1, vertex); }
    void SetEndVertex(double x, double y, double z) { SetAt(1, x, y, z); }
    void SetVertices(const tagXVector3& start, const tagXVector3& end);
    void SetVertices(double x0, double y0, double z0, double x1, double y1, double z1);
    tagXVector3 GetStartVertex() const { return GetAt(0); }
    tagXVector3 GetEndVertex() const { return GetAt(1); }
    void GetStartVertex(double& x, double& y, double& z) const { GetAt(0, x, y, z); }
    void GetEndVertex(double& x, double& y, double& z) const { GetAt(1, x, y, z); }
    void GetVertices(tagXVector3& start, tagXVector3& end) const;
    void GetVertices(double& x0, double& y0, double& z0, double& x1, double& y1, double& z1) const;

    /// Ids of XLineEndShape; others are kept and draw nothing.
    int GetStartShapeID() const { return m_startShape; }
    void SetStartShapeID(int shape)
    {
        m_startShape = shape;
        Touch();
    }
    int GetEndShapeID() const { return m_endShape; }
    void SetEndShapeID(int shape)
    {
        m_endShape = shape;
        Touch();
    }
    double GetStartSize() const { return m_startSize; }
    void SetStartSize(double size); ///< a size that is no number is ignored
    double GetEndSize() const { return m_endSize; }
    void SetEndSize(double size);
    /// World length of a pixel, 0 (at first) when not known; others are ignored unless positive.
    double GetWorldPerPixel() const { return m_worldPerPixel; }
    void SetWorldPerPixel(double length);

    void CalcRange() override;
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// Sizes and the length of a pixel follow the x side of the box.
    void Normalize(double minX, double minY, double maxX, double maxY) override;
    /// A line string of two positions.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< LINESTRING

protected:
    XHitShape GetHitShape() const override { return XHitShape::Line; }
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;
    bool IsVertexCountAllowed(int count) const override { return count == 2; }

private:
    double GetShapeSize(double size) const;
    // The shapes at both ends; the vertices become those of the line between them, equal ones when
    // nothing of it is left.
    std::vector<tagXLineEndPart> MakeEnds(tagXVector3& start, tagXVector3& end) const;

    int m_startShape = kXLineEndNone;
    int m_endShape = kXLineEndNone;
    double m_startSize = 0.0;
    double m_endSize = 0.0;
    double m_worldPerPixel = 0.0;
};
