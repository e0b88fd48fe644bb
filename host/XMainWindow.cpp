#include "host/XMainWindow.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XRSFile.h"
#include "host/XAttributeTableWidget.h"
#include "host/XAttributesWidget.h"
#include "host/XAutosaveActions.h"
#include "host/XBandsWidget.h"
#include "host/XClickActions.h"
#include "host/XDockPanel.h"
#include "host/XDrawActions.h"
#include "host/XEditActions.h"
#include "host/XEnhanceActions.h"
#include "host/XFileActions.h"
#include "host/XFocusKeeper.h"
#include "host/XHintLabel.h"
#include "host/XHostView.h"
#include "host/XJobRunner.h"
#include "host/XJobWidget.h"
#include "host/XKeyMapDialog.h"
#include "host/XLayerActions.h"
#include "host/XLayerTree.h"
#include "host/XLayersWidget.h"
#include "host/XLevelActions.h"
#include "host/XLevelBar.h"
#include "host/XMainActions.h"
#include "host/XNoticeBar.h"
#include "host/XObjectActions.h"
#include "host/XObjectPicker.h"
#include "host/XOpeningDlg.h"
#include "host/XPictureChooser.h"
#include "host/XRasterNotices.h"
#include "host/XReadOut.h"
#include "host/XRecoveryBar.h"
#include "host/XSaveActions.h"
#include "host/XStatusWidget.h"
#include "host/XStyleBar.h"
#include "host/XSymbolIcon.h"
#include "host/XVectorActions.h"
#include "host/XVectorLook.h"
#include "host/XViewActions.h"
#include "view/XViewKeys.h"
#include "wnd/XViewDialogBinding.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr unsigned kHostMessage = 41024;
constexpr int kNoticeMs = 8000;
constexpr int kHintMs = 4000;

QStringList LocalPaths(const QMimeData* data)
{
    QStringList paths;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile()) paths.append(url.toLocalFile());
    return paths;
}

} // namespace

XMainWindow::XMainWindow(const QString& version)
    : m_version(version),
      m_layout(*this, m_settings),
      m_view(new XHostView(this)),
      m_actions(std::make_unique<XMainActions>(this))
{
    setObjectName("main");
    setWindowTitle("tqlview");
    setWindowIcon(QIcon::fromTheme("org.tql.tqlview", XfnProgramIcon()));
    setAcceptDrops(true);
    m_view->setObjectName("view");
    m_view->setAccessibleName("Image");
    m_view->setMinimumSize(160, 120);
    auto* middle = new QWidget(this);
    auto* column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_levelBar = new XLevelBar(middle);
    m_noticeBar = new XNoticeBar(middle);
    m_recoveryBar = new XRecoveryBar(middle);
    column->addWidget(m_recoveryBar);
    column->addWidget(m_noticeBar);
    column->addWidget(m_levelBar);
    column->addWidget(m_view, 1);
    setCentralWidget(middle);
    XfnBindViewDialogs();
    m_view->Create();
    m_hint = new XHintLabel(m_view);
    m_focus = std::make_unique<XFocusKeeper>(*m_view);
    MakeModels();
    MakeJobs();
    MakePanels();
    MakeMenus();
    ConnectOthers();
    ConnectView();
    m_view->Initialize(GetHWND(), kHostMessage);
    m_view->setFocus();
    FollowLayers();
    m_layout.Begin();
}

