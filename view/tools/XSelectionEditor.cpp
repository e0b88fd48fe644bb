#include "view/tools/XSelectionEditor.h"

#include "edit/XModifyScope.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcTextBox.h"
#include "view/XGVSelectedObjs.h"
#include "view/XObjectDialogs.h"
#include "view/XToolState.h"
#include "view/XViewMapping.h"
#include "view/tools/XSelectionDrag.h"
#include "view/tools/XToolHit.h"

#include <algorithm>
#include <cstring>

namespace {

struct tagXDialogRow
{
    const char* className; // or one derived from it
    XObjectDialog dialog;
};

// the first row that fits counts
constexpr tagXDialogRow kDialogs[] = {
    {"XvcPoint", XObjectDialog::Point},         {"XvcMPoint", XObjectDialog::Object},
    {"XvcLine", XObjectDialog::Line},           {"XvcMLine", XObjectDialog::Object},
    {"XvcPolyline", XObjectDialog::Polyline},   {"XvcMPolyline", XObjectDialog::Object},
    {"XvcPolygon", XObjectDialog::Polygon},     {"XvcMPolygon", XObjectDialog::Object},
    {"XvcPolypoint", XObjectDialog::Polypoint}, {"XvcEllipse", XObjectDialog::Ellipse},
    {"XvcBitmap", XObjectDialog::Bitmap},       {"XvcText", XObjectDialog::Text},
    {"XvcMText", XObjectDialog::Object},        {"XvcBspline", XObjectDialog::Bspline},
    {"XvcSymbol", XObjectDialog::Symbol},       {"XvcArc", XObjectDialog::Arc},
    {"XvcRectangle", XObjectDialog::Rect},      {"XvcArcClosed", XObjectDialog::ArcClosed},
    {"XvcRaster", XObjectDialog::Raster},       {"XvcNorthArrow", XObjectDialog::NorthArrow},
};

bool IsNamed(const XvcObj& object, const char* className)
{
    const XRuntimeClass* row = object.GetRuntimeClass();
    while (row && std::strcmp(row->m_lpszClassName, className) != 0)
        row = row->m_pBaseClass;
    return row != nullptr;
}

template <class Vertices>
bool ChangeVertex(Vertices& object, const tagXHitFlag& hit, const tagXVector3& point)
{
    return hit.kind == tagXHitFlag::kEdge ? object.InsertAt(hit.index + 1, point)
                                          : object.RemoveAt(hit.index);
}

} // namespace

// What is selected lives. An object that has gone may have another at its address.
bool XSelectionEditor::IsSelection(const std::vector<tagXEdited>& edited) const
{
    const std::vector<XvcObj*> objects = XfnListObjects(*m_target.GetSelection().GetList());
    return std::ranges::equal(objects, edited, [](const XvcObj* object, const tagXEdited& former) {
        return object == former.object && object->GetRuntimeClass() == former.objectClass;
    });
}

std::vector<XSelectionEditor::tagXEdited> XSelectionEditor::GetEdited() const
{
    std::vector<tagXEdited> edited;
    for (XvcObj* object : XfnListObjects(*m_target.GetSelection().GetList()))
        edited.push_back({object, object->GetRuntimeClass()});
    return edited;
}

// The answer of a dialog, which may outlive the target.
int XSelectionEditor::RunModal(tagXObjectDialogCall& call)
{
    XObjectDialogs* const dialogs = XObjectDialogs::Get();
    if (!dialogs) return 0;
    const auto life = m_target.GetLife();
    call.owner = m_target.GetOwnerWindow();
    call.areThere = [this, life, edited = GetEdited()] {
        return !life.expired() && IsSelection(edited);
    };
    return dialogs->DoModal(call);
}

void XSelectionEditor::DoubleClick(const tagXToolEvent& event)
{
    const std::vector<XvcObj*> objects = XfnListObjects(*m_target.GetSelection().GetList());
    if (objects.empty()) {
        m_target.ShowAll();
    } else if (objects.size() > 1) {
        EditGroup();
    } else if (event.IsCtrl()) {
        EditVertex(*objects.front(), event);
        m_target.ShowAll(); // a progressive view records the objects at once: after the change
    } else {
        EditObject(*objects.front());
    }
}

