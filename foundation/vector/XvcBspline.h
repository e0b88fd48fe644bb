#pragma once

#include "foundation/vector/XvcVertexObj.h"

#include <vector>

/// A B-spline curve of any order over its poles, drawn in the line colour.
///
/// | type | ends                                                                        |
/// |------|-----------------------------------------------------------------------------|
/// | 0    | clamped: begins at the first pole and ends at the last                      |
/// | 1    | open: uniform knots, so it begins and ends short of the poles               |
/// | 2    | closed: uniform knots, the poles repeat; smooth all round                   |
///
/// The order is the degree plus one, from 2 on; 4 (cubic) at first. With fewer poles than the order
/// says, the order of drawing is the number of poles.
/// Knots: types 0 and 1 use the object's own knots when there are as many as poles plus order of
/// drawing, they are finite and never fall; otherwise, and for type 2 always, knots are made.
/// Method: de Boor's recurrence (C. de Boor, A Practical Guide to Splines, Springer 1978, ch. X),
/// convex combinations only, so the curve stays within its poles' hull and no order loses digits.
/// The time of a vertex rises with the square of the order: curves of high orders, which bend the
/// less, have fewer vertices.
/// The control points and the vertices hit are the poles. Poles that are not usable are left out.
/// The range is that of the drawn curve.
class XAPI XvcBspline : public XvcVertexObj
{
    X_DECLARE_CLASS(XvcBspline)
public:
    enum Type { kClamped, kOpen, kClosed };
    static constexpr int kMinOrder = 2;
    static constexpr int kMaxOrder = 4096; ///< a vertex of a higher one would take too long
    static constexpr int kDefaultResolution = 16;
    static constexpr int kMaxResolution = 1000;

    XvcBspline() = default;

    int AddPole(double x, double y, double z = 0.0) { return Add(x, y, z); }
    int AddPole(const tagXVector3& pole) { return Add(pole); }
    tagXVector3 GetPoleAt(int index) const { return GetAt(index); }
    int GetPoleAt(int index, double& x, double& y, double& z) const
    {
        return GetAt(index, x, y, z);
    }
    int SetPoleAt(int index, double x, double y, double z = 0.0) { return SetAt(index, x, y, z); }
    int SetPoleAt(int index, const tagXVector3& pole) { return SetAt(index, pole); }
    int InsertPoleAt(int index, const tagXVector3& pole) { return InsertAt(index, pole); }
    int RemovePoleAt(int index) { return RemoveAt(index); }
    void RemoveAllPoles() { RemoveAll(); }
    int GetPoleSize() const { return GetSize(); }

    int AddKnot(double knot);          ///< the new index
    double GetKnotAt(int index) const; ///< 1.7e308 for an index that there is not
    /// These return 0 and change nothing for an index that there is not.
    int SetKnotAt(int index, double knot);
    int InsertKnotAt(int index, double knot);
    int RemoveKnotAt(int index);
    void RemoveAllKnots()
    {
        m_knots.clear();
        Touch();
    }
    int GetKnotSize() const { return static_cast<int>(m_knots.size()); }

    int GetOrder() const { return m_order; }
    void SetOrder(int order); ///< held at kMinOrder to kMaxOrder
    /// Steps a span between knots is drawn in, 1 to kMaxResolution.
    int GetResolution() const { return m_resolution; }
    void SetResolution(int steps);
    int GetType() const { return m_type; }
    void SetType(int type); ///< others than the three are ignored

    /// The curve as it is drawn; replaces what `curve` holds. A closed one ends where it begins.
    /// A curve that would have more than a million vertices (fewer of orders above 32) has fewer
    /// steps in each span, and then one in several spans.
    void GetCurve(std::vector<tagXVector3>& curve) const;

    void CalcRange() override;
    tagXVectorRange GetHitExtent() const override; ///< with the poles
    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// A pole is a vertex; the curve itself is hit as the body.
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    /// A line string, whose vertices become the poles; knots go.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< LINESTRING of the curve as drawn

protected:
    XHitShape GetHitShape() const override { return XHitShape::Points; }
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    std::vector<double> m_knots;
    int m_order = 4;
    int m_resolution = kDefaultResolution;
    int m_type = kClamped;
};
