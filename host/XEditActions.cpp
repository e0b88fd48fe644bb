#include "host/XEditActions.h"

#include "edit/XCommandManager.h"
#include "edit/XCommandSet.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcTextBox.h"
#include "host/XClickActions.h"
#include "host/XDrawActions.h"
#include "host/XEditNames.h"
#include "host/XHostView.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XObjectPicker.h"
#include "host/XSelectionChange.h"
#include "view/XObjectDialogs.h"
#include "view/XViewKeys.h"

#include <QAction>
#include <QMenu>
#include <QTimer>

#include <unordered_set>
#include <vector>

namespace {

constexpr short kSelect = 0;
constexpr int kClickSlackPx = 3;
constexpr const char* kSelectFirst = "Choose Draw > Select (V), then an object";

bool IsEdit(XViewReport code)
{
    return code >= XViewReport::AfterCopy && code <= XViewReport::SelectionFinished &&
           code != XViewReport::MouseMove && code != XViewReport::MouseWheel &&
           code != XViewReport::PaintedRasters && code != XViewReport::PaintedVectors;
}

} // namespace

XEditActions::XEditActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker,
                           XDrawActions& draw, XClickActions& clicks, XMainActions& actions)
    : m_view(view),
      m_tree(tree),
      m_vectors(tree.GetVectors()),
      m_picker(picker),
      m_draw(draw),
      m_clicks(clicks),
      m_actions(actions),
      m_ledger(*view.GetCommandManager(), tree.GetVectors())
{
    Connect();
    m_view.SetTypingSteps(1);
    m_view.SetNudge([this](int dx, int dy) { return Nudge(dx, dy); });
    m_menu = new QMenu(&m_view);
    m_menu->setObjectName("view.menu");
    for (const char* id :
         {"edit.cut", "edit.copy", "edit.paste", "edit.duplicate", "edit.delete", "-",
          "edit.properties", "-", "edit.front", "edit.forward", "edit.backward", "edit.back", "-",
          "edit.copyAttributes", "view.fitObject", "-", "edit.selectAll", "edit.deselect",
          "draw.select"}) {
        if (*id == '-')
            m_menu->addSeparator();
        else
            m_menu->addAction(m_actions.Get(id));
    }
    m_vectors.SetLeaving([this](XObList& leaving) {
        m_view.ForgetLayers(leaving);
        m_ledger.Forget(leaving);
    });
    m_tree.AddObserver([this](LayerChange change) {
        if (change == LayerChange::Closing) return;
        Prune();
        EnableActions();
    });
    m_picker.AddObserver([this] { EnableActions(); });
    EnableActions();
}

XEditActions::~XEditActions()
{
    m_vectors.SetLeaving(nullptr);
    m_view.SetNudge(nullptr);
}

void XEditActions::Connect()
{
    m_actions.Connect("edit.undo", [this] {
        if (m_draw.IsDrawingObject())
            m_draw.StepBack(); // of what is at hand, not of what was done before
        else
            m_view.Undo();
        EnableActions();
    });
    m_actions.Connect("edit.redo", [this] { m_view.Redo(); });
    m_actions.Connect("edit.cut", [this] { Cut(); });
    m_actions.Connect("edit.copy", [this] {
        m_view.Copy();
        // other programs get what is told of a single object
        if (m_picker.GetObject()) m_actions.Get("edit.copyAttributes")->trigger();
    });
    m_actions.Connect("edit.paste", [this] { Paste(); });
    m_actions.Connect("edit.duplicate", [this] {
        m_view.Copy();
        Paste();
    });
    m_actions.Connect("edit.delete", [this] { m_view.Delete(); });
    m_actions.Connect("edit.selectAll", [this] { SelectAll(); });
    m_actions.Connect("edit.deselect", [this] {
        m_picker.Clear();
        m_view.ShowSelected(nullptr);
        EnableActions();
    });
    m_actions.Connect("edit.properties", [this] { EditProperties(); });
    ConnectOrder("edit.front", &XCommandManager::MoveToFrontmost, true);
    ConnectOrder("edit.forward", &XCommandManager::MoveToFront, true);
    ConnectOrder("edit.backward", &XCommandManager::MoveToRear, false);
    ConnectOrder("edit.back", &XCommandManager::MoveToRearmost, false);
}

