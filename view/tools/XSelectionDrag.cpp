#include "view/tools/XSelectionDrag.h"

#include "edit/XCommandManager.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcTextBox.h"

namespace {

bool IsCorner(const tagXHitFlag& hit)
{
    return hit.kind >= tagXHitFlag::kFirstCorner && hit.kind <= tagXHitFlag::kLastCorner;
}

void DragOne(XvcObj& object, const tagXHitFlag& hit, double dx, double dy)
{
    if (hit.kind == tagXHitFlag::kVertex && !object.IsKindOf(XvcPoint::GetRuntimeClassStatic())) {
        object.MoveVertex(hit.index, dx, dy, 0.0);
    } else if (IsCorner(hit)) {
        if (object.IsKindOf(XvcBitmap::GetRuntimeClassStatic()) ||
            object.IsKindOf(XvcTextBox::GetRuntimeClassStatic()))
            object.MoveVertex(hit.kind, dx, dy, 0.0);
    } else {
        object.MoveObject(dx, dy, 0.0);
    }
    object.CalcRange();
}

} // namespace

std::vector<XvcObj*> XfnListObjects(const XObList& list)
{
    std::vector<XvcObj*> objects;
    objects.reserve(static_cast<std::size_t>(list.GetCount()));
    for (__POSITION* pos = list.GetHeadPosition(); pos;)
        if (auto* object = dynamic_cast<XvcObj*>(list.GetNext(pos))) objects.push_back(object);
    return objects;
}

void XfnDragSelection(const XObList& selection, const tagXHitFlag& hit, double dx, double dy)
{
    const bool isOne = selection.GetCount() == 1;
    for (__POSITION* pos = selection.GetHeadPosition(); pos;) {
        auto* const object = dynamic_cast<XvcObj*>(selection.GetNext(pos));
        if (!object) continue;
        if (isOne) {
            DragOne(*object, hit, dx, dy);
        } else {
            object->MoveObject(dx, dy, 0.0);
            object->CalcRange();
        }
    }
}

void XfnRecordDrag(XCommandManager& commands, const XObList& selection, const tagXHitFlag& hit,
                   double backX, double backY)
{
    const std::vector<XvcObj*> objects = XfnListObjects(selection);
    const bool isVertex = hit.kind == tagXHitFlag::kVertex && selection.GetCount() == 1;
    std::vector<XvcObj*> before;
    before.reserve(objects.size());
    for (const XvcObj* object : objects) {
        XvcObj* const clone = commands.CloneObject(object);
        before.push_back(clone);
        if (!clone) continue;
        // a drag by a corner goes back as a move of the whole, even that of a raster patch, which
        // did not move at all: hosts know the step so
        if (isVertex)
            clone->MoveVertex(hit.index, backX, backY, 0.0);
        else
            clone->MoveObject(backX, backY, 0.0);
        clone->CalcRange();
    }
    commands.RegisterModified(objects, before);
}
