#pragma once

#include "foundation/platform/XWindowMessages.h"
#include "host/XEditLedger.h"
#include "view/XViewReports.h"

#include <QPoint>

#include <functional>

class QMenu;
class XCommandManager;
class XClickActions;
class XDrawActions;
class XHostView;
class XLayerTree;
class XMainActions;
class XObjectPicker;
class XVectorStack;
class XvcObj;
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
                 XClickActions& clicks, XMainActions& actions);
    ~XEditActions();

    void OnReport(XViewReport code, XLPARAM parameter);
    void EnableActions();
    /// The file that holds text which is being typed and is no step yet, -1 for none. Counts as a
    /// change of it each time it is asked for.
    int NoteTyping();
    /// Takes back a text box that was just drawn and left without a text: nobody finds it again.
    void DropEmptyBox();
    void EndTyping(); ///< takes over what is being typed: before saving and closing
    XEditLedger& GetLedger() { return m_ledger; }

    /// The first object that may be changed now, to show what it looks like; null for none.
    const XvcObj* GetFirstSelected();
    /// Changes all that are selected, in one step of undo.
    void ChangeSelected(const std::function<void(XvcObj&)>& change);
    /// Called when other objects may be selected, or changed.
    void SetFollowed(std::function<void()> followed) { m_followed = std::move(followed); }

private:
    void Connect();
    void ConnectOrder(const char* id, void (XCommandManager::*order)(XObList*), bool isFront);
    void Follow();
    void Prune();
    void Cut();
    void Paste();
    bool Nudge(int dx, int dy);
    void SelectAll();
    void EditProperties();
    void OpenMenu(const QPoint& pixel);
    bool CanMove(bool isFront);
    const XvcTextBox* GetTypedBox();
    void EnableUndo();
    void EnableStep(const char* id, const char* verb, bool isUndo);

    XHostView& m_view;
    XLayerTree& m_tree;
    XVectorStack& m_vectors;
    XObjectPicker& m_picker;
    XDrawActions& m_draw;
    XClickActions& m_clicks;
    XMainActions& m_actions;
    XEditLedger m_ledger;
    QMenu* m_menu = nullptr; // the view's
    std::function<void()> m_followed;
    QPoint m_rightPress;
};
