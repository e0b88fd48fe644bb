#include "foundation/vector/XVectorPaint.h"

#include "foundation/base/XWarp2D.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XDrawAttrs.h"
#include "foundation/vector/XVertexArray.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XvcObj.h"

#include <limits>

XVectorPaint::XVectorPaint(const XvcObj& object, const tagXDrawAttrs* attrs)
{
    line.colour = attrs && attrs->lineColor ? *attrs->lineColor : object.GetLineColor();
    line.thick = attrs && attrs->thick ? *attrs->thick : object.GetThick();
    if (!XfnIsSet(line.thick)) line.thick = 0.0;
    line.style = attrs && attrs->lineStyle ? *attrs->lineStyle : object.GetLineStyle();
    fill.foreColour = attrs && attrs->foreColor ? *attrs->foreColor : object.GetForeColor();
    fill.backColour = attrs && attrs->backColor ? *attrs->backColor : object.GetBackColor();
    fill.style = attrs && attrs->fillStyle ? *attrs->fillStyle : object.GetFillStyle();
}

void XfnWarpVertices(std::vector<tagXVector3>& vertices, const XWarp2D* warp)
{
    if (!warp) return;
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    for (tagXVector3& vertex : vertices) {
        if (XfnIsUsable(vertex)) warp->Warp(vertex.x, vertex.y);
        if (!XfnIsUsable(vertex)) vertex = {kNan, kNan, vertex.z};
    }
}

const std::vector<tagXVector3>& XfnGetWarpedVertices(const XVertexArray& array, const XWarp2D* warp)
{
    thread_local std::vector<tagXVector3> vertices;
    array.CopyTo(vertices);
    XfnWarpVertices(vertices, warp);
    return vertices;
}

void XfnRecordPolyline(XVertBuffer* buffer, const std::vector<tagXVector3>& vertices,
                       const XVectorPaint& paint)
{
    if (buffer) buffer->AddPolyline(vertices.data(), vertices.size(), paint.line);
}

void XfnRecordPolygon(XVertBuffer* buffer, const std::vector<tagXVector3>& vertices,
                      const XVectorPaint& paint)
{
    if (buffer) buffer->AddPolygon(vertices.data(), vertices.size(), &paint.line, &paint.fill);
}
