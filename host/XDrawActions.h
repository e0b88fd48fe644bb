#pragma once

#include "host/XVectorStack.h"
#include "view/XGVMessageManager.h"

#include <QString>

#include <functional>
#include <memory>

class XHostView;
class XLayerTree;
class XMainActions;
class XObjectPicker;
class XvcLayer;
class XvcObj;
struct tagXEscape;

/// The tools of the Draw menu: which one is at work, what comes after it, and the layer that new
/// objects go to.
///
/// The view looks (mode -1: a click picks, nothing is changed), selects (mode 0) or draws. A tool
/// gives way to selecting once its object is done, or stays while Keep Tool is on. Escape leads back:
/// from a tool to selecting, from there, with nothing selected, to looking.
/// What is being drawn vertex by vertex ends with Enter; Backspace and undo take its last vertex away.
/// Another tool ends it too, or says that there was too little of it.
/// New objects go to the current layer; when that is no vector layer, is hidden or locked, to the
/// last drawing made here, and where there is none to a new one, which is listed with its first
/// object. All parts outlive it.
class XDrawActions
{
public:
    XDrawActions(XHostView& view, XLayerTree& tree, XObjectPicker& picker, XMainActions& actions);
    ~XDrawActions();

    void SetTool(short mode); ///< -1, 0, or a mode of the Draw menu
    short GetTool() const;
    /// Escape went down in the view. @return false when it was for nobody here
    bool OnEscape(const tagXEscape& before);
    void Follow();          ///< the view may have changed the tool by itself
    bool IsDrawingObject(); ///< something is seen that is not finished
    void StepBack();        ///< takes back the last vertex, or all when it was the first
    /// Finishes what is being drawn, or drops it and says so: before something else begins.
    void EndObject();
    /// Called after each change of the tool.
    void SetToolChanged(std::function<void()> changed) { m_toolChanged = std::move(changed); }
    /// Receives what is worth a line in the status bar.
    void SetNotice(std::function<void(const QString&)> notice) { m_notice = std::move(notice); }
    QString GetHint() const; ///< empty in looking mode

    XvcLayer* FindEditLayer() const; ///< of those listed; null for none
    void PrepareEditLayer();         ///< before something is added
    /// Objects were added to the view's edit layer: lists it if it was not.
    void Adopt();
    /// A drawing is being listed: where the view looks stays as it is.
    bool IsAdopting() const { return m_isAdopting; }

private:
    bool FinishObject();
    void DropObject();
    void TellLayer();
    void Tell(const QString& text);
    bool IsUsable(const tagXVectorFile& file, const XvcLayer& layer) const;

    XHostView& m_view;
    XLayerTree& m_tree;
    XVectorStack& m_vectors;
    XObjectPicker& m_picker;
    XMainActions& m_actions;
    std::unique_ptr<XvcBase> m_pending; // the drawing that the first object will list
    XvcLayer* m_pendingLayer = nullptr;
    const XvcLayer* m_drawing = nullptr; // the last one listed; compared only
    bool m_isAdopting = false;
    bool m_isTold = false;                           // something, since the last choice of a tool
    short m_followed = XGVMessageManager::kModeNone; // the tool last told of
    std::function<void()> m_toolChanged;
    std::function<void(const QString&)> m_notice;
};