void XMainWindow::MakeModels()
{
    m_layers = std::make_unique<XLayerStack>(m_view->GetXDMCompManager());
    m_layers->SetReader([this](const XString& path, XString& error) {
        XOpeningDlg dialog(this);
        auto file = dialog.Open(path);
        error = dialog.GetError();
        return file;
    });
    m_vectors =
        std::make_unique<XVectorStack>(m_view->GetExtBaseList(), m_view->GetXDMCompManager());
    m_layers->SetIsPlaced([this] { return m_vectors->HasPlaced(); });
    m_tree = std::make_unique<XLayerTree>(*m_layers, *m_vectors);
    m_rasterNotices = std::make_unique<XRasterNotices>(*m_tree, *m_noticeBar);
    m_rasterNotices->SetIsInView([this](const double(&box)[4]) { return IsInView(box); });
    m_picker = std::make_unique<XObjectPicker>(*m_view, *m_vectors);
    m_status = new XStatusWidget(this);
    setStatusBar(m_status);
    m_readOut = std::make_unique<XReadOut>(*m_view, *m_tree, *m_status);
    m_loads = std::make_unique<XJobRunner>();
    m_vectorActions = std::make_unique<XVectorActions>(GetHWND(), *m_tree, *m_actions, *m_loads);
    m_files = std::make_unique<XFileActions>(GetHWND(), *m_tree, *m_vectorActions, *m_actions,
                                             m_settings);
    m_viewActions = std::make_unique<XViewActions>(*this, GetHWND(), *m_view, *m_tree, *m_actions,
                                                   *m_readOut, m_settings);
    m_layerActions = std::make_unique<XLayerActions>(*m_tree, *m_actions);
    m_enhanceActions =
        std::make_unique<XEnhanceActions>(*this, *m_view, *m_tree, *m_actions, m_settings);
    m_objectActions = std::make_unique<XObjectActions>(*m_view, *m_tree, *m_picker, *m_actions);
    MakeEditing();
}

void XMainWindow::MakeEditing()
{
    m_drawActions = std::make_unique<XDrawActions>(*m_view, *m_tree, *m_picker, *m_actions);
    m_clickActions = std::make_unique<XClickActions>(*m_view, *m_tree, *m_picker, *m_drawActions);
    m_editActions = std::make_unique<XEditActions>(*m_view, *m_tree, *m_picker, *m_drawActions,
                                                   *m_clickActions, *m_actions);
    m_saveActions = std::make_unique<XSaveActions>(GetHWND(), *m_tree, *m_actions, m_settings);
    m_autosave = std::make_unique<XAutosaveActions>(*m_vectors, *m_vectorActions, *m_editActions,
                                                    *m_recoveryBar);
    const auto notice = [this](const QString& text, const QString& detail) {
        Notice(text, detail);
    };
    m_clickActions->SetNotice([this](const QString& text) { Notice(text); });
    m_clickActions->SetLooked(
        [this](const XvcObj* object, tagXVectorPlace place) { ShowLocked(object, place); });
    m_drawActions->SetNotice([this](const QString& text) { Notice(text); });
    m_drawActions->SetToolChanged([this] { ShowHint(); });
    m_saveActions->SetNotice(notice);
    m_autosave->SetNotice(notice);
    m_saveActions->SetSaving([this] { m_editActions->EndTyping(); });
    m_saveActions->SetSaved([this](int file) { m_editActions->GetLedger().SetSaved(file); });
    m_files->SetMayClose([this](tagXVectorPlace place) {
        m_editActions->EndTyping();
        return m_saveActions->AskBeforeClosing(place);
    });
}

void XMainWindow::ConnectView()
{
    m_tree->AddObserver([this](LayerChange change) {
        if (change == LayerChange::Closing)
            m_view->QueCancel(); // the pass in hand may read the layer that goes
        else
            FollowLayers();
    });
    m_view->SetExtent([this](double(&box)[4]) { return m_tree->GetTotalExtent(box); });
    m_view->SetClicked([this](int x, int y) { m_picker->PickAt(x, y); });
    m_view->SetChoosePicture(
        [this](XvcBitmap& picture) { return XfnChoosePicture(GetHWND(), m_settings, picture); });
    m_view->SetIsTarget([this](int x, int y) { return m_picker->FindAt(x, y) != nullptr; });
    // not within the reports of painting: those may come while the picture is still being drawn
    m_view->SetBusyChanged([this](bool isBusy) {
        m_status->SetBusy(isBusy);
        if (isBusy) return;
        m_readOut->OnViewChanged(); // nothing was read while it was drawn
        if (std::exchange(m_isRedrawDue, false)) m_view->InvalidateControl(1);
    });
    m_view->SetAfterPaint([this] {
        m_viewActions->OnPainted();
        if (m_view->GetMode() == XGVMessageManager::kModeNone) m_picker->KeepShown();
        m_rasterNotices->TellUnread();
    });
}

