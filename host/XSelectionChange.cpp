#include "host/XSelectionChange.h"

#include "edit/XModifyScope.h"
#include "foundation/vector/XvcObj.h"
#include "host/XHostView.h"
#include "view/XObjectDialogs.h"

#include <vector>

namespace {

std::vector<XvcObj*> ListChangeable(XHostView& view)
{
    std::vector<XvcObj*> objects;
    for (__POSITION* pos = view.GetSelectedObj()->GetHeadPosition(); pos;) {
        auto* object = dynamic_cast<XvcObj*>(view.GetSelectedObj()->GetNext(pos));
        if (object && object->GetParentLayer() && XCommandManager::CanClone(object))
            objects.push_back(object);
    }
    return objects;
}

} // namespace

bool XfnChangeSelection(XHostView& view, const std::function<void(XvcObj&)>& change)
{
    view.EndTyping();
    XCommandManager& commands = *view.GetCommandManager();
    const std::vector<XvcObj*> objects = ListChangeable(view);
    if (objects.empty()) return false;
    XModifyScope step(commands);
    std::vector<XvcObj*> before;
    before.reserve(objects.size());
    for (XvcObj* object : objects) {
        before.push_back(commands.CloneObject(object));
        change(*object);
        object->CalcRange();
    }
    commands.RegisterModified(objects, before);
    step.Commit();
    view.InvalidateControl(1);
    return true;
}

bool XfnEditLook(XHostView& view)
{
    view.EndTyping();
    XObjectDialogs* const dialogs = XObjectDialogs::Get();
    const std::vector<XvcObj*> objects = ListChangeable(view);
    if (!dialogs || objects.size() != 1) return false;
    XvcObj& object = *objects.front();
    const XHWND window = view.GetHWND();
    // what runs meanwhile may undo it, and select what came in its place; what is selected lives
    const auto isThere = [&view, &object, window, objectClass = object.GetRuntimeClass()] {
        if (!XfnIsWindow(window)) return false;
        const XObList& selection = *view.GetSelectedObj();
        return selection.GetCount() == 1 && selection.GetHead() == &object &&
               object.GetRuntimeClass() == objectClass;
    };
    XCommandManager& commands = *view.GetCommandManager();
    XModifyScope step(commands);
    commands.RegisterObjBeforeModify(&object);
    tagXObjectDialogCall call;
    call.dialog = XObjectDialog::Object;
    call.owner = window;
    call.object = &object;
    call.areThere = isThere;
    const int result = dialogs->DoModal(call);
    if (!XfnIsWindow(window)) {
        step.Abandon();
        return false;
    }
    view.InvalidateControl(1);
    if (result != 1 || !isThere()) return false;
    object.CalcRange();
    commands.RegisterObjAfterModify(&object);
    step.Commit();
    return true;
}
