#pragma once

#include "view/XViewReports.h"

#include <QPoint>
#include <QString>

#include <functional>

class XDrawActions;
class XHostView;
class XLayerTree;
class XObjectPicker;
class XvcObj;
struct tagXVectorPlace;

/// What clicks and the Tab key mean on the objects of the view.
///
/// A click prefers what lies in the current layer; a second one at the same place takes the object
/// below, and so on round about. A double click means the object that was selected before its first
/// click. A click that meets nothing but a locked layer says so, and tells of the object there. While selecting, Tab and Shift+Tab
/// walk through the objects of the layer in the order of drawing. All parts outlive it.
class XClickActions
{
public:
    XClickActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker, XDrawActions& draw);
    ~XClickActions();

    void OnReport(XViewReport code, const tagXMouseReport* mouse);
    /// Selects one object for editing: its layer becomes the current one.
    void Select(XvcObj& object);
    /// Receives what is worth a line in the status bar.
    /// Told of the object of a locked layer that a click met and of its layer, and of null when a click
    /// met nothing at all. The object is valid during the call.
    using LookedFunction = std::function<void(const XvcObj* object, tagXVectorPlace place)>;
    void SetLooked(LookedFunction looked) { m_looked = std::move(looked); }
    void SetNotice(std::function<void(const QString&)> notice) { m_notice = std::move(notice); }

private:
    void Clicked(int x, int y, bool isJoining);
    void BeforeDoubleClick(int x, int y);
    bool Walk(bool isForward);
    void ComeIntoView(const XvcObj& object);
    XvcObj* GetOnlySelected();

    XHostView& m_view;
    XLayerTree& m_tree;
    XObjectPicker& m_picker;
    XDrawActions& m_draw;
    std::function<void(const QString&)> m_notice;
    LookedFunction m_looked;
    QPoint m_pressed;
    bool m_isDrawn = false;          // the press belongs to a tool that is done
    XvcObj* m_coveredBy = nullptr;   // selected before the last click took the one below;
    const XvcObj* m_taken = nullptr; // compared only until they are found again
};
