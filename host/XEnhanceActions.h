#pragma once

class QMainWindow;
class QMenu;
class XEnhanceMenu;
class XLayerTree;
class XMainActions;
class XSessionSettings;
class XTQSpaceView;

/// The presets of the stretch: the sub-menu of the Image menu, the button that drops it down, and
/// the panel of buttons over the image. They act on all images that are open. All parts outlive it.
class XEnhanceActions
{
public:
    XEnhanceActions(QMainWindow& window, XTQSpaceView& view, XLayerTree& tree,
                    XMainActions& actions, XSessionSettings& settings);

    void FillMenu(QMenu* menu); ///< adds the sub-menu
    void FillToolBars();        ///< hangs the menu on the button of image.enhanceAgain

private:
    void EnhanceAgain();
    void ResetStretch();
    void EnableActions();

    QMainWindow& m_window;
    XTQSpaceView& m_view;
    XLayerTree& m_tree;
    XMainActions& m_actions;
    XEnhanceMenu* m_menu; // the window's
};
