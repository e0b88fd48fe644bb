#pragma once

#include "foundation/vector/XvcMeasureObj.h"

/// The area and the perimeter of a ring; the label stands at the mean of its vertices.
///
/// The ring closes by itself. Area in the plane: half the absolute sum over i of
/// (x[i+1] - x[i-1]) y[i]; a ring that crosses itself counts loops of opposite sense against each
/// other, on the ellipsoid as well.
class XAPI XvcMeasureArea : public XvcMeasureObj
{
    X_DECLARE_CLASS(XvcMeasureArea)
public:
    XvcMeasureArea() = default;

    double GetArea() const;            ///< in the unit chosen; 0 below three vertices
    double GetPerimeter() const;       ///< in the unit chosen, the closing edge counted
    XString GetLabel() const override; ///< two lines: the area, the perimeter
    /// A polygon of one ring.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< POLYGON

protected:
    XHitShape GetHitShape() const override { return XHitShape::Ring; }
    void GetDrawn(std::vector<tagDrawn>& drawn) const override;
    bool GetLabelPlace(tagXVector3& place, int& align) const override;
};