XMainWindow::~XMainWindow()
{
    // nothing that a view still does may reach helpers that have gone, and no panel may look at
    // layers that have
    m_view->SetBusyChanged(nullptr);
    m_view->SetAfterPaint(nullptr);
    m_editActions->SetFollowed(nullptr);
    m_view->QueDisable();
    m_view->QueCancel();
    m_view->SetExtent(nullptr);
    m_view->SetIsTarget(nullptr);
    m_view->GetSelectedObj()->RemoveAll();
    DestroyHandle();
    m_loads.reset(); // a job that runs is stopped
    m_jobs.reset();
    qDeleteAll(findChildren<QDockWidget*>());
}

void XMainWindow::MakePanels()
{
    auto* layers = new XLayersWidget(*m_tree, *m_actions, this);
    layers->SetPicked([this] { m_view->setFocus(); });
    layers->SetNotice([this](const QString& text) { Notice(text); });
    auto* bands = new XBandsWidget(*m_layers, *m_actions, this);
    auto* attributes = new XAttributesWidget(*m_picker, *m_vectors, *m_view->GetXDMCompManager(),
                                             *m_actions, this);
    m_attributeRows = attributes;
    XfnMakeDock(this, layers, "Layers");
    QDockWidget* under = XfnMakeDock(this, bands, "Bands");
    m_attributes = XfnMakeDock(this, attributes, "Attributes");
    tabifyDockWidget(under, m_attributes);
    m_attributes->hide(); // until there is something to tell
    m_picker->AddObserver([this] {
        if (m_picker->GetObject()) ShowAttributes();
    });
    auto* table = new XAttributeTableWidget(*m_tree, *m_picker, *m_view, *m_actions, this);
    auto* dock = new QDockWidget("Attribute Table", this);
    dock->setObjectName("dock.table");
    dock->setAccessibleName("Attribute Table");
    dock->setWidget(table);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea); // those need their height
    addDockWidget(Qt::BottomDockWidgetArea, dock);
    dock->hide();
    m_actions->Connect("layer.table", [this, dock] {
        dock->setVisible(m_actions->Get("layer.table")->isChecked());
    });
    QObject::connect(dock, &QDockWidget::visibilityChanged, this,
                     [this, dock] { m_actions->SetChecked("layer.table", !dock->isHidden()); });
}

// The panel comes by itself once in a session; who closes it then wants it closed. It shares its
// place with the bands: a small screen has no room for three.
void XMainWindow::ShowAttributes()
{
    if (isFullScreen()) return;
    if (!std::exchange(m_wereAttributesShown, true)) {
        m_attributes->show();
        resizeDocks({findChild<QDockWidget*>("dock.layers"), m_attributes}, {1, 1}, Qt::Vertical);
    }
    if (!m_attributes->isHidden()) m_attributes->raise();
    NameTabs();
}

// What lies in a locked layer may be read, but is not selected.
void XMainWindow::ShowLocked(const XvcObj* object, tagXVectorPlace place)
{
    m_attributeRows->ShowLocked(object, place);
    if (object) ShowAttributes();
}

// The toolkit makes the tabs of panels by itself, when it lays out, and names none of them.
void XMainWindow::NameTabs()
{
    QTimer::singleShot(0, this, [this] {
        for (QTabBar* tabs : findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly)) {
            tabs->setObjectName("docks.tabs");
            tabs->setAccessibleName("Panels");
        }
    });
}

