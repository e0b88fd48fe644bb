#pragma once

#include "dialogs/XButtonPanelModel.h"
#include "view/XViewDialogs.h"

#include <QPointer>
#include <QWidget>

/// The small panel of buttons over the upper right corner of a view or plot.
///
/// It acts on the widget over which it is made, which must be an XPropButtonTarget. It appears with
/// the first button after SetVisible. A press with the mouse leaves the focus where it is; with Tab
/// the panel is reached, arrows go from button to button, Space or Return press, Escape goes back.
/// The right button or the menu key opens the panel's menu: all commands by name, and the presets as
/// sub-menu "Enhance".
/// Threads: user interface.
class XAPI CButtonDlg final : public XViewButtonPanel
{
public:
    CButtonDlg() = default;

    /// @return 0 when `owner` is null or no XPropButtonTarget; the panel then stays without window
    int Create(QWidget* owner, XHWND window) override;
    void Release() override;
    void Show() override { SetVisible(1); }
    void AddButton(int id) override; ///< numbers of XPropButtons.h; others are ignored
    void SetVisible(int visible) override;
    int HasWindow() const override;
    void Invalidate() override;
    void OwnerResized() override;

    QWidget* GetWindow() const; ///< of the buttons, for tests; null without one
    const XButtonPanelModel& GetModel() const { return m_model; }

private:
    class XPanel;

    ~CButtonDlg() override = default;
    void ShowModel();

    XButtonPanelModel m_model;
    QPointer<XPanel> m_panel;
    int m_isVisible = 0;
};