void XSelectionEditor::EditGroup()
{
    const auto life = m_target.GetLife();
    const XObList& selection = *m_target.GetSelection().GetList();
    const std::vector<tagXEdited> edited = GetEdited();
    m_target.Report(XViewReport::BeforeModify, &selection);
    if (life.expired() || !IsSelection(edited)) return;
    XCommandManager& commands = m_target.GetCommands();
    {
        XModifyScope step(commands);
        const std::vector<XvcObj*> objects = XfnListObjects(selection);
        std::vector<XvcObj*> before;
        before.reserve(objects.size());
        for (const XvcObj* object : objects)
            before.push_back(commands.CloneObject(object));
        tagXObjectDialogCall call;
        call.dialog = XObjectDialog::Group;
        call.objects = &selection;
        const int result = RunModal(call);
        if (life.expired()) {
            for (XvcObj* clone : before)
                delete clone;
            step.Abandon();
            return;
        }
        const bool isSame = IsSelection(edited);
        if (isSame) {
            commands.RegisterModified(objects, before);
        } else { // undone meanwhile: the objects may have gone
            for (XvcObj* clone : before)
                commands.DestroyObject(clone);
        }
        m_target.ShowAll();
        if (result != 1 || !isSame) return;
        step.Commit();
    }
    ReportModified();
}

void XSelectionEditor::EditVertex(XvcObj& object, const tagXToolEvent& event)
{
    auto* const line = dynamic_cast<XvcPolyline*>(&object);
    auto* const area = dynamic_cast<XvcPolygon*>(&object);
    if (!line && !area) return;
    const tagXVector3 point{event.worldX, event.worldY, 0.0};
    tagXHitFlag hit;
    if (!object.HitTest(point, XfnHitTolerance(m_target.GetViewMapping()), hit)) return;
    if (hit.kind != tagXHitFlag::kEdge && hit.kind != tagXHitFlag::kVertex) return;
    XCommandManager& commands = m_target.GetCommands();
    XModifyScope step(commands);
    commands.RegisterObjBeforeModify(&object);
    if (line)
        ChangeVertex(*line, hit, point);
    else
        ChangeVertex(*area, hit, point);
    object.CalcRange();
    commands.RegisterObjAfterModify(&object);
    step.Commit();
}

int XSelectionEditor::RunDialog(XvcObj& object)
{
    if (auto* const text = dynamic_cast<XvcTextBox*>(&object)) {
        double worldX = 1.0, worldY = 1.0;
        m_target.GetViewMapping().GetWorldPerPixel(worldX, worldY);
        text->SetParent(m_target.GetOwnerWindow());
        text->BeginEditMode(worldX);
        return 0;
    }
    const auto* row = std::ranges::find_if(
        kDialogs, [&object](const char* name) { return IsNamed(object, name); },
        &tagXDialogRow::className);
    if (row == std::end(kDialogs)) return 0;
    const auto life = m_target.GetLife();
    const std::vector<tagXEdited> edited = GetEdited();
    tagXObjectDialogCall call;
    call.dialog = row->dialog;
    call.object = &object;
    if (const auto* line = dynamic_cast<const XvcLine*>(&object))
        call.endShapeID = line->GetEndShapeID();
    const int result = RunModal(call);
    if (result != 1 || life.expired() || !IsSelection(edited)) return result;
    if (auto* line = dynamic_cast<XvcLine*>(&object)) line->SetEndShapeID(call.endShapeID);
    object.CalcRange();
    return result;
}

void XSelectionEditor::EditObject(XvcObj& object)
{
    const auto life = m_target.GetLife();
    const std::vector<tagXEdited> edited = GetEdited();
    m_target.Report(XViewReport::BeforeModify, m_target.GetSelection().GetList());
    if (life.expired() || !IsSelection(edited)) return;
    XCommandManager& commands = m_target.GetCommands();
    {
        XModifyScope step(commands);
        commands.RegisterObjBeforeModify(&object);
        const int result = RunDialog(object);
        if (life.expired()) {
            step.Abandon();
            return;
        }
        m_target.ShowAll();
        if (!IsSelection(edited)) return; // undone meanwhile: the object may have gone
        commands.RegisterObjAfterModify(&object);
        if (result != 1) return;
        step.Commit();
    }
    ReportModified();
}

// And shows what the host made of it.
void XSelectionEditor::ReportModified()
{
    const auto life = m_target.GetLife();
    m_target.Report(XViewReport::AfterModify);
    if (!life.expired()) m_target.ShowAll();
}
