#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcTextBox.h"
#include "view/XLayerWalk.h"
#include "view/XObjectDialogs.h"
#include "view/XSelectionMarks.h"
#include "view/XTQSpaceView.h"
#include "view/XTextBoxEditor.h"
#include "view/XViewKeys.h"
#include "view/tools/XToolHit.h"

#include <QTimer>

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace {

constexpr short kModeSelect = 0;

// The first that is seen and may be changed, else the first; null when all go.
XvcLayer* FindStayingLayer(std::initializer_list<XObList*> bases,
                           const std::unordered_set<const XvcLayer*>& going)
{
    XvcLayer* found = nullptr;
    for (XObList* list : bases) {
        for (XvcLayer* layer : XfnListLayers(*list)) {
            if (going.contains(layer)) continue;
            const XvcBase* const base = layer->GetParentBase();
            if (!layer->IsHidden() && !layer->IsLocked() && !(base && base->IsHidden()))
                return layer;
            if (!found) found = layer;
        }
    }
    return found;
}

// Objects have gone, and a dialog may be open that edits one of them.
void CheckObjectDialogs()
{
    if (XObjectDialogs* const dialogs = XObjectDialogs::Get()) dialogs->CheckObjects();
}

} // namespace

// Tools, keys of editing, and the edits of the selection.

void XTQSpaceView::HandleMouseNoneMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    m_tools.Handle(XGVMessageManager::kModeNone, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseSelectMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    m_tools.Handle(kModeSelect, message, wParam, lParam);
}

void XTQSpaceView::HandleMousePointMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    m_tools.Handle(101, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseLineMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    m_tools.Handle(102, message, wParam, lParam);
}

