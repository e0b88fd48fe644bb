#pragma once

#include "foundation/vector/XvcEllipseObj.h"

/// An ellipse: outlined in the line colour, filled by the fill style in the fore and back colour.
class XAPI XvcEllipse : public XvcEllipseObj
{
    X_DECLARE_CLASS(XvcEllipse)
public:
    XvcEllipse() = default;
    XvcEllipse(const tagXVector3& center, double axisX, double axisY)
    {
        SetCenter(center);
        SetAxis(axisX, axisY);
    }

protected:
    bool IsClosed() const override { return true; }
};
