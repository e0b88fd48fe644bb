#pragma once

#include "foundation/vector/XvcMultiObj.h"
#include "foundation/vector/XvcPolyline.h"

/// Many polylines as one object.
class XAPI XvcMPolyline : public XvcMultiObj
{
    X_DECLARE_CLASS(XvcMPolyline)
public:
    XvcMPolyline() = default;

    /// All return the index of the new polyline; the object form takes the object (-1 for null).
    int AddPolyline(const XvcPolyline& polyline);
    int AddPolyline(std::unique_ptr<XvcPolyline> polyline) { return AddPart(std::move(polyline)); }
    int GetNumOfPolylines() const { return GetPartCount(); }
    XvcPolyline* GetPolylineObjAt(int index) const
    {
        return static_cast<XvcPolyline*>(GetPartAt(index));
    }

    /// A line string or a multi line string.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< MULTILINESTRING

protected:
    bool IsPartAllowed(const XvcObj& part) const override;
};