void XEditActions::ConnectOrder(const char* id, void (XCommandManager::*order)(XObList*),
                                bool isFront)
{
    m_actions.Connect(id, [this, order, isFront] {
        if (!CanMove(isFront)) return;
        (m_view.GetCommandManager()->*order)(m_view.GetSelectedObj());
        m_view.InvalidateControl(1);
        Follow();
    });
}

void XEditActions::Cut()
{
    m_view.GetCommandManager()->ClearClipboard(); // the view's own cut adds to it
    m_picker.Drop();
    m_view.Cut();
    m_view.InvalidateControl(1);
    Follow();
}

void XEditActions::Paste()
{
    if (m_draw.GetTool() != kSelect) m_draw.SetTool(kSelect);
    m_draw.PrepareEditLayer();
    m_view.Paste();
}

void XEditActions::SelectAll()
{
    const XvcLayer* layer = m_draw.FindEditLayer();
    if (!layer) return;
    if (m_draw.GetTool() != kSelect) m_draw.SetTool(kSelect);
    m_draw.PrepareEditLayer();
    XObList& selection = *m_view.GetSelectedObj();
    selection.RemoveAll();
    for (__POSITION* pos = layer->GetHeadPosition(); pos;) {
        auto* object = dynamic_cast<XvcObj*>(layer->GetNext(pos));
        if (object && !object->IsHidden()) selection.AddTail(object);
    }
    m_view.ShowSelection();
    Follow();
}

// What a double click on the selection does, save that of a text box it opens not the text but the
// look.
void XEditActions::EditProperties()
{
    if (dynamic_cast<const XvcTextBox*>(m_picker.GetObject())) {
        XfnEditLook(m_view);
        return Follow();
    }
    m_view.HandleMouseSelectMessage(m_view.GetHWND(), kMsgLButtonDblClk, 0, XfnPackPoint(0, 0));
    Follow();
}

const XvcObj* XEditActions::GetFirstSelected()
{
    const XObList& selection = *m_view.GetSelectedObj();
    const bool canChange = m_draw.GetTool() == kSelect && !selection.IsEmpty();
    return canChange ? dynamic_cast<const XvcObj*>(selection.GetHead()) : nullptr;
}

void XEditActions::ChangeSelected(const std::function<void(XvcObj&)>& change)
{
    if (GetFirstSelected() && XfnChangeSelection(m_view, change)) Follow();
}

bool XEditActions::Nudge(int dx, int dy)
{
    if (!GetFirstSelected()) return false;
    double x = 1, y = 1;
    m_view.GetBackBuffer()->GetWorldPerPixel(x, y);
    ChangeSelected(
        [moveX = dx * x, moveY = -dy * y](XvcObj& object) { object.MoveObject(moveX, moveY, 0); });
    return true;
}

const XvcTextBox* XEditActions::GetTypedBox()
{
    XObList& selection = *m_view.GetSelectedObj();
    return m_view.HasTyped() ? dynamic_cast<const XvcTextBox*>(selection.GetHead()) : nullptr;
}

int XEditActions::NoteTyping()
{
    const XvcTextBox* const text = GetTypedBox();
    const int file = text ? m_vectors.Find(*text).file : -1;
    if (file >= 0) m_vectors.NoteChange(file);
    return file;
}

