#pragma once

#include "foundation/vector/XvcMultiObj.h"
#include "foundation/vector/XvcPolygon.h"

/// An area of several rings, with holes and islands, or several areas as one object.
///
/// Each polygon is a ring, and all are filled together by the fill mode: kAlternate, a place within
/// an odd number of rings is inside; kWinding, one around which the rings run in all other than
/// zero times. Attributes are those of the whole, the polygons' own are not looked at.
/// A place inside is hit as the body, one in a hole is not.
class XAPI XvcMPolygon : public XvcMultiObj
{
    X_DECLARE_CLASS(XvcMPolygon)
public:
    enum PolyFillMode { kAlternate = 1, kWinding = 2 };

    XvcMPolygon() = default;

    /// All return the index of the new ring; the object form takes the object (-1 for null).
    int AddPolygon(const XvcPolygon& polygon);
    int AddPolygon(std::unique_ptr<XvcPolygon> polygon) { return AddPart(std::move(polygon)); }
    int GetNumOfPolygons() const { return GetPartCount(); }
    XvcPolygon* GetPolygonObjAt(int index) const
    {
        return static_cast<XvcPolygon*>(GetPartAt(index));
    }
    int GetPolyFillMode() const { return m_fillMode; }
    void SetPolyFillMode(int mode); ///< others than the two are ignored

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    /// A polygon with its holes, or several. The fill mode becomes kAlternate.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    /// MULTIPOLYGON: a ring that bounds a hole stands behind the smallest ring around it.
    XString ExportToWkt() const override;

protected:
    bool IsPartAllowed(const XvcObj& part) const override;
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    bool IsInside(double x, double y) const;

    int m_fillMode = kAlternate;
};
