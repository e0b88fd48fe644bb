#pragma once

#include "foundation/vector/XvcMeasureObj.h"

/// A circle about vertex 0 through vertex 1, its radius and its area.
///
/// On geographic references it is the line of all places at that distance on the ellipsoid, closed
/// about a pole too, and the area is that within, for radii below a quarter of the way around. The
/// label stands at vertex 1, to which a line leads. The circle's line is hit as the body, its inside
/// is not.
class XAPI XvcMeasureRange : public XvcMeasureObj
{
    X_DECLARE_CLASS(XvcMeasureRange)
public:
    XvcMeasureRange() = default;

    double GetRadius() const;          ///< in the unit chosen; 0 below two vertices
    double GetArea() const;            ///< in the unit chosen
    XString GetLabel() const override; ///< two lines: the radius, the area

protected:
    int GetMaxVertices() const override { return 2; }
    XHitShape GetHitShape() const override { return XHitShape::Line; }
    void GetDrawn(std::vector<tagDrawn>& drawn) const override;
    bool GetLabelPlace(tagXVector3& place, int& align) const override;

private:
    bool GetCircle(Path& ring) const;
};
