#include "view/tools/XSelectTool.h"

#include "edit/XModifyScope.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcTextBox.h"
#include "view/XGVMessageManager.h"
#include "view/XGVSelectedObjs.h"
#include "view/XLayerWalk.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"
#include "view/tools/XSelectionDrag.h"
#include "view/tools/XSelectionEditor.h"
#include "view/tools/XToolHit.h"

#include <algorithm>
#include <unordered_set>

namespace {

// Before the first member of the same layer that lies above the object, else at the tail.
void InsertInOrder(XObList& selection, XvcObj& object)
{
    const XvcLayer* const layer = object.GetParentLayer();
    std::unordered_set<const XObject*> mates;
    for (__POSITION* pos = selection.GetHeadPosition(); pos;) {
        const auto* member = dynamic_cast<const XvcObj*>(selection.GetNext(pos));
        if (member && member->GetParentLayer() == layer) mates.insert(member);
    }
    std::unordered_set<const XObject*> above;
    __POSITION* place = layer && !mates.empty() ? layer->Find(&object) : nullptr;
    while (place) {
        const XObject* const element = layer->GetNext(place);
        if (mates.contains(element)) above.insert(element);
    }
    for (__POSITION* pos = selection.GetHeadPosition(); pos;) {
        __POSITION* const at = pos;
        if (!above.contains(selection.GetNext(pos))) continue;
        selection.InsertBefore(at, &object);
        return;
    }
    selection.AddTail(&object);
}

// Of some objects, which may have gone, those that lie in a layer of the target and are as they
// were: another object at the address of one has another number.
std::vector<XvcObj*> ListUnchanged(XToolTarget& target, const std::vector<XvcObj*>& objects,
                                   const std::vector<std::uint32_t>& states)
{
    std::unordered_set<const XObject*> found;
    for (XObList* bases : {target.GetInnBaseList(), target.GetExtBaseList()})
        for (const XvcLayer* layer : XfnListLayers(*bases))
            for (__POSITION* pos = layer->GetHeadPosition(); pos;)
                found.insert(layer->GetNext(pos));
    std::vector<XvcObj*> unchanged;
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (found.contains(objects[i]) && objects[i]->Refresh() == states[i])
            unchanged.push_back(objects[i]);
    return unchanged;
}

} // namespace

void XSelectTool::OnAny(const tagXToolEvent& event)
{
    tagXToolState& state = GetTarget().GetToolState();
    state.pointer = {event.worldX, event.worldY, 0.0};
    state.current = event.pixel;
}

// Text boxes that the pointer missed leave their edit mode.
bool XSelectTool::HitSelection(const tagXToolEvent& event)
{
    const tagXVector3 point{event.worldX, event.worldY, 0.0};
    for (XvcObj* object : XfnListObjects(*GetTarget().GetSelection().GetList())) {
        const double tolerance = XfnHitTolerance(GetTarget().GetViewMapping(), *object);
        if (object->HitTest(point, tolerance, GetTarget().GetToolState().hit)) return true;
        auto* const text = dynamic_cast<XvcTextBox*>(object);
        if (!text || !text->GetEditMode()) continue;
        text->EndEditMode();
        GetTarget().ShowAll();
    }
    return false;
}

void XSelectTool::Select(XvcObj& object, bool isJoining)
{
    XObList& selection = *GetTarget().GetSelection().GetList();
    if (!isJoining) selection.RemoveAll();
    // one with a small thickness may be missed as a selected object and hit as any other
    if (!selection.Find(&object)) InsertInOrder(selection, object);
    GetTarget().UseEditLayer(object.GetParentLayer());
}

void XSelectTool::Press(const tagXToolEvent& event)
{
    tagXToolState& state = GetTarget().GetToolState();
    XGVSelectedObjs& selection = GetTarget().GetSelection();
    HideBand();
    state.anchor = state.press = state.pointer;
    state.start = state.previous = event.pixel;
    state.hit = {tagXHitFlag::kBody, -1};
    state.isButtonDrag = 1;
    XvcObj* object = nullptr;
    if (!HitSelection(event)) {
        object = GetTarget().FindObject(event.worldX, event.worldY,
                                        XfnHitTolerance(GetTarget().GetViewMapping()), state.hit);
        if (object) {
            Select(*object, event.IsCtrl());
        } else {
            selection.Clear();
            ShowBand(event.pixel);
        }
        GetTarget().ShowOverlay();
    }
    if (selection.GetList()->GetCount() != 1) return;
    // without an object the host learns that the press was on what it knows to be selected
    const tagXHitReport report = {object, &state.hit};
    GetTarget().Report(XViewReport::ObjectHit, &report);
}

