#pragma once

#include "foundation/vector/XvcPartsObj.h"

/// What many points, lines, polylines, polygons or texts as one object have in common: an attribute
/// set on the whole is passed to every part. A part that is added keeps its own until then; one
/// made by the whole begins with those of the whole.
class XAPI XvcMultiObj : public XvcPartsObj
{
    X_DECLARE_CLASS(XvcMultiObj)
public:
    void SetLineColor(tagXColor color) override;
    void SetForeColor(tagXColor color) override;
    void SetBackColor(tagXColor color) override;
    void SetThick(double value) override;
    void SetFillStyle(const tagXFillStyle& style) override;
    void SetLineStyle(const tagXLineStyle& style) override;

protected:
    XvcMultiObj() = default;
};
