#pragma once

#include "view/tools/XToolEvent.h"
#include "view/tools/XToolTarget.h"

#include <vector>

class XvcObj;
struct XRuntimeClass;
struct tagXObjectDialogCall;

/// What a double click does to the selection.
///
/// Several objects: the dialog of groups. One: the dialog of its class (a table; some have none),
/// and a text box or balloon is edited in place. Each is one step of undo when the dialog is
/// confirmed, reported before (41080) and after (41079). The dialogs leave an object alone unless
/// confirmed. Whatever takes an object away or changes the selection meanwhile ends it: then there
/// is no step, and nothing is read or written any more. One polyline or polygon with Ctrl: a vertex is inserted where an edge was hit, or the
/// vertex hit is removed; one step of undo, not reported.
class XAPI XSelectionEditor
{
public:
    explicit XSelectionEditor(XToolTarget& target) : m_target(target) {}
    /// The target may have gone when this returns.
    void DoubleClick(const tagXToolEvent& event);

private:
    struct tagXEdited
    {
        const XvcObj* object; // a name only, until the selection has it still
        const XRuntimeClass* objectClass;
    };

    void EditGroup();
    void EditVertex(XvcObj& object, const tagXToolEvent& event);
    void EditObject(XvcObj& object);
    int RunDialog(XvcObj& object);
    void ReportModified();
    int RunModal(tagXObjectDialogCall& call);
    std::vector<tagXEdited> GetEdited() const;
    bool IsSelection(const std::vector<tagXEdited>& edited) const;

    XToolTarget& m_target;
};