void XSelectTool::Move(const tagXToolEvent& event)
{
    tagXToolState& state = GetTarget().GetToolState();
    if (!state.isButtonDrag) return;
    const XGVSelectedObjs& selection = GetTarget().GetSelection();
    if (selection.IsEmpty() || GetTarget().GetMessageManager().IsNoMoveObject()) {
        ShowBand(event.pixel);
        return;
    }
    if (state.pointer == state.anchor) return;
    XfnDragSelection(*selection.GetList(), state.hit, state.pointer.x - state.anchor.x,
                     state.pointer.y - state.anchor.y);
    state.anchor = state.pointer;
    GetTarget().ShowMoved();
}

void XSelectTool::Release(const tagXToolEvent&)
{
    tagXToolState& state = GetTarget().GetToolState();
    XGVSelectedObjs& selection = GetTarget().GetSelection();
    if (!state.isButtonDrag) return; // of a double click, or of a press before this mode
    state.isButtonDrag = 0;
    HideBand();
    state.release = state.pointer;
    const bool isMoved = state.anchor != state.press;
    const bool isDrag = !selection.IsEmpty() && !GetTarget().GetMessageManager().IsNoMoveObject();
    if (isDrag && state.release != state.press && state.press.x != 0.0 && state.press.y != 0.0) {
        if (!RecordDrag()) return;
    }
    if (state.start != state.previous && !GetTarget().GetMessageManager().IsNoMultiSelect())
        SelectInBand();
    if (isMoved)
        GetTarget().ShowMoved();
    else
        GetTarget().ShowOverlay();
    const bool isTold = !selection.IsEmpty();
    const auto life = GetTarget().GetLife();
    if (isTold) GetTarget().Report(XViewReport::SelectionFinished, selection.GetList());
    // what the host changed in it is to be seen
    if (!life.expired() && isTold) GetTarget().ShowMoved();
}

// Answers false when the target has gone meanwhile.
bool XSelectTool::RecordDrag()
{
    XToolTarget& target = GetTarget();
    const auto life = target.GetLife();
    const XObList& selection = *target.GetSelection().GetList();
    const tagXToolState state = target.GetToolState();
    const std::vector<XvcObj*> dragged = XfnListObjects(selection);
    std::vector<std::uint32_t> states;
    for (XvcObj* object : dragged)
        states.push_back(object->Refresh());
    {
        XModifyScope step(target.GetCommands());
        target.Report(XViewReport::BeforeModify, &selection);
        if (life.expired()) {
            step.Abandon();
            return false;
        }
        // a host that undid something meanwhile has others selected, which were not dragged
        XObList recorded;
        const bool isSame = XfnListObjects(selection) == dragged;
        for (XvcObj* object : isSame ? dragged : ListUnchanged(target, dragged, states))
            recorded.AddTail(object);
        if (recorded.IsEmpty()) return true;
        tagXHitFlag hit = state.hit;
        if (dragged.size() > 1) hit.kind = tagXHitFlag::kBody;
        XfnRecordDrag(target.GetCommands(), recorded, hit, state.press.x - state.release.x,
                      state.press.y - state.release.y);
        step.Commit();
    }
    target.Report(XViewReport::AfterModify);
    return !life.expired();
}

void XSelectTool::SelectInBand()
{
    const tagXToolState& state = GetTarget().GetToolState();
    XObList& selection = *GetTarget().GetSelection().GetList();
    const auto [minX, maxX] = std::minmax(state.press.x, state.release.x);
    const auto [minY, maxY] = std::minmax(state.press.y, state.release.y);
    selection.RemoveAll();
    for (const XObList* bases : {GetTarget().GetInnBaseList(), GetTarget().GetExtBaseList()})
        XfnObjInRect(selection, *bases, minX, minY, maxX, maxY);
    if (selection.IsEmpty()) return;
    if (const auto* first = dynamic_cast<const XvcObj*>(selection.GetHead()))
        GetTarget().UseEditLayer(first->GetParentLayer());
}

void XSelectTool::DoubleClick(const tagXToolEvent& event)
{
    if (GetTarget().GetMessageManager().IsNoChangeProperty()) return;
    XSelectionEditor(GetTarget()).DoubleClick(event);
}

void XSelectTool::Cancel()
{
    tagXToolState& state = GetTarget().GetToolState();
    if (!state.isButtonDrag) return;
    state.isButtonDrag = 0;
    HideBand();
    if (state.anchor == state.press) return;
    XfnDragSelection(*GetTarget().GetSelection().GetList(), state.hit,
                     state.press.x - state.anchor.x, state.press.y - state.anchor.y);
    GetTarget().ShowAll();
}