void XTQSpaceView::HandleMousePolylineMessage(XHWND, unsigned message, XWPARAM wParam,
                                              XLPARAM lParam)
{
    m_tools.Handle(103, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseCurveMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    m_tools.Handle(104, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseRectangleMessage(XHWND, unsigned message, XWPARAM wParam,
                                               XLPARAM lParam)
{
    m_tools.Handle(105, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseEllipseMessage(XHWND, unsigned message, XWPARAM wParam,
                                             XLPARAM lParam)
{
    m_tools.Handle(106, message, wParam, lParam);
}

void XTQSpaceView::HandleMousePolygonMessage(XHWND, unsigned message, XWPARAM wParam,
                                             XLPARAM lParam)
{
    m_tools.Handle(107, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseTextMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    m_tools.Handle(108, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseBitmapMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    m_tools.Handle(109, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseTextBoxMessage(XHWND, unsigned message, XWPARAM wParam,
                                             XLPARAM lParam)
{
    m_tools.Handle(113, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseBalloonMessage(XHWND, unsigned message, XWPARAM wParam,
                                             XLPARAM lParam)
{
    m_tools.Handle(kXBalloonTool, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseArrowMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    m_tools.Handle(115, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseZoomRectMessage(XHWND, unsigned message, XWPARAM wParam,
                                              XLPARAM lParam)
{
    m_tools.Handle(XGVMessageManager::kModeZoomRect, message, wParam, lParam);
}

void XTQSpaceView::HandleMouseRotateMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    m_tools.Handle(202, message, wParam, lParam);
}

void XTQSpaceView::HandleKeyboardMessage(XHWND, unsigned, XWPARAM wParam, XLPARAM)
{
    struct tagEditKey
    {
        XWPARAM key;
        bool needsCtrl;
        void (XTQSpaceView::*edit)();
    };
    static constexpr tagEditKey kEditKeys[] = {
        {'C', true, &XTQSpaceView::Copy}, {'V', true, &XTQSpaceView::Paste},
        {'X', true, &XTQSpaceView::Cut},  {kKeyDelete, false, &XTQSpaceView::Delete},
        {'Z', true, &XTQSpaceView::Undo}, {'Y', true, &XTQSpaceView::Redo},
    };
    const XHWND window = GetHWND();
    for (const tagEditKey& row : kEditKeys) {
        if (wParam != row.key || (row.needsCtrl && !m_input.IsCtrlDown())) continue;
        (this->*row.edit)();
        if (!XfnIsWindow(window)) return;
    }
    // a message about Escape tells that it is down, a host's own too
    if (!m_input.IsEscapeDown() && wParam != kKeyEscape) return;
    const XvcTextBox* const text = GetOnlyTextBox();
    const bool isTyping = text && text->GetEditMode();
    EndTextEdits();
    if (isTyping) {
        InvalidateControl(1);
    } else {
        DropCurrentObject();
    }
}

void XTQSpaceView::DropCurrentObject()
{
    m_tools.Cancel();
    m_objects.DestroyCurrent();
    m_tool.pointer = {};
    m_messages.ChangeToPostMode();
    InvalidateControl(1);
    XfnSendMessage(GetHWND(), kMsgSetCursor, 0, 0);
    m_reports.Send(XViewReport::ToolCancelled);
}

XvcTextBox* XTQSpaceView::GetOnlyTextBox() const
{
    const XObList& list = *m_selection.GetList();
    return list.GetCount() == 1 ? dynamic_cast<XvcTextBox*>(list.GetHead()) : nullptr;
}

// What is typed in this view, and in selected boxes wherever. Answers non-zero when there was any.
int XTQSpaceView::EndTextEdits()
{
    std::vector<XvcTextBox*> boxes = XfnListEditedBoxes(*this);
    for (__POSITION* pos = m_selection.GetList()->GetHeadPosition(); pos;)
        if (auto* text = dynamic_cast<XvcTextBox*>(m_selection.GetList()->GetNext(pos)))
            boxes.push_back(text);
    int ended = 0;
    for (XvcTextBox* box : boxes) {
        ended |= box->GetEditMode();
        box->EndEditMode();
    }
    // recorded while it is typed, a box has no text
    if (ended) m_overlay.Raise({XViewBuffer::MainVertex, XViewBuffer::MainBack});
    return ended;
}

int XTQSpaceView::HasTyped() const
{
    const XvcTextBox* const box = GetOnlyTextBox();
    return box && m_typing.HasTyped(*box);
}

// Tools end an editing in the middle of what they do, where no host may be told anything.
void XTQSpaceView::OnTypingEnded(XvcTextBox& box)
{
    if (!m_typing.End(box) || !std::exchange(m_isTypingTold, false)) return;
    QTimer::singleShot(0, this, [this] {
        m_isTypingTold = true;
        m_reports.Send(XViewReport::AfterModify);
    });
}

void XTQSpaceView::EndTypingStep()
{
    if (m_typing.IsOn()) EndTextEdits();
}

void XTQSpaceView::PlaceTextEditors()
{
    for (XvcTextBox* box : XfnListEditedBoxes(*this))
        XfnPlaceTextEditor(*box, m_overlay.GetMainBack());
}

// A press that reaches the view is beside what is typed. The selection tool sees to a box that is
// selected; others would stay open for ever.
void XTQSpaceView::EndTypingBeside()
{
    const XvcTextBox* const text = GetOnlyTextBox();
    if (m_messages.GetMode() == kModeSelect && text && text->GetEditMode()) return;
    if (EndTextEdits()) InvalidateControl(1);
}

// Runs a command that takes objects away on those of the selection that it can bring back.
void XTQSpaceView::EditSelection(void (XCommandManager::*edit)(XObList*))
{
    XObList going, staying;
    for (__POSITION* pos = m_selection.GetList()->GetHeadPosition(); pos;) {
        XObject* const element = m_selection.GetList()->GetNext(pos);
        const auto* object = dynamic_cast<const XvcObj*>(element);
        const bool canReturn = object && object->GetParentLayer() && m_commands.CanClone(object);
        (canReturn ? going : staying).AddTail(element);
    }
    m_selection.Clear();
    (m_commands.*edit)(&going);
    for (__POSITION* pos = staying.GetHeadPosition(); pos;)
        m_selection.GetList()->AddTail(staying.GetNext(pos));
    CheckObjectDialogs();
}

void XTQSpaceView::Delete()
{
    EndTypingStep();
    if (m_selection.IsEmpty()) return;
    m_tools.Cancel();
    const XHWND window = GetHWND();
    m_reports.Send(XViewReport::BeforeDelete, m_selection.GetList());
    if (!XfnIsWindow(window)) return;
    EditSelection(&XCommandManager::Delete);
    InvalidateControl(1);
    m_reports.Send(XViewReport::AfterDelete);
}

void XTQSpaceView::Copy()
{
    m_commands.ClearClipboard();
    if (m_selection.IsEmpty()) return;
    const XHWND window = GetHWND();
    m_reports.Send(XViewReport::BeforeCopy, m_selection.GetList());
    if (!XfnIsWindow(window)) return;
    XObList copied;
    for (__POSITION* pos = m_selection.GetList()->GetHeadPosition(); pos;) {
        XObject* const element = m_selection.GetList()->GetNext(pos);
        if (m_commands.CanClone(dynamic_cast<const XvcObj*>(element))) copied.AddTail(element);
    }
    m_commands.Copy(&copied);
    m_reports.Send(XViewReport::AfterCopy);
}

void XTQSpaceView::Cut()
{
    EndTypingStep();
    if (m_selection.IsEmpty()) return;
    m_tools.Cancel();
    EditSelection(&XCommandManager::Cut);
    // seen at the next repaint, whoever asks for it
    m_overlay.Raise({XViewBuffer::MainVertex, XViewBuffer::TempVertex, XViewBuffer::MainBack,
                     XViewBuffer::TempBack});
}

void XTQSpaceView::Paste()
{
    constexpr double kStepPixels = 10.0;
    m_tools.Cancel();
    const XHWND window = GetHWND();
    if (m_selection.Clear()) ShowOverlay();
    if (m_commands.GetClipboard()->IsEmpty()) return;
    m_reports.Send(XViewReport::BeforePaste);
    if (!XfnIsWindow(window)) return;
    double dx = 1.0, dy = 1.0;
    m_mapping.GetWorldPerPixel(dx, dy);
    m_commands.Paste(kStepPixels * dx, kStepPixels * dy, m_selection.GetList(), m_editLayer);
    InvalidateControl(1);
    m_reports.Send(XViewReport::AfterPaste);
}

void XTQSpaceView::Undo()
{
    Replay(*m_commands.GetUndoStack(), XViewReport::BeforeUndo, XViewReport::AfterUndo,
           &XCommandManager::Undo);
}

void XTQSpaceView::Redo()
{
    Replay(*m_commands.GetRedoStack(), XViewReport::BeforeRedo, XViewReport::AfterRedo,
           &XCommandManager::Redo);
}

void XTQSpaceView::Replay(XPtrArray& stack, XViewReport before, XViewReport after,
                          void (XCommandManager::*replay)(XObList*))
{
    if (m_messages.IsNoChangeProperty()) return;
    EndTypingStep();
    for (const tagXLayerRef& list :
         XfnListMissingLayers(m_commands.GetLayers(), {&m_innerBases, &m_externalBases}))
        if (list.layer != m_editLayer || list.number != m_editLayer->GetNumber())
            m_commands.ForgetLayer(list.layer, list.number);
    if (stack.IsEmpty()) return;
    m_tools.Cancel();
    const XHWND window = GetHWND();
    const bool isUndo = before == XViewReport::BeforeUndo;
    m_reports.Send(before,
                   isUndo ? m_commands.GetUndoCommandAt(0) : m_commands.GetRedoCommandAt(0));
    if (!XfnIsWindow(window)) return;
    (m_commands.*replay)(m_selection.GetList());
    CheckObjectDialogs();
    InvalidateControl(1);
    m_reports.Send(after);
}

void XTQSpaceView::ForgetLayers(XObList& layerOrBase)
{
    m_tools.Cancel();
    const std::vector<XvcLayer*> layers = XfnListLayers(layerOrBase);
    const std::unordered_set<const XvcLayer*> going(layers.begin(), layers.end());
    for (XvcLayer* layer : layers)
        m_commands.ForgetLayer(layer);
    XObList& selection = *m_selection.GetList();
    for (__POSITION* pos = selection.GetHeadPosition(); pos;) {
        __POSITION* const at = pos;
        const auto* object = dynamic_cast<const XvcObj*>(selection.GetNext(pos));
        if (object && going.contains(object->GetParentLayer())) selection.RemoveAt(at);
    }
    if (going.contains(m_editLayer))
        m_editLayer = FindStayingLayer({&m_innerBases, &m_externalBases}, going);
    if (!m_editLayer) { // the last one goes
        auto layer = std::make_unique<XvcLayer>();
        auto base = std::make_unique<XvcBase>();
        m_editLayer = layer.get();
        base->AddTail(layer.release());
        m_innerBases.AddTail(base.release());
    }
    CheckObjectDialogs();
    InvalidateControl(1);
}

void XTQSpaceView::ObjInRect(XObList* result, const XObList* list, double minX, double minY,
                             double maxX, double maxY) const
{
    XfnObjInRect(*result, *list, minX, minY, maxX, maxY);
}

void XTQSpaceView::RotateBy(double angleDeg)
{
    m_rotationAngle += angleDeg;
    Rotate(m_rotationAngle, kXNotSet, kXNotSet);
}

void XTQSpaceView::Rotate(double, double, double)
{
    if (m_compManager) m_compManager->UpdateNeeded();
    InvalidateControl(1);
}
