#pragma once

#include "foundation/base/XTextStyle.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XvcVertexObj.h"

class XVertBuffer;
class XWarp2D;
struct XVectorPaint;
struct tagXDrawAttrs;

/// What measurements in the drawing have in common: vertices, a spatial reference, units, a label.
///
/// How a length is found depends on the reference (its coordinate type too):
///
/// | reference         | length                                                     | unit       |
/// |-------------------|------------------------------------------------------------|------------|
/// | map, geographic   | along the shortest line on its ellipsoid (XGeodesy)        | as chosen  |
/// | map, projected    | in the plane, times the metres of its unit                 | as chosen  |
/// | any other, none   | in the plane, as it stands                                 | none       |
///
/// On geographic references edges are drawn along the shortest lines that are measured, across the
/// date line too. Range and hits are those of what is drawn, without the label.
/// Vertices that are not set or not finite are left out of figures and drawing.
/// The label stands beside the object in its text style. Its height is a world length, or pixels
/// when negative; its colour is the line colour unless SetTextColor gives another.
class XAPI XvcMeasureObj : public XvcVertexObj
{
    X_DECLARE_CLASS(XvcMeasureObj)
public:
    static constexpr int kMaxDecimals = 15;

    int Add(double x, double y, double z = 0.0); ///< @return the index; -1 when there are enough
    int Add(const tagXVector3& vertex) { return Add(vertex.x, vertex.y, vertex.z); }
    /// These return 0 for an index that there is not.
    int SetAt(int index, double x, double y, double z = 0.0)
    {
        return XvcVertexObj::SetAt(index, x, y, z);
    }
    int RemoveAt(int index) { return XvcVertexObj::RemoveAt(index); }
    void RemoveAll() { XvcVertexObj::RemoveAll(); }

    void SetSR(const XSpatialReference* reference); ///< copies; null for none
    const XSpatialReference& GetSR() const { return m_reference; }
    int IsGeodesic() const;     ///< measured on the ellipsoid
    int HasGroundUnits() const; ///< figures can be converted to the units chosen

    int GetLengthUnit() const { return m_lengthUnit; } ///< XMeasureUnits; 0 at first
    void SetLengthUnit(int unit);                      ///< one that does not exist is ignored
    int GetAreaUnit() const { return m_areaUnit; }
    void SetAreaUnit(int unit);
    int GetDecimals() const { return m_decimals; } ///< behind the point of the label; 2 at first
    void SetDecimals(int decimals);                ///< held within 0 to kMaxDecimals

    int GetLabelFlag() const { return m_labelFlag; } ///< the label is drawn; 1 at first
    void SetLabelFlag(int flag)
    {
        m_labelFlag = flag ? 1 : 0;
        Touch();
    }
    double GetFontSize() const { return m_fontSize; } ///< -14 at first
    void SetFontSize(double height);                  ///< 0 or not finite is ignored
    const tagXTextStyle& GetTextStyle() const { return m_textStyle; }
    void SetTextStyle(const tagXTextStyle& style)
    {
        m_textStyle = style;
        Touch();
    }
    tagXColor GetTextColor() const { return m_textColor; } ///< 0: the line colour
    void SetTextColor(tagXColor color)
    {
        m_textColor = color;
        Touch();
    }

    /// What the label says; empty while there are too few vertices.
    virtual XString GetLabel() const = 0;

    void CalcRange() override;
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;

protected:
    using Path = std::vector<tagXVector3>;
    struct tagDrawn
    {
        Path path;
        std::vector<int> edges; ///< those that lead to each vertex; empty: it is none of the edges
        bool isRing = false;
    };

    XvcMeasureObj() = default;
    XvcMeasureObj(const XvcMeasureObj&) = default;
    XvcMeasureObj& operator=(const XvcMeasureObj&) = default;

    virtual int GetMaxVertices() const;
    bool IsVertexCountAllowed(int count) const override { return count <= GetMaxVertices(); }
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

    /// Adds the lines and rings that are drawn, in the object's coordinates.
    virtual void GetDrawn(std::vector<tagDrawn>& drawn) const = 0;
    /// Records what is measured; the label is none of it.
    virtual void Record(XVertBuffer* buffer, const XWarp2D* warp, const XVectorPaint& paint) const;
    /// Pixels of the mark that a label beside the vertex has to keep off, half its size.
    virtual double GetMarkPixels() const { return 0.0; }
    /// Where the label stands, in the object's coordinates, and by which point of its box
    /// (XTextAlign). @return false for nowhere
    virtual bool GetLabelPlace(tagXVector3& place, int& align) const = 0;

    void GetUsable(Path& vertices) const;
    /// Metres where there are ground units, otherwise coordinates; 1.7e308 when it cannot be told.
    double MeasureLength(const tagXVector3& a, const tagXVector3& b) const;
    double MeasurePath(const Path& vertices) const;
    double ToLengthUnit(double length) const;
    double ToAreaUnit(double area) const;
    XString FormatLength(double inUnit) const;
    XString FormatArea(double inUnit) const;
    /// Degrees in a unit of geographic coordinates.
    double GetDegreesPerUnit() const;
    /// The usable vertices and, on the ellipsoid, those of the shortest lines between them, with
    /// longitudes that never jump.
    tagDrawn Trace(const Path& vertices, bool isRing) const;
    /// Adds what was traced, and once more a turn away where it leaves -180 to 180 degrees although
    /// no vertex does.
    void AddDrawn(std::vector<tagDrawn>& drawn, const tagDrawn& traced) const;
    void ScaleLengths(double factorX, double factorY) override;

private:
    XSpatialReference m_reference;
    int m_lengthUnit = 0;
    int m_areaUnit = 0;
    int m_decimals = 2;
    int m_labelFlag = 1;
    double m_fontSize = -14.0;
    tagXTextStyle m_textStyle;
    tagXColor m_textColor = 0;
};
