#pragma once

#include "foundation/base/XObList.h"
#include "foundation/base/XPtrArray.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcRectangle.h"
#include "foundation/vector/XvcText.h"
#include "foundation/vector/XvcTextBox.h"

#include <sstream>
#include <string>
#include <vector>

/// An object as a reader sees it: its class and places, "Line 10,10 50,10", as pixels of a view
/// that has the origin of the world in its upper left corner. Areas that are not told by vertices
/// are told by the upper left and lower right corner of their range.
inline std::string XfnDescribe(XObject* element)
{
    auto* const object = dynamic_cast<XvcObj*>(element);
    if (!object) return "";
    std::ostringstream out;
    out << object->GetRuntimeClass()->m_lpszClassName + 3;
    const auto add = [&out](double x, double y) { out << ' ' << x << ',' << (y == 0 ? 0 : -y); };
    const bool hasVertices = dynamic_cast<XvcVertexObj*>(object) || dynamic_cast<XvcPoint*>(object);
    if ((hasVertices && !dynamic_cast<XvcRectObj*>(object)) || dynamic_cast<XvcText*>(object)) {
        XPtrArray points;
        object->AddCtrlPoints(points);
        for (void* point : points)
            add(static_cast<tagXVector3*>(point)->x, static_cast<tagXVector3*>(point)->y);
    } else {
        add(object->GetRange().minX, object->GetRange().maxY);
        add(object->GetRange().maxX, object->GetRange().minY);
    }
    return out.str();
}

inline std::string XfnDescribeAll(const XObList& list)
{
    std::string text;
    for (__POSITION* pos = list.GetHeadPosition(); pos;)
        text += (text.empty() ? "" : "; ") + XfnDescribe(list.GetNext(pos));
    return text;
}

/// Puts the objects of such a description into a layer: "Line 10,10 50,10; Point 80,20".
inline void XfnDraw(XvcLayer& layer, const std::string& description)
{
    std::istringstream objects(description);
    for (std::string one; std::getline(objects, one, ';');) {
        std::istringstream in(one);
        std::string kind;
        in >> kind;
        XvcObj* const object = XfnNewVectorObject(("Xvc" + kind).c_str()).release();
        char comma = 0;
        int count = 0;
        tagXVector3 first;
        for (double x = 0, y = 0; in >> x >> comma >> y; ++count) {
            const tagXVector3 at(x, -y);
            if (auto* point = dynamic_cast<XvcPoint*>(object)) point->SetVertex(at);
            if (auto* line = dynamic_cast<XvcPolyline*>(object)) line->Add(at);
            if (auto* area = dynamic_cast<XvcPolygon*>(object)) area->Add(at);
            if (auto* points = dynamic_cast<XvcPolypoint*>(object)) points->Add(at);
            if (count == 0) first = at;
            if (auto* line = dynamic_cast<XvcLine*>(object)) line->SetVertices(first, at);
            if (auto* box = dynamic_cast<XvcRectObj*>(object)) box->Set(first, at);
            if (auto* box = dynamic_cast<XvcBoxObj*>(object))
                box->SetBound(first.x, first.y, at.x, at.y);
        }
        object->CalcRange();
        layer.AddTail(object);
    }
}