void XMainWindow::MakeJobs()
{
    const auto notice = [this](const QString& text, const QString& detail) {
        Notice(text, detail);
    };
    m_jobs = std::make_unique<XJobRunner>();
    auto* shown = new XJobWidget(*m_jobs, m_status);
    m_status->insertPermanentWidget(1, shown); // behind the hint, which is no permanent one
    shown->Follow();                           // the bar showed it
    m_jobs->SetChanged([shown] { shown->Follow(); });
    auto* opening = new XJobWidget(*m_loads, m_status, "status.opening");
    opening->SetStop([this] { m_vectorActions->Stop(); }); // and the files that wait
    m_actions->Connect("file.closeAll", [this] { m_vectorActions->Stop(); });
    m_status->insertPermanentWidget(1, opening);
    opening->Follow();
    m_loads->SetChanged([opening] { opening->Follow(); });
    m_vectorActions->SetNotice(notice);
    m_rasterNotices->SetNotice(notice);
    m_vectorActions->SetWarning(
        [this](const QString& path, const QString& text) { m_noticeBar->TellAnew(path, text); });
    m_vectorActions->SetIsGroundDark(
        [this] { return m_layers->GetCount() > 0 || XfnIsDarkColor(m_settings.GetBackground()); });
    m_vectorActions->SetIsInView([this](const double(&box)[4]) { return IsInView(box); });
    m_vectorActions->SetMoved([this] { m_view->FitAll(); });
    m_levelActions = std::make_unique<XLevelActions>(GetHWND(), *m_layers, *m_actions, *m_jobs,
                                                     *m_levelBar, m_settings);
    m_levelActions->SetNotice(notice);
}

void XMainWindow::MakeMenus()
{
    QList<QToolBar*> bars = m_actions->BuildToolBars();
    m_enhanceActions->FillToolBars();
    auto* style = new XStyleBar(*m_view, m_settings, this);
    style->SetSelection(
        [this] { return m_editActions->GetFirstSelected(); },
        [this](const XStyleBar::ChangeFunction& change) { m_editActions->ChangeSelected(change); });
    m_editActions->SetFollowed([style] { style->ShowStyle(); });
    addToolBar(style);
    bars.append(style);
    m_actions->BuildMenus([this, bars](const QString& name, QMenu* menu) {
        if (name == "recent") {
            QMenu* recent = menu->addMenu("Open &Recent");
            recent->setObjectName("menu.recent");
            QObject::connect(recent, &QMenu::aboutToShow, recent,
                             [this, recent] { m_files->FillRecentMenu(recent); });
        } else if (name == "enhance") {
            m_enhanceActions->FillMenu(menu);
        } else if (name == "panels") {
            QMenu* panels = menu->addMenu("Pan&els");
            panels->setObjectName("menu.panels");
            const QList<QDockWidget*> docks = findChildren<QDockWidget*>();
            for (QDockWidget* dock : docks)
                panels->addAction(dock->toggleViewAction());
            for (const QToolBar* bar : bars)
                panels->addAction(bar->toggleViewAction());
        }
    });
    m_actions->BindImageKeys(m_view);
    m_status->AddPositionAction(m_actions->Get("edit.copyPosition"));
    m_status->AddPositionAction(m_actions->Get("edit.copyGeographic"));
    m_status->AddPositionAction(m_actions->Get("view.dms"));
    m_status->AddScaleAction(m_actions->Get("view.percent"));
}

void XMainWindow::ConnectOthers()
{
    m_files->SetOpening([this](const QString& name) {
        m_status->SetOpening(name);
        if (name.isEmpty())
            QApplication::restoreOverrideCursor();
        else if (!QApplication::overrideCursor())
            QApplication::setOverrideCursor(Qt::WaitCursor);
    });
    m_actions->Connect("file.quit", [this] { close(); });
    const auto copy = [this](const QString& text) { CopyText(text, "Copied " + text); };
    m_actions->Connect("edit.copyPosition", [this, copy] { copy(m_readOut->GetPositionText()); });
    m_actions->Connect("edit.copyGeographic",
                       [this, copy] { copy(m_readOut->GetGeographicText()); });
    m_objectActions->SetCopied(
        [this](const QString& text, const QString& notice) { CopyText(text, notice); });
    m_actions->Connect("view.redraw", [this] {
        m_files->ReloadAll([this](const QString& path, const QString& text) {
            m_noticeBar->KeepOnly({}); // said again each time
            m_noticeBar->Tell(path, text);
        });
        m_view->InvalidateControl(1);
    });
    m_actions->Connect("view.zoomRect", [this] { ShowHint(); });
    m_actions->Connect("view.fullScreen", [this] {
        if (isFullScreen()) m_hint->Tell("Esc or F11 leaves the full screen", kHintMs);
    });
    m_actions->Connect("window.reset", [this] { m_layout.Reset(); });
    m_actions->Connect("help.keys", [this] {
        if (!m_keyMap) m_keyMap = new XKeyMapDialog(this);
        m_keyMap->show();
        m_keyMap->raise();
        m_keyMap->activateWindow();
    });
    m_actions->Connect("help.about", [this] {
        XPrompts::Get()->Message(
            GetHWND(),
            XfnFromQString(
                QString("tqlview %1\n\nLooks at remote-sensing imagery.").arg(m_version)),
            XPrompts::XIcon::Information, "About tqlview");
    });
}