void XEditActions::DropEmptyBox()
{
    XPtrArray& steps = *m_view.GetUnDoStack();
    if (steps.IsEmpty()) return;
    const auto& step = *static_cast<const tagCommandSet*>(steps[0]);
    if (step.type != tagCommandSet::kInsert || step.lists.GetSize() != 1) return;
    const auto& layer = *static_cast<const XvcLayer*>(step.lists[0]);
    const auto* box = layer.IsEmpty() ? nullptr : dynamic_cast<const XvcTextBox*>(layer.GetTail());
    if (!box || box->GetEditMode() || !box->GetText().IsEmpty()) return;
    std::vector<XObject*> selected; // undoing selects what comes back, which is nothing here
    for (__POSITION* pos = m_view.GetSelectedObj()->GetHeadPosition(); pos;) {
        XObject* const object = m_view.GetSelectedObj()->GetNext(pos);
        if (object != box) selected.push_back(object);
    }
    m_view.Undo();
    m_view.GetCommandManager()->ClearRedoStack();
    for (XObject* object : selected)
        m_view.GetSelectedObj()->AddTail(object);
    m_view.ShowSelection();
    Follow();
}

void XEditActions::EndTyping()
{
    if (!m_view.EndTyping()) return;
    m_view.InvalidateControl(1);
    Follow();
}

void XEditActions::Follow()
{
    m_draw.Adopt();
    m_ledger.Follow();
    if (m_draw.GetTool() != XGVMessageManager::kModeNone) m_picker.FollowView();
    EnableActions();
}

void XEditActions::OnReport(XViewReport code, XLPARAM parameter)
{
    const auto* mouse = reinterpret_cast<const tagXMouseReport*>(parameter);
    switch (code) {
    case XViewReport::BeforeUndo:
    case XViewReport::BeforeRedo:
    case XViewReport::BeforeDelete:
        m_picker.Drop(); // the objects go, or come back as others
        return;
    case XViewReport::BeforeCopy:
    case XViewReport::BeforePaste:
    case XViewReport::BeforeModify:
    case XViewReport::ObjectHit:
        return;
    case XViewReport::RButtonDown:
        m_rightPress = QPoint(mouse->x, mouse->y);
        return;
    case XViewReport::RButtonUp:
        if ((QPoint(mouse->x, mouse->y) - m_rightPress).manhattanLength() <= kClickSlackPx)
            OpenMenu(m_rightPress);
        return;
    case XViewReport::SelectionFinished: {
        Prune(); // a band takes what lies in locked layers too
        const auto* first = dynamic_cast<const XvcObj*>(
            m_view.GetSelectedObj()->GetCount() > 0 ? m_view.GetSelectedObj()->GetHead() : nullptr);
        const tagXTreeNode node = first ? m_tree.FindNode(*first) : tagXTreeNode();
        if (node.IsVector()) m_tree.SetCurrent(node); // what is edited is the current layer
        break;
    }
    default:
        break;
    }
    if (code == XViewReport::LButtonUp) DropEmptyBox();
    if (IsEdit(code))
        Follow();
    else if (code == XViewReport::LButtonDown || code == XViewReport::LButtonUp ||
             code == XViewReport::KeyDown)
        EnableUndo(); // an object may have been begun or dropped
    if (code == XViewReport::AfterUndo || code == XViewReport::AfterRedo) m_picker.FollowView();
}

// Nothing stays selected that is hidden, locked, or in no listed layer.
void XEditActions::Prune()
{
    XObList& selection = *m_view.GetSelectedObj();
    if (selection.GetCount() == 0) return;
    std::unordered_set<const XvcLayer*> usable;
    for (int i = 0; i < m_vectors.GetCount(); ++i)
        for (const tagXVectorLayer& layer : m_vectors.GetAt(i)->layers)
            if (!m_vectors.GetAt(i)->base->IsHidden() && !layer.layer->IsHidden() &&
                !layer.layer->IsLocked())
                usable.insert(layer.layer);
    bool isChanged = false;
    for (__POSITION* pos = selection.GetHeadPosition(); pos;) {
        __POSITION* const at = pos;
        const auto* object = dynamic_cast<const XvcObj*>(selection.GetNext(pos));
        if (object && usable.contains(object->GetParentLayer())) continue;
        if (object && object->GetParentLayer() == m_view.GetEditLayer() &&
            !object->GetParentLayer()->IsLocked() && !object->GetParentLayer()->IsHidden())
            continue; // a drawing that is about to be listed
        selection.RemoveAt(at);
        isChanged = true;
    }
    if (!isChanged) return;
    m_view.ShowSelection();
    m_picker.FollowView();
}

