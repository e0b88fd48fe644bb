#pragma once

#include "foundation/base/XApi.h"
#include "foundation/surface/XVertStyles.h"

#include <vector>

class XVertBuffer;
class XVertexArray;
class XWarp2D;
class XvcObj;
struct tagXDrawAttrs;

/// What an object is drawn with: its own attributes, save those that stand in. Recordings leave out
/// what does not show (no style, no opacity), so both parts may be handed on as they are.
struct XAPI XVectorPaint
{
    XVectorPaint(const XvcObj& object, const tagXDrawAttrs* attrs);

    tagXVertLine line; ///< line colour, thickness (0 for one that is no number), line style
    tagXVertFill fill; ///< fill style, fore and back colour

    /// Null where the style says that there is none.
    const tagXVertLine* GetLine() const { return line.style.IsNone() ? nullptr : &line; }
    const tagXVertFill* GetFill() const { return fill.style.IsNone() ? nullptr : &fill; }
};

/// Carries vertices through a warp; null leaves them where they are. A vertex that is not usable
/// before or after becomes NaN, which recordings leave out.
XAPI void XfnWarpVertices(std::vector<tagXVector3>& vertices, const XWarp2D* warp);

/// The vertices of `array`, carried through `warp`; the result is good until the next call on the
/// same thread.
XAPI const std::vector<tagXVector3>& XfnGetWarpedVertices(const XVertexArray& array,
                                                          const XWarp2D* warp);

/// Adds a line, or an area with its outline, to a recording; null is no recording. What of the
/// vertices is not usable is left out as XVertBuffer says.
XAPI void XfnRecordPolyline(XVertBuffer* buffer, const std::vector<tagXVector3>& vertices,
                            const XVectorPaint& paint);
XAPI void XfnRecordPolygon(XVertBuffer* buffer, const std::vector<tagXVector3>& vertices,
                           const XVectorPaint& paint);