void XMainWindow::CopyText(const QString& text, const QString& notice)
{
    if (text.isEmpty()) return;
    QApplication::clipboard()->setText(text);
    Notice(notice);
}

void XMainWindow::Notice(const QString& text, const QString& detail)
{
    m_status->ShowNotice(text, detail, kNoticeMs);
    if (isFullScreen()) m_hint->Tell(text, kHintMs); // the status bar is hidden
}

// What Escape ends when no tool has taken it: the opening of files, the job at hand, the selection,
// then the full screen.
bool XMainWindow::StopOnEscape()
{
    if (m_loads->IsBusy())
        m_vectorActions->Stop();
    else if (m_jobs->IsBusy())
        m_jobs->Cancel();
    else
        return m_picker->Clear() || m_viewActions->LeaveFullScreen();
    return true;
}

void XMainWindow::ShowHint()
{
    const char* hint = "Right button moves the view";
    if (m_tree->GetRowCount() == 0 && m_drawActions->GetHint().isEmpty())
        hint = "Open a file with Ctrl+O, or drop one here";
    else if (m_view->GetMode() == XGVMessageManager::kModeZoomRect)
        hint = "Drag a rectangle; Esc leaves";
    else if (!m_drawActions->GetHint().isEmpty())
        return m_status->SetHint(m_drawActions->GetHint());
    else if (m_vectors->GetCount() > 0)
        hint = "Click selects; right button moves the view";
    m_status->SetHint(hint);
}

void XMainWindow::FollowLayers()
{
    const int rows = m_tree->GetRowCount();
    QStringList paths;
    for (int row = 0; row < rows; ++row)
        paths.append(m_tree->GetPath(m_tree->GetNode(row)));
    m_noticeBar->KeepOnly(paths);
    const bool isFirst = m_shownRows == 0 && rows > 0;
    if (rows != m_shownRows) m_status->ClearNotice(); // it was about something else
    if (rows > m_shownRows) m_view->setFocus();       // its plain keys are what comes next
    const bool isMoreRasters = m_layers->GetCount() > m_shownRasters;
    const bool isMoreVectors = rows > m_shownRows && !isMoreRasters;
    m_shownRows = rows;
    m_shownRasters = m_layers->GetCount();
    if (isFirst && !m_drawActions->IsAdopting()) {
        m_viewActions->Forget();
        m_view->InvalidateControl(1);
        m_view->FitAll();
    } else if (isMoreVectors && m_view->IsBusy()) {
        m_isRedrawDue = true; // of many large files none would be seen until the last was read
    } else {
        m_view->InvalidateControl(1); // a later layer leaves the view where it is
    }
    if (rows == 0) m_viewActions->Forget();
    m_drawActions->Follow();
    m_viewActions->EnableActions();
    const QString name = m_tree->GetName(m_tree->GetCurrent());
    setWindowTitle(rows > 0 ? name + "[*] - tqlview" : QString("tqlview"));
    setWindowFilePath(m_tree->GetPath(m_tree->GetCurrent()));
    setWindowModified(m_vectors->HasEdited());
    ShowHint();
    m_actions->SetEnabled("edit.copyPosition", rows > 0, "Open a file first");
    m_actions->SetEnabled("edit.copyGeographic",
                          rows > 0 && !m_readOut->GetGeographicText().isEmpty(),
                          "The view has no known coordinate system");
    if (isMoreRasters) m_rasterNotices->TellOfOpened(isFirst);
}

