#pragma once

#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcMultiObj.h"

/// Many straight lines as one object.
class XAPI XvcMLine : public XvcMultiObj
{
    X_DECLARE_CLASS(XvcMLine)
public:
    XvcMLine() = default;

    /// All return the index of the new line; the object form takes the object (-1 for null).
    int AddLine(const tagXVector3& start, const tagXVector3& end);
    int AddLine(const XvcLine& line);
    int AddLine(std::unique_ptr<XvcLine> line) { return AddPart(std::move(line)); }
    int GetNumOfLines() const { return GetPartCount(); }
    XvcLine* GetLineObjAt(int index) const { return static_cast<XvcLine*>(GetPartAt(index)); }

    /// A line string or several, of any number of positions: a line for each pair of neighbours.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< MULTILINESTRING

protected:
    bool IsPartAllowed(const XvcObj& part) const override;
};
