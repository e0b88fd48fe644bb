#include "host/XEnhanceActions.h"

#include "dialogs/XEnhanceMenu.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XDefaultDisplay.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XSessionSettings.h"
#include "view/XTQSpaceView.h"

#include <QAction>
#include <QMainWindow>
#include <QToolButton>

#include <algorithm>
#include <array>

namespace {

constexpr int kFirstPreset = 40058; // the central 95 per cent of what is visible
constexpr int kClassMap = 8;

// The colours that a gray image was given are no part of its stretch.
void ResetStretchOf(XDMComposite& composite)
{
    std::array<std::array<unsigned char, 256>, 3> tables;
    for (int ch = 0; ch < 3; ++ch)
        std::copy_n(composite.GetCLT(ch), 256, tables[static_cast<std::size_t>(ch)].begin());
    XfnDefaultStretch(&composite);
    for (int ch = 0; ch < 3; ++ch)
        composite.SetCLT(tables[static_cast<std::size_t>(ch)].data(), ch);
    composite.UpdateNeeded();
}

} // namespace

XEnhanceActions::XEnhanceActions(QMainWindow& window, XTQSpaceView& view, XLayerTree& tree,
                                 XMainActions& actions, XSessionSettings& settings)
    : m_window(window),
      m_view(view),
      m_tree(tree),
      m_actions(actions),
      m_menu(new XEnhanceMenu(view, 0, &window))
{
    for (const int id : {17, 0, 22, 23, 24, 25, 26, 0, 19, 37})
        m_view.AddPropButton(id);
    m_view.ShowPropButton(settings.IsButtonPanelShown());
    m_actions.SetChecked("view.buttons", settings.IsButtonPanelShown());
    m_actions.Connect("view.buttons", [this, &settings] {
        const bool isOn = m_actions.Get("view.buttons")->isChecked();
        settings.SetButtonPanelShown(isOn);
        m_view.ShowPropButton(isOn);
    });
    m_actions.Connect("image.enhanceAgain", [this] { EnhanceAgain(); });
    m_actions.Connect("image.defaultStretch", [this] { ResetStretch(); });
    m_tree.AddObserver([this](LayerChange change) {
        if (change != LayerChange::Closing) EnableActions();
    });
    EnableActions();
}

void XEnhanceActions::FillMenu(QMenu* menu)
{
    menu->addMenu(m_menu)->setText("&Enhance");
}

void XEnhanceActions::FillToolBars()
{
    auto* button = m_window.findChild<QToolButton*>("toolbar.image.enhanceAgain");
    if (!button) return;
    button->setMenu(m_menu);
    button->setPopupMode(QToolButton::MenuButtonPopup);
}

void XEnhanceActions::EnhanceAgain()
{
    const int last = m_view.GetLastStretchPreset();
    m_view.RunStretchPreset(last ? last : kFirstPreset);
}

void XEnhanceActions::ResetStretch()
{
    const XDMCompManager& manager = *m_view.GetXDMCompManager();
    for (int i = 0; i < manager.GetNumberOfXDMComposite(); ++i) {
        XDMComposite& composite = *manager.GetXDMCompositeAt(i);
        const XDMBand* first = composite.GetFirstBand();
        if (first && first->GetBandType() != kClassMap) ResetStretchOf(composite);
    }
    m_view.InvalidateControl(1);
}

void XEnhanceActions::EnableActions()
{
    const bool canEnhance = m_view.CanRunPropButton(kXPropPresets) != 0;
    const QString reason =
        m_tree.GetRasters().GetCount() > 0 ? "A class map has no stretch" : "Open an image first";
    m_menu->menuAction()->setEnabled(canEnhance);
    m_menu->menuAction()->setStatusTip(canEnhance ? "Choose how the values of all images are shown"
                                                  : reason);
    for (const char* id : {"image.enhanceAgain", "image.defaultStretch"})
        m_actions.SetEnabled(id, canEnhance, reason);
}
