#pragma once

#include "foundation/platform/XWindowMessages.h"
#include "host/XEditLedger.h"
#include "view/XViewReports.h"

#include <QPoint>

class QMenu;
class XCommandManager;
class XDrawActions;
class XHostView;
class XLayerTree;
class XMainActions;
class XObjectPicker;
class XVectorStack;
class XvcTextBox;

/// The commands of the Edit menu on vector objects, and their context menu: they run the view's own
/// edits, and say by name what undo and redo would do.
///
/// Objects are changed in selecting mode only: who looks at a picture cannot take something away by a
/// slip. Keeps the marks of what is edited true. All parts outlive it.
class XEditActions
{
public:
    XEditActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker, XDrawActions& draw,
                 XMainActions& actions);
    ~XEditActions();

    void OnReport(XViewReport code, XLPARAM parameter);
    void EnableActions();
    /// Text that is being typed into a box counts as a change each time it is asked for.
    void NoteTyping();
    void EndTyping(); ///< takes over what is being typed: before saving
    XEditLedger& GetLedger() { return m_ledger; }

private:
    void Connect();
    void ConnectOrder(const char* id, void (XCommandManager::*order)(XObList*), bool isFront);
    void Follow();
    void Prune();
    void Cut();
    void Paste();
    void SelectAll();
    void EditProperties();
    void OpenMenu(const QPoint& pixel);
    bool CanMove(bool isFront);
    XvcTextBox* GetTypedBox();
    void EnableStep(const char* id, const char* verb, bool isUndo);

    XHostView& m_view;
    XLayerTree& m_tree;
    XVectorStack& m_vectors;
    XObjectPicker& m_picker;
    XDrawActions& m_draw;
    XMainActions& m_actions;
    XEditLedger m_ledger;
    QMenu* m_menu = nullptr; // the view's
    QPoint m_rightPress;
    const XvcLayer* m_typed = nullptr; // of the box that is edited; compared only
};
