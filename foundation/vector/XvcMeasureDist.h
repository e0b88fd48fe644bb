#pragma once

#include "foundation/vector/XvcMeasureObj.h"

/// The length of a line of two or more vertices; the label stands at its last one.
class XAPI XvcMeasureDist : public XvcMeasureObj
{
    X_DECLARE_CLASS(XvcMeasureDist)
public:
    XvcMeasureDist() = default;

    double GetLength() const; ///< in the unit chosen; 0 below two vertices
    XString GetLabel() const override;
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< LINESTRING

protected:
    XHitShape GetHitShape() const override { return XHitShape::Line; }
    void GetDrawn(std::vector<tagDrawn>& drawn) const override;
    bool GetLabelPlace(tagXVector3& place, int& align) const override;
};