bool XMainWindow::IsInView(const double (&box)[4])
{
    double minX = 0;
    double maxX = 0;
    double minY = 0;
    double maxY = 0;
    m_view->GetBound(minX, maxX, minY, maxY);
    return box[2] >= minX && box[0] <= maxX && box[3] >= minY && box[1] <= maxY;
}

XLRESULT XMainWindow::OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    if (message != kHostMessage) return XMessageWindow::OnWindowMessage(message, wParam, lParam);
    const auto report = static_cast<XViewReport>(wParam);
    m_editActions->OnReport(report, lParam);
    m_clickActions->OnReport(report, reinterpret_cast<const tagXMouseReport*>(lParam));
    switch (report) {
    case XViewReport::MouseMove: {
        const auto* mouse = reinterpret_cast<const tagXMouseReport*>(lParam);
        m_readOut->OnPointer(mouse->x, mouse->y);
        break;
    }
    case XViewReport::KeyDown:
        if (reinterpret_cast<const tagXKeyReport*>(lParam)->character == kKeyEscape) {
            if (!m_drawActions->OnEscape(m_view->GetBeforeKey())) StopOnEscape();
            m_editActions->DropEmptyBox();
            m_editActions->EnableActions();
            ShowHint();
        }
        break;
    case XViewReport::ToolFinished:
        m_drawActions->Follow();
        ShowHint();
        break;
    case XViewReport::ZoomIn:
    case XViewReport::ZoomOut:
        m_view->KeepInLimits();
        m_viewActions->OnZoomCommand();
        break;
    case XViewReport::ZoomFit:
    case XViewReport::ZoomOneToOne:
        m_viewActions->OnZoomCommand();
        break;
    case XViewReport::ZoomRect:
        m_view->KeepInLimits();
        m_viewActions->OnZoomCommand();
        [[fallthrough]];
    case XViewReport::ToolCancelled:
        m_viewActions->OnToolEnded();
        m_drawActions->Follow();
        ShowHint();
        break;
    default:
        break;
    }
    return 0;
}

void XMainWindow::OpenAfterFirstPaint(const QStringList& paths)
{
    m_view->SetFirstPaint([this, paths] { m_files->OpenDropped(paths); });
}

void XMainWindow::Place(const QSize& size, const QPoint& pos, bool hasPos)
{
    m_layout.Place(size, pos, hasPos);
}

void XMainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    NameTabs();
    m_layout.Shown();
    if (std::exchange(m_isFirstShow, false))
        QTimer::singleShot(0, this, [this] { m_autosave->OfferLost(); });
}

void XMainWindow::KeepSession()
{
    m_drawActions->EndObject();
    m_editActions->EndTyping();
    m_layout.Keep(m_viewActions->GetLayout());
    m_autosave->KeepAndWait();
}

void XMainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!LocalPaths(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void XMainWindow::dropEvent(QDropEvent* event)
{
    const QStringList paths = LocalPaths(event->mimeData());
    if (paths.isEmpty()) return;
    event->acceptProposedAction();
    activateWindow();
    m_files->OpenDropped(paths);
}

void XMainWindow::closeEvent(QCloseEvent* event)
{
    m_drawActions->EndObject();
    m_editActions->EndTyping();
    if (!m_saveActions->AskBeforeClosingAll()) {
        event->ignore();
        return;
    }
    m_autosave->SetNotice(nullptr);
    m_saveActions->SetNotice(nullptr);
    m_autosave->EndClean();
    m_layout.Keep(m_viewActions->GetLayout());
    m_levelActions->SetNotice(nullptr);
    m_vectorActions->SetNotice(nullptr);
    m_vectorActions->Stop(); // so that none follows the one at hand
    m_loads->CancelAll();
    m_jobs->CancelAll();
    QMainWindow::closeEvent(event);
}

void XMainWindow::keyPressEvent(QKeyEvent* event)
{
    // Escape while a panel has the focus; the view reports its own
    if (event->key() == Qt::Key_Escape && !m_view->hasFocus() && StopOnEscape()) return;
    QMainWindow::keyPressEvent(event);
}
