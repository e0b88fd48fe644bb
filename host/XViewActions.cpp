#include "host/XViewActions.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XUserSettings.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/surface/XBackBuffer.h"
#include "host/XHostView.h"
#include "host/XLayerTree.h"
#include "host/XMainActions.h"
#include "host/XReadOut.h"
#include "host/XSessionSettings.h"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

#include <chrono>

namespace {

constexpr int kGrayMode = 0; // of a composite: one band

long long NowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

XViewActions::XViewActions(QMainWindow& window, XHWND handle, XHostView& view, XLayerTree& layers,
                           XMainActions& actions, XReadOut& readOut, XSessionSettings& settings)
    : m_window(window),
      m_handle(handle),
      m_view(view),
      m_layers(layers),
      m_actions(actions),
      m_readOut(readOut),
      m_settings(settings)
{
    Connect();
    m_actions.SetChecked("view.percent", m_settings.GetZoomFormat() == ZoomFormat::Percent);
    m_actions.SetChecked("view.dms", m_settings.GetGeoFormat() == GeoFormat::Dms);
    m_actions.SetChecked("view.wheelIn", XfnGetInvertMouseWheelZoomDir());
    m_readOut.SetZoomFormat(m_settings.GetZoomFormat());
    m_readOut.SetGeoFormat(m_settings.GetGeoFormat());
    m_actions.SetChecked("view.progressive", m_settings.IsProgressive());
    m_view.SetAlwaysRefine(1);
    SetProgressive(m_settings.IsProgressive());
    m_view.SetBackgroundColor(m_settings.GetBackground());
    EnableActions();
}

void XViewActions::Connect()
{
    m_actions.Connect("view.fitAll", [this] { m_view.FitAll(); });
    m_actions.Connect("view.fitLayer", [this] { FitLayer(m_layers.GetCurrent()); });
    m_actions.Connect("view.oneToOne", [this] { m_view.ZoomOneToOne(); });
    m_actions.Connect("view.zoomIn", [this] { m_view.ZoomStep(true); });
    m_actions.Connect("view.zoomOut", [this] { m_view.ZoomStep(false); });
    m_actions.Connect("view.zoomRect", [this] {
        if (m_actions.Get("view.zoomRect")->isChecked()) {
            m_view.SetPostMode(m_view.GetMode()); // the tool of before comes back
            m_view.ZoomRect();
        } else {
            m_view.SetMode(m_view.GetPostMode());
        }
    });
    m_actions.Connect("view.previous", [this] {
        tagXViewState state;
        if (m_history.GoBack(state)) GoTo(state);
    });
    m_actions.Connect("view.next", [this] {
        tagXViewState state;
        if (m_history.GoForward(state)) GoTo(state);
    });
    m_actions.Connect("view.background", [this] { ChooseBackground(); });
    m_actions.Connect("view.overview", [this] { m_view.ShowThumbView(1); });
    m_actions.Connect("view.percent", [this] {
        const bool isOn = m_actions.Get("view.percent")->isChecked();
        m_settings.SetZoomFormat(isOn ? ZoomFormat::Percent : ZoomFormat::Ratio);
        m_readOut.SetZoomFormat(m_settings.GetZoomFormat());
    });
    m_actions.Connect("view.dms", [this] {
        const bool isOn = m_actions.Get("view.dms")->isChecked();
        m_settings.SetGeoFormat(isOn ? GeoFormat::Dms : GeoFormat::Decimal);
        m_readOut.SetGeoFormat(m_settings.GetGeoFormat());
    });
    m_actions.Connect("view.wheelIn", [this] {
        XfnSetInvertMouseWheelZoomDir(m_actions.Get("view.wheelIn")->isChecked());
    });
    m_actions.Connect("view.progressive", [this] {
        m_settings.SetProgressive(m_actions.Get("view.progressive")->isChecked());
        SetProgressive(m_settings.IsProgressive());
    });
    m_actions.Connect("view.fullScreen",
                      [this] { SetFullScreen(m_actions.Get("view.fullScreen")->isChecked()); });
    m_actions.Connect("image.stretch", [this] { m_view.ShowStretchDlg(1); });
    m_actions.Connect("image.colorTable", [this] { OpenColorTable(); });
    m_layers.GetRasters().AddObserver([this](LayerChange change) { FollowColorTable(change); });
}

XDMComposite* XViewActions::FindGray() const
{
    const XLayerStack& rasters = m_layers.GetRasters();
    for (int i = 0; i < rasters.GetCount(); ++i)
        if (XDMComposite* composite = rasters.GetAt(i)->composite;
            composite->GetMode() == kGrayMode)
            return composite;
    return nullptr;
}

void XViewActions::OpenColorTable()
{
    m_view.ShowColorTable(1);
    m_colored = FindGray();
}

// A table is closed when its image goes, or shows three bands: their colours are no table's.
void XViewActions::FollowColorTable(LayerChange change)
{
    if (!m_colored) return;
    const XLayerStack& rasters = m_layers.GetRasters();
    const tagXLayer* current = rasters.GetAt(rasters.GetCurrent());
    const bool isOver = change == LayerChange::Closing ? current && current->composite == m_colored
                                                       : m_colored->GetMode() != kGrayMode;
    if (!isOver) return;
    m_colored = nullptr;
    m_view.ShowColorTable(0);
}

tagXViewState XViewActions::GetState() const
{
    tagXViewState state;
    const XBackBuffer& buffer = *m_view.GetBackBuffer();
    buffer.GetWorldToCenter(state.centreX, state.centreY);
    buffer.GetWorldPerPixel(state.perPixelX, state.perPixelY);
    return state;
}

void XViewActions::OnPainted()
{
    if (m_layers.GetRowCount() == 0) return;
    const QSize size = m_view.GetBackBuffer()->GetImage().size();
    // only a view that still shows the whole of something looks elsewhere at another size
    if (size != m_paintedSize && !m_isJump && m_view.IsFitted())
        m_history.Amend(GetState());
    else
        m_history.Record(GetState(),
                         m_isJump ? XViewHistory::Gesture::Jump : XViewHistory::Gesture::Continuous,
                         NowMs());
    m_paintedSize = size;
    m_isJump = false;
    m_readOut.OnViewChanged();
    OnToolEnded(); // the panel of buttons begins and ends it, too
    EnableActions();
}

void XViewActions::OnZoomCommand()
{
    m_isJump = true;
}

void XViewActions::OnToolEnded()
{
    m_actions.SetChecked("view.zoomRect", m_view.GetMode() == XGVMessageManager::kModeZoomRect);
}

void XViewActions::SetProgressive(bool isOn)
{
    m_view.SetProgressiveView(isOn);
}

void XViewActions::Forget()
{
    m_history.Clear();
    m_isJump = true;
    if (m_view.GetMode() != XGVMessageManager::kModeNone)
        m_view.SetMode(XGVMessageManager::kModeNone);
    OnToolEnded();
}

void XViewActions::GoTo(const tagXViewState& state)
{
    m_view.SetWorldToCenter(state.centreX, state.centreY);
    m_view.SetWorldPerPixel(state.perPixelX, state.perPixelY);
    m_view.InvalidateControl(1);
    EnableActions();
}

void XViewActions::FitLayer(const tagXTreeNode& node)
{
    double box[4] = {0, 0, 0, 0};
    if (m_layers.GetExtent(node, box)) m_view.FitBox(box[0], box[1], box[2], box[3]);
}

void XViewActions::ChooseBackground()
{
    std::uint32_t color = m_settings.GetBackground();
    if (!XPrompts::Get()->ChooseColor(m_handle, color)) return;
    m_settings.SetBackground(color);
    m_view.SetBackgroundColor(m_settings.GetBackground());
}

void XViewActions::SetFullScreen(bool isOn)
{
    if (isOn == m_window.isFullScreen()) return;
    if (isOn) {
        m_wasMaximized = m_window.isMaximized();
        m_layout = m_window.saveState();
        ShowFurniture(false);
        m_window.showFullScreen();
    } else if (m_wasMaximized) {
        m_window.showMaximized();
    } else {
        m_window.showNormal();
    }
    if (!isOn) ShowFurniture(true);
    m_actions.SetChecked("view.fullScreen", isOn);
}

// The whole screen is for the image. The menu bar loses its height, not its keys: a hidden one would
// not answer to them.
void XViewActions::ShowFurniture(bool isOn)
{
    m_window.menuBar()->setMaximumHeight(isOn ? QWIDGETSIZE_MAX : 0);
    m_window.statusBar()->setVisible(isOn);
    if (isOn) {
        m_window.restoreState(m_layout);
        return;
    }
    for (QDockWidget* dock : m_window.findChildren<QDockWidget*>())
        dock->hide();
    for (QToolBar* bar : m_window.findChildren<QToolBar*>())
        bar->hide();
}

QByteArray XViewActions::GetLayout() const
{
    return m_window.isFullScreen() ? m_layout : m_window.saveState();
}

bool XViewActions::LeaveFullScreen()
{
    if (!m_window.isFullScreen()) return false;
    SetFullScreen(false);
    return true;
}

void XViewActions::EnableActions()
{
    const bool isAny = m_layers.GetRowCount() > 0;
    const bool hasLayer = m_layers.GetRasters().GetCount() > 0;
    const QString noLayer = "Open an image first";
    for (const char* id : {"view.fitAll", "view.fitLayer", "view.zoomIn", "view.zoomOut",
                           "view.zoomRect", "view.redraw"})
        m_actions.SetEnabled(id, isAny, "Open a file first");
    m_actions.SetEnabled("view.oneToOne", hasLayer, noLayer);
    m_actions.SetEnabled("view.previous", isAny && m_history.CanGoBack(),
                         "There is no earlier view");
    m_actions.SetEnabled("view.next", isAny && m_history.CanGoForward(), "There is no later view");
    const QString unbound = "Not available yet";
    m_actions.SetEnabled("view.overview", hasLayer && m_view.CanShowThumbView(),
                         hasLayer ? unbound : noLayer);
    m_actions.SetEnabled("image.stretch", hasLayer && m_view.CanShowStretchDlg(),
                         hasLayer ? unbound : noLayer);
    m_actions.SetEnabled("image.colorTable", FindGray() && m_view.CanShowColorTable(),
                         !hasLayer    ? noLayer
                         : FindGray() ? unbound
                                      : "Show an image in gray first; three bands have no table");
}
