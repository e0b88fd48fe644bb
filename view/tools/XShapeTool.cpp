#include "view/tools/XShapeTool.h"

#include "edit/XCommandManager.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcLine.h"
#include "view/XGVMessageManager.h"
#include "view/XGVSelectedObjs.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"
#include "view/tools/XToolGeometry.h"

void XShapeTool::OnAny(const tagXToolEvent& event)
{
    tagXToolState& state = GetTarget().GetToolState();
    state.pointer = {event.worldX, event.worldY, 0.0};
    state.current = event.pixel;
}

const tagXVector3& XShapeTool::Anchor() const
{
    return GetTarget().GetToolState().anchor;
}

const tagXVector3& XShapeTool::Pointer() const
{
    return GetTarget().GetToolState().pointer;
}

void XShapeTool::DropAnchor()
{
    GetTarget().GetToolState().anchor = Pointer();
}

const tagXVector3& XShapeTool::ConstrainToAxis(const tagXToolEvent& event)
{
    tagXVector3& pointer = GetTarget().GetToolState().pointer;
    if (event.IsCtrl()) pointer = XfnConstrainToAxis(Anchor(), pointer);
    return pointer;
}

double XShapeTool::GetWorldPerPixel() const
{
    double x = 1.0, y = 1.0;
    GetTarget().GetViewMapping().GetWorldPerPixel(x, y);
    return x;
}

void XShapeTool::GiveAttributes(XvcObj& object, Fill fill) const
{
    XGVObjectManager& styles = GetTarget().GetObjectManager();
    object.SetLineColor(styles.m_lineColor);
    object.SetForeColor(styles.m_foreColor);
    object.SetBackColor(styles.m_backColor);
    object.SetThick(styles.m_thickness);
    object.SetLineStyle(styles.GetLineStyle());
    if (fill == Fill::With) object.SetFillStyle(styles.GetFillStyle());
}

void XShapeTool::ShowCurrent(XViewReason reason)
{
    if (XvcObj* const object = GetTarget().GetObjectManager().m_currentObject) object->CalcRange();
    GetTarget().ShowMoved(reason);
}

int XShapeTool::AskProperties(XvcObj& object) const
{
    XObjectDialogs* const dialogs = XObjectDialogs::Get();
    if (!m_dialog || !dialogs || GetTarget().GetMessageManager().IsNoChangeProperty()) return 1;
    auto* const line = dynamic_cast<XvcLine*>(&object);
    tagXObjectDialogCall call;
    call.dialog = *m_dialog;
    call.owner = GetTarget().GetOwnerWindow();
    call.object = &object;
    call.isNew = 1;
    if (line) call.endShapeID = line->GetEndShapeID();
    const int result = dialogs->DoModal(call);
    if (result == 1 && line) line->SetEndShapeID(call.endShapeID);
    return result;
}

void XShapeTool::Finish()
{
    ShowCurrent(GetFinishReason());
    const auto result = Hold([this](XvcObj& object) { return AskProperties(object); });
    if (!result) return;
    if (*result == 1)
        Insert();
    else
        Refuse(Keep::Nothing);
}

void XShapeTool::Insert()
{
    XToolTarget& target = GetTarget();
    XvcLayer* const layer = target.GetEditLayer();
    std::unique_ptr<XvcObj> built = target.GetObjectManager().TakeCurrent();
    if (!built || !layer) return;
    XvcObj* const object = built.release();
    object->CalcRange();
    layer->AddTail(object);
    layer->CalcRange();
    const tagXCreatedReport created = {object,
                                       target.GetCommands().PushCommandSetInsert(layer, object)};
    target.GetMessageManager().ChangeToPostMode();
    target.GetSelection().Clear();
    target.GetSelection().GetList()->AddTail(object);
    target.ShowMoved(GetFinishReason());

    const XViewReport ownReport = m_ownReport;
    const XViewReason reason = GetFinishReason();
    const auto life = target.GetLife();
    target.Report(XViewReport::ToolFinished, &created);
    if (!life.expired()) target.Report(ownReport, IsInLayer(object) ? object : nullptr);
    // what the host changed in them is to be seen
    if (!life.expired()) target.ShowMoved(reason);
}

// A host may have undone what it was told of.
bool XShapeTool::IsInLayer(const XvcObj* object) const
{
    const XvcLayer* const layer = GetTarget().GetEditLayer();
    if (layer && !layer->IsEmpty() && layer->GetTail() == object) return true;
    for (XObList* bases : {GetTarget().GetInnBaseList(), GetTarget().GetExtBaseList()})
        if (XCommandManager::GetParentList(bases, object)) return true;
    return layer && XCommandManager::GetIndexOfList(layer, object) >= 0;
}

void XShapeTool::Refuse(Keep keep)
{
    XToolTarget& target = GetTarget();
    target.GetObjectManager().DestroyCurrent();
    target.GetToolState().pointer = {};
    if (keep != Keep::SelectionAndMode) target.GetMessageManager().ChangeToPostMode();
    if (keep == Keep::Nothing) target.GetSelection().Clear();
    target.ShowMoved(GetFinishReason());

    const tagXCreatedReport created = {nullptr, nullptr};
    const XViewReport ownReport = m_ownReport;
    const XViewReason reason = GetFinishReason();
    const auto life = target.GetLife();
    target.Report(XViewReport::ToolFinished, &created);
    if (!life.expired()) target.Report(ownReport);
    if (!life.expired()) target.ShowMoved(reason);
}

void XShapeTool::Drop()
{
    GetTarget().GetObjectManager().DestroyCurrent();
    GetTarget().GetToolState().pointer = {};
    GetTarget().ShowAll();
}

void XShapeTool::RightDoubleClick(const tagXToolEvent&)
{
    HideBand();
    if (!GetTarget().GetObjectManager().m_currentObject) return;
    GetTarget().GetMessageManager().ChangeToPostMode();
    Drop();
}
