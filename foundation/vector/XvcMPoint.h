#pragma once

#include "foundation/vector/XvcMultiObj.h"
#include "foundation/vector/XvcPoint.h"

/// Many points as one object, each with a mark of its own.
class XAPI XvcMPoint : public XvcMultiObj
{
    X_DECLARE_CLASS(XvcMPoint)
public:
    XvcMPoint() = default;

    /// All return the index of the new point; the object form takes the object (-1 for null).
    int AddPoint(double x, double y, double z = 0.0);
    int AddPoint(const XvcPoint& point);
    int AddPoint(std::unique_ptr<XvcPoint> point) { return AddPart(std::move(point)); }
    int GetNumOfPoints() const { return GetPartCount(); }
    XvcPoint* GetPointObjAt(int index) const { return static_cast<XvcPoint*>(GetPartAt(index)); }

    /// A point or a multipoint; empty points in it are left out.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< MULTIPOINT, of the points that are set

protected:
    bool IsPartAllowed(const XvcObj& part) const override;
};
