#pragma once

#include "foundation/platform/XWindowMessages.h"
#include "host/XViewHistory.h"

#include <QByteArray>
#include <QSize>

class QMainWindow;
class XDMComposite;
class XHostView;
class XLayerTree;
enum class LayerChange;
struct tagXTreeNode;
class XMainActions;
class XReadOut;
class XSessionSettings;

/// The commands of the View menu and the history of the view. All parts outlive it.
class XViewActions
{
public:
    XViewActions(QMainWindow& window, XHWND handle, XHostView& view, XLayerTree& layers,
                 XMainActions& actions, XReadOut& readOut, XSessionSettings& settings);

    void OnPainted();       ///< the view painted: notes where it looks now
    void OnZoomCommand();   ///< the next painting follows a command, which is a step of its own
    void OnToolEnded();     ///< the zoom rectangle is done, or was cancelled
    void Forget();          ///< all layers went: so does the history
    bool LeaveFullScreen(); ///< false when the window was not in full screen

    /// Where panels and toolbar stand, in full screen those of the window that comes back after it.
    QByteArray GetLayout() const;

    void FitLayer(const tagXTreeNode& node); ///< shows the whole of it
    void EnableActions();

private:
    void Connect();
    void GoTo(const tagXViewState& state);
    void ChooseBackground();
    void SetFullScreen(bool isOn);
    void ShowFurniture(bool isOn);
    void SetProgressive(bool isOn);
    void OpenColorTable();
    void FollowColorTable(LayerChange change);
    XDMComposite* FindGray() const; // the one that the colour table opens on
    tagXViewState GetState() const;

    QMainWindow& m_window;
    XHWND m_handle;
    XHostView& m_view;
    XLayerTree& m_layers;
    XMainActions& m_actions;
    XReadOut& m_readOut;
    XSessionSettings& m_settings;
    XViewHistory m_history;
    bool m_isJump = true;
    QSize m_paintedSize;
    bool m_wasMaximized = false;
    QByteArray m_layout;               // before full screen
    XDMComposite* m_colored = nullptr; // by the colour table that was opened last
};
