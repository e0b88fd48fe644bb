#pragma once

#include "foundation/vector/XvcEllipseObj.h"

/// What the two kinds of arcs have in common: a start and an end angle.
///
/// The arc runs counter-clockwise from the start to the end angle, both in degrees of the ellipse's
/// own angle. Equal angles, or a whole turn between them, are the whole ellipse. At first 0 and 90.
class XAPI XvcArcObj : public XvcEllipseObj
{
    X_DECLARE_CLASS(XvcArcObj)
public:
    double GetStartAngle() const { return m_startDeg; }
    double GetEndAngle() const { return m_endDeg; }
    void GetAngle(double& startDeg, double& endDeg) const;
    void SetAngle(double startDeg, double endDeg); ///< ignored if one of them is no number

protected:
    XvcArcObj() = default;
    void GetSweep(double& startDeg, double& sweepDeg) const override;
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;
    virtual int GetMode() const = 0;          ///< stored with the angles
    virtual bool SetLoadedMode(int mode) = 0; ///< false for one that there is not

    double m_startDeg = 0.0;
    double m_endDeg = 90.0;
};
