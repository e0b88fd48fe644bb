#pragma once

#include "foundation/vector/XvcMeasureObj.h"

/// A place and its coordinates.
///
/// The label gives latitude and longitude on geographic references ("37.50000N 127.00000E", three
/// decimals more than set), else x and y. The mark has the shapes, size and colours of XvcPoint.
class XAPI XvcMeasurePoint : public XvcMeasureObj
{
    X_DECLARE_CLASS(XvcMeasurePoint)
public:
    XvcMeasurePoint() = default;
    XvcMeasurePoint(double x, double y, double z = 0.0) { Add(x, y, z); }

    tagXVector3 GetVertex() const { return GetAt(0); }
    void SetVertex(double x, double y, double z = 0.0);
    int GetType() const { return m_type; } ///< XPointShape; 5 at first
    void SetType(int shape)
    {
        m_type = shape;
        Touch();
    }

    XString GetLabel() const override;
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< POINT

protected:
    int GetMaxVertices() const override { return 1; }
    XHitShape GetHitShape() const override { return XHitShape::Points; }
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;
    void GetDrawn(std::vector<tagDrawn>&) const override {} ///< the mark lies at the vertex
    void Record(XVertBuffer* buffer, const XWarp2D* warp, const XVectorPaint& paint) const override;
    double GetMarkPixels() const override;
    bool GetLabelPlace(tagXVector3& place, int& align) const override;

private:
    int m_type = 5;
};
