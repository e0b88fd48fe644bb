#pragma once

#include "foundation/vector/XvcMeasureObj.h"

/// The angle between two legs: vertex 1 is the corner, 0 and 2 are the ends of the legs.
///
/// On geographic references it is the angle between the azimuths of the two shortest lines at the
/// corner; elsewhere that of the plane. A small arc joins the legs, and the label stands by it.
class XAPI XvcMeasureAngle : public XvcMeasureObj
{
    X_DECLARE_CLASS(XvcMeasureAngle)
public:
    XvcMeasureAngle() = default;

    /// Degrees, 0 to 180; 1.7e308 below three vertices or when a leg has no length.
    double GetAngle() const;
    XString GetLabel() const override;

protected:
    int GetMaxVertices() const override { return 3; }
    XHitShape GetHitShape() const override { return XHitShape::Line; }
    void GetDrawn(std::vector<tagDrawn>& drawn) const override;
    bool GetLabelPlace(tagXVector3& place, int& align) const override;

private:
    /// The point of the arc at `share` of the way from leg 0 to leg 2. @return false without legs
    bool GetArcPoint(double share, double stretch, tagXVector3& point) const;
};
