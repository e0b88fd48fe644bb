#include "host/XEditActions.h"

#include "edit/XCommandManager.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcTextBox.h"
#include "host/XDrawActions.h"
#include "host/XEditNames.h"
#include "host/XHostView.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XObjectPicker.h"
#include "view/XObjectDialogs.h"
#include "view/XViewKeys.h"

#include <QAction>
#include <QMenu>
#include <QTimer>

#include <unordered_set>

namespace {

constexpr short kSelect = 0;
constexpr int kClickSlackPx = 3;
constexpr const char* kSelectFirst = "Choose Draw > Select (V), then an object";

// A box that is edited in place is no step of undo: it is noted when the editing begins and ends.
bool IsEdit(XViewReport code)
{
    return code >= XViewReport::AfterCopy && code <= XViewReport::SelectionFinished &&
           code != XViewReport::MouseMove && code != XViewReport::MouseWheel &&
           code != XViewReport::PaintedRasters && code != XViewReport::PaintedVectors;
}

} // namespace

XEditActions::XEditActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker,
                           XDrawActions& draw, XMainActions& actions)
    : m_view(view),
      m_tree(tree),
      m_vectors(tree.GetVectors()),
      m_picker(picker),
      m_draw(draw),
      m_actions(actions),
      m_ledger(*view.GetCommandManager(), tree.GetVectors())
{
    Connect();
    m_menu = new QMenu(&m_view);
    m_menu->setObjectName("view.menu");
    for (const char* id :
         {"edit.cut", "edit.copy", "edit.paste", "edit.delete", "-", "edit.properties", "-",
          "edit.front", "edit.forward", "edit.backward", "edit.back", "-", "edit.copyAttributes",
          "view.fitObject", "-", "edit.selectAll", "edit.deselect", "draw.select"}) {
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
}

void XEditActions::Connect()
{
    m_actions.Connect("edit.undo", [this] { m_view.Undo(); });
    m_actions.Connect("edit.redo", [this] { m_view.Redo(); });
    m_actions.Connect("edit.cut", [this] { Cut(); });
    m_actions.Connect("edit.copy", [this] {
        m_view.Copy();
        // other programs get what is told of a single object
        if (m_picker.GetObject()) m_actions.Get("edit.copyAttributes")->trigger();
    });
    m_actions.Connect("edit.paste", [this] { Paste(); });
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

// What a double click on the selection does.
void XEditActions::EditProperties()
{
    m_view.HandleMouseSelectMessage(m_view.GetHWND(), kMsgLButtonDblClk, 0, XfnPackPoint(0, 0));
    Follow();
}

XvcTextBox* XEditActions::GetTypedBox()
{
    XObList& selection = *m_view.GetSelectedObj();
    auto* text =
        selection.GetCount() == 1 ? dynamic_cast<XvcTextBox*>(selection.GetHead()) : nullptr;
    return text && text->GetEditMode() ? text : nullptr;
}

void XEditActions::NoteTyping()
{
    if (const XvcTextBox* text = GetTypedBox()) m_typed = text->GetParentLayer();
    for (int i = 0; m_typed && i < m_vectors.GetCount(); ++i) {
        for (const tagXVectorLayer& layer : m_vectors.GetAt(i)->layers) {
            if (layer.layer != m_typed) continue;
            m_vectors.NoteChange(i);
            m_vectors.SetEdited({i, -1}, true);
        }
    }
    if (!GetTypedBox()) m_typed = nullptr;
}

void XEditActions::EndTyping()
{
    NoteTyping();
    if (XvcTextBox* text = GetTypedBox()) text->EndEditMode();
    m_view.InvalidateControl(1);
}

void XEditActions::Follow()
{
    m_draw.Adopt();
    m_ledger.Follow();
    const bool isTyping = GetTypedBox() != nullptr;
    if (isTyping != (m_typed != nullptr)) NoteTyping();
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
        const tagXVectorPlace place = first ? m_vectors.Find(*first) : tagXVectorPlace();
        if (place.file >= 0) { // what is edited is the current layer
            const bool isOne = m_vectors.GetAt(place.file)->layers.size() < 2;
            m_tree.SetCurrent({tagXTreeNode::Kind::Vector, place.file, isOne ? -1 : place.layer});
        }
        break;
    }
    default:
        break;
    }
    if (IsEdit(code)) Follow();
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
        m_picker.Select(object);
        if (mode == kSelect && object->GetParentLayer() != m_view.GetEditLayer()) {
            m_view.SetEditLayer(object->GetParentLayer());
            m_view.ShowSelected(object);
        }
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

void XEditActions::EnableActions()
{
    EnableStep("edit.undo", "&Undo", true);
    EnableStep("edit.redo", "&Redo", false);
    const int count = m_view.GetSelectedObj()->GetCount();
    const bool isSelecting = m_draw.GetTool() == kSelect;
    const bool canChange = isSelecting && count > 0;
    m_actions.SetEnabled("edit.copy", count > 0, "No object is selected; click on one");
    for (const char* id : {"edit.cut", "edit.delete"})
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
}