// Whether no selected object stands at the end of its layer already: such a step would move some of
// them and could not be undone.
bool XEditActions::CanMove(bool isFront)
{
    XObList& selection = *m_view.GetSelectedObj();
    for (__POSITION* pos = selection.GetHeadPosition(); pos;) {
        const auto* object = dynamic_cast<const XvcObj*>(selection.GetNext(pos));
        const XvcLayer* layer = object ? object->GetParentLayer() : nullptr;
        if (!layer || layer->GetCount() == 0) return false;
        if ((isFront ? layer->GetTail() : layer->GetHead()) == object) return false;
    }
    return selection.GetCount() > 0;
}

void XEditActions::OpenMenu(const QPoint& pixel)
{
    const short mode = m_draw.GetTool();
    if (mode != kSelect && mode != XGVMessageManager::kModeNone) return; // a step back of the tool
    XvcObj* object = m_picker.FindAt(pixel.x(), pixel.y());
    if (object && !m_view.GetSelectedObj()->Find(object)) {
        m_picker.Drop();
        if (mode == kSelect)
            m_clicks.Select(*object);
        else
            m_picker.Select(object);
    }
    EnableActions();
    if (!object && mode != kSelect) return;
    const QPoint at = m_view.mapToGlobal(QPointF(pixel) / m_view.devicePixelRatioF()).toPoint();
    // within a report of the view nothing may run that can take it away
    QTimer::singleShot(0, m_menu, [this, at] { m_menu->popup(at); });
}

void XEditActions::EnableStep(const char* id, const char* verb, bool isUndo)
{
    XPtrArray& stack = isUndo ? *m_view.GetUnDoStack() : *m_view.GetReDoStack();
    QAction* action = m_actions.Get(id);
    const bool isAny = !stack.IsEmpty();
    QString text(verb);
    if (isAny) text += " " + XfnStepText(*static_cast<const tagCommandSet*>(stack[0]));
    action->setText(text);
    action->setToolTip(text.remove('&'));
    m_actions.SetEnabled(id, isAny, isUndo ? "Nothing was changed" : "Nothing was undone");
}

void XEditActions::EnableUndo()
{
    EnableStep("edit.undo", "&Undo", true);
    EnableStep("edit.redo", "&Redo", false);
    if (!m_draw.IsDrawingObject()) return;
    QAction* const undo = m_actions.Get("edit.undo");
    undo->setText("&Undo Last Point");
    undo->setToolTip("Undo Last Point");
    m_actions.SetEnabled("edit.undo", true);
    m_actions.SetEnabled("edit.redo", false, "Something is being drawn");
}

void XEditActions::EnableActions()
{
    EnableUndo();
    const int count = m_view.GetSelectedObj()->GetCount();
    const bool isSelecting = m_draw.GetTool() == kSelect;
    const bool canChange = isSelecting && count > 0;
    m_actions.SetEnabled("edit.copy", count > 0, "No object is selected; click on one");
    for (const char* id : {"edit.cut", "edit.duplicate", "edit.delete"})
        m_actions.SetEnabled(id, canChange, kSelectFirst);
    m_actions.SetEnabled("edit.properties", canChange && XObjectDialogs::Get(), kSelectFirst);
    m_actions.SetEnabled("edit.paste", !m_view.GetCommandManager()->GetClipboard()->IsEmpty(),
                         "No object was copied or cut");
    const XvcLayer* layer = m_draw.FindEditLayer();
    m_actions.SetEnabled("edit.selectAll", layer && layer->GetCount() > 0,
                         "The current layer is no vector layer that can be changed");
    m_actions.SetEnabled("edit.deselect", count > 0, "No object is selected");
    for (const bool isFront : {true, false})
        for (const char* id :
             {isFront ? "edit.front" : "edit.back", isFront ? "edit.forward" : "edit.backward"})
            m_actions.SetEnabled(id, canChange && CanMove(isFront),
                                 !canChange ? kSelectFirst
                                 : isFront  ? "One of the objects is in front already"
                                            : "One of the objects is at the back already");
    if (m_followed) m_followed();
}
