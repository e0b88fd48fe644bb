#include "host/XMainWindow.h"

#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XRSFile.h"
#include "host/XActionTable.h"
#include "host/XAttributesWidget.h"
#include "host/XAutosaveActions.h"
#include "host/XBandsWidget.h"
#include "host/XDrawActions.h"
#include "host/XEditActions.h"
#include "host/XFileActions.h"
#include "host/XHostView.h"
#include "host/XJobRunner.h"
#include "host/XJobWidget.h"
#include "host/XLayerActions.h"
#include "host/XLayerPlacement.h"
#include "host/XLayerTree.h"
#include "host/XLayersWidget.h"
#include "host/XLevelActions.h"
#include "host/XLevelBar.h"
#include "host/XMainActions.h"
#include "host/XNoticeBar.h"
#include "host/XObjectActions.h"
#include "host/XObjectPicker.h"
#include "host/XReadOut.h"
#include "host/XRecoveryBar.h"
#include "host/XSaveActions.h"
#include "host/XStatusWidget.h"
#include "host/XStyleBar.h"
#include "host/XVectorActions.h"
#include "host/XViewActions.h"
#include "host/XWindowPlacement.h"
#include "view/XViewKeys.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr unsigned kHostMessage = 41024;
constexpr QSize kFirstSize(1200, 800);
constexpr int kNoticeMs = 8000;
constexpr int kLikelyTitleHeight = 40;

QStringList LocalPaths(const QMimeData* data)
{
    QStringList paths;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile()) paths.append(url.toLocalFile());
    return paths;
}

QDockWidget* MakeDock(QMainWindow* window, QWidget* content, const QString& title)
{
    auto* dock = new QDockWidget(title, window);
    dock->setObjectName("dock." + content->objectName());
    dock->setAccessibleName(title);
    // on a small screen a panel scrolls rather than making the window higher than the screen
    auto* scroll = new QScrollArea(dock);
    scroll->setObjectName(content->objectName() + ".scroll");
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);
    scroll->setMinimumWidth(content->minimumSizeHint().width() +
                            scroll->verticalScrollBar()->sizeHint().width());
    dock->setWidget(scroll);
    window->addDockWidget(Qt::RightDockWidgetArea, dock);
    return dock;
}

} // namespace

XMainWindow::XMainWindow(const QString& version)
    : m_version(version),
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
    m_view->Create();
    MakeModels();
    MakeJobs();
    MakePanels();
    MakeMenus();
    ConnectOthers();
    ConnectView();
    m_view->Initialize(GetHWND(), kHostMessage);
    m_view->setFocus();
    FollowLayers();
    m_firstLayout = saveState();
    restoreState(m_settings.GetWindowLayout());
}

void XMainWindow::MakeModels()
{
    m_layers = std::make_unique<XLayerStack>(m_view->GetXDMCompManager());
    m_vectors =
        std::make_unique<XVectorStack>(m_view->GetExtBaseList(), m_view->GetXDMCompManager());
    m_layers->SetIsPlaced([this] { return m_vectors->HasPlaced(); });
    m_tree = std::make_unique<XLayerTree>(*m_layers, *m_vectors);
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
    m_objectActions = std::make_unique<XObjectActions>(*m_view, *m_tree, *m_picker, *m_actions);
    MakeEditing();
}

void XMainWindow::MakeEditing()
{
    m_drawActions = std::make_unique<XDrawActions>(*m_view, *m_tree, *m_picker, *m_actions);
    m_editActions =
        std::make_unique<XEditActions>(*m_view, *m_tree, *m_picker, *m_drawActions, *m_actions);
    m_saveActions = std::make_unique<XSaveActions>(GetHWND(), *m_tree, *m_actions, m_settings);
    m_autosave = std::make_unique<XAutosaveActions>(*m_vectors, *m_vectorActions, *m_editActions,
                                                    *m_recoveryBar);
    const auto notice = [this](const QString& text, const QString& detail) {
        Notice(text, detail);
    };
    m_saveActions->SetNotice(notice);
    m_autosave->SetNotice(notice);
    m_saveActions->SetSaving([this] { m_editActions->EndTyping(); });
    m_saveActions->SetSaved([this](int file) { m_editActions->GetLedger().SetSaved(file); });
    m_files->SetMayClose(
        [this](tagXVectorPlace place) { return m_saveActions->AskBeforeClosing(place); });
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
    m_view->SetIsTarget([this](int x, int y) { return m_picker->FindAt(x, y) != nullptr; });
    // not within the reports of painting: those may come while the picture is still being drawn
    m_view->SetBusyChanged([this](bool isBusy) {
        m_status->SetBusy(isBusy);
        if (!isBusy) m_readOut->OnViewChanged(); // nothing was read while it was drawn
    });
    m_view->SetAfterPaint([this] {
        m_viewActions->OnPainted();
        if (m_view->GetMode() == XGVMessageManager::kModeNone) m_picker->KeepShown();
        TellUnread();
    });
}

XMainWindow::~XMainWindow()
{
    // nothing that a view still does may reach helpers that have gone, and no panel may look at
    // layers that have
    m_view->SetBusyChanged(nullptr);
    m_view->SetAfterPaint(nullptr);
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
    auto* bands = new XBandsWidget(*m_layers, *m_actions, this);
    auto* attributes = new XAttributesWidget(*m_picker, *m_vectors, *m_view->GetXDMCompManager(),
                                             *m_actions, this);
    MakeDock(this, layers, "Layers");
    QDockWidget* under = MakeDock(this, bands, "Bands");
    m_attributes = MakeDock(this, attributes, "Attributes");
    tabifyDockWidget(under, m_attributes);
    m_attributes->hide(); // until there is something to tell
    m_picker->AddObserver([this] { ShowAttributes(); });
}

// The panel comes by itself once in a session; who closes it then wants it closed. It shares its
// place with the bands: a small screen has no room for three.
void XMainWindow::ShowAttributes()
{
    if (!m_picker->GetObject() || isFullScreen()) return;
    if (!std::exchange(m_wereAttributesShown, true)) m_attributes->show();
    if (!m_attributes->isHidden()) m_attributes->raise();
    NameTabs();
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
    m_vectorActions->SetNotice(
        [this](const QString& text, const QString& detail) { Notice(text, detail); });
    m_vectorActions->SetWarning(
        [this](const QString& path, const QString& text) { m_noticeBar->Tell(path, text); });
    m_levelActions = std::make_unique<XLevelActions>(GetHWND(), *m_layers, *m_actions, *m_jobs,
                                                     *m_levelBar, m_settings);
    m_levelActions->SetNotice(
        [this](const QString& text, const QString& detail) { Notice(text, detail); });
}

void XMainWindow::MakeMenus()
{
    QList<QToolBar*> bars = m_actions->BuildToolBars();
    auto* style = new XStyleBar(*m_view, m_settings, this);
    addToolBar(style);
    bars.append(style);
    m_actions->BuildMenus([this, bars](const QString& name, QMenu* menu) {
        if (name == "recent") {
            QMenu* recent = menu->addMenu("Open &Recent");
            recent->setObjectName("menu.recent");
            QObject::connect(recent, &QMenu::aboutToShow, recent,
                             [this, recent] { m_files->FillRecentMenu(recent); });
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
    for (const char* id : {"view.zoomRect", "draw.select"})
        m_actions->Connect(id, [this] { ShowHint(); });
    m_actions->Connect("window.reset", [this] { ResetLayout(); });
    m_actions->Connect("help.keys", [this] {
        XPrompts::Get()->Message(GetHWND(), XfnFromQString(XfnKeyMapText()), XPrompts::XIcon::None,
                                 "Key Map");
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
    const bool isMoreRasters = m_layers->GetCount() > m_shownRasters;
    m_shownRows = rows;
    m_shownRasters = m_layers->GetCount();
    if (isFirst && !m_drawActions->IsAdopting()) {
        m_viewActions->Forget();
        m_view->InvalidateControl(1);
        m_view->FitAll();
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
    if (isMoreRasters) TellOfRaster(isFirst);
}

// Another raster was opened: what the user might not see of it.
void XMainWindow::TellOfRaster(bool isFirst)
{
    const tagXLayer* layer = m_layers->GetAt(m_layers->GetCurrent());
    if (!layer) return;
    QStringList notices;
    const QString notes =
        XfnToQString(layer->file->GetNotes()).remove("\"" + layer->path + "\": ").trimmed();
    if (!notes.isEmpty()) notices.append(layer->name + ": " + notes.section('\n', 0, 0));
    const QString placement = isFirst ? QString() : XfnPlacementText(layer->miss);
    if (!placement.isEmpty()) notices.append(layer->name + ": " + placement);
    double box[4] = {0, 0, 0, 0};
    double minX = 0;
    double maxX = 0;
    double minY = 0;
    double maxY = 0;
    m_view->GetBound(minX, maxX, minY, maxY);
    if (!isFirst && m_layers->GetExtent(m_layers->GetCurrent(), box) &&
        (box[2] < minX || box[0] > maxX || box[3] < minY || box[1] > maxY))
        notices.append(layer->name + " lies outside the view; View > Fit Layer shows it");
    if (!notices.isEmpty()) Notice(notices.join(". "), notes);
}

XLRESULT XMainWindow::OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    if (message != kHostMessage) return XMessageWindow::OnWindowMessage(message, wParam, lParam);
    const auto report = static_cast<XViewReport>(wParam);
    m_editActions->OnReport(report, lParam);
    switch (report) {
    case XViewReport::MouseMove: {
        const auto* mouse = reinterpret_cast<const tagXMouseReport*>(lParam);
        m_readOut->OnPointer(mouse->x, mouse->y);
        break;
    }
    case XViewReport::KeyDown:
        if (reinterpret_cast<const tagXKeyReport*>(lParam)->character == kKeyEscape) {
            if (!m_drawActions->OnEscape(m_view->GetBeforeKey())) StopOnEscape();
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
        m_viewActions->OnToolEnded();
        m_drawActions->Follow();
        ShowHint();
        break;
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

// Black where a file cannot be read looks like no data: each file says once why it is so.
void XMainWindow::TellUnread()
{
    for (int i = 0; i < m_layers->GetCount(); ++i) {
        const tagXLayer& layer = *m_layers->GetAt(i);
        const QString why = XfnToQString(layer.composite->GetDrawMessage()).trimmed();
        if (why.isEmpty()) continue;
        m_noticeBar->Tell(
            layer.path,
            QString("A part of %1 cannot be read and is left out. (%2)").arg(layer.name, why));
    }
}

void XMainWindow::OpenAfterFirstPaint(const QStringList& paths)
{
    m_view->SetFirstPaint([this, paths] { m_files->OpenDropped(paths); });
}

void XMainWindow::Place(const QSize& size, const QPoint& pos, bool hasPos)
{
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    QRect rect = m_settings.GetWindowRect();
    const bool wasLeft = rect.isValid() && size.isEmpty();
    if (!wasLeft) {
        rect = QRect(QPoint(0, 0), size.isEmpty() ? kFirstSize : size);
        if (!areas.isEmpty()) rect.moveCenter(areas.first().center());
        if (hasPos) rect.moveTopLeft(pos);
    }
    // the toolkit counts without the frame, which is known only once the window was shown
    QMargins frame(0, isVisible() ? geometry().top() - frameGeometry().top() : 0, 0, 0);
    if (frame.top() <= 0) frame.setTop(kLikelyTitleHeight);
    setGeometry(XfnPlaceWindow(rect, areas, frame));
    if (wasLeft && m_settings.IsWindowMaximized())
        setWindowState(windowState() | Qt::WindowMaximized);
}

// The bands need their height to be of use, the layers take what is left.
void XMainWindow::ShareHeight()
{
    const auto* bands = findChild<QWidget*>("bands");
    const int wanted = bands->sizeHint().height() + 30; // with the title of the dock
    const int rest = std::max(1, m_view->height() - wanted);
    resizeDocks({findChild<QDockWidget*>("dock.layers"), findChild<QDockWidget*>("dock.bands")},
                {rest, wanted}, Qt::Vertical);
}

void XMainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    NameTabs();
    const bool isFirst = std::exchange(m_isFirstShow, false);
    if (isFirst && m_settings.GetWindowLayout().isEmpty()) ShareHeight();
    if (isFirst) QTimer::singleShot(0, this, [this] { m_autosave->OfferLost(); });
}

void XMainWindow::ResetLayout()
{
    restoreState(m_firstLayout);
    if (!isMaximized() && !isFullScreen()) {
        m_settings.SetWindow(QRect(), false, QByteArray());
        Place(QSize(), QPoint(), false);
    }
    ShareHeight();
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
    if (!m_saveActions->AskBeforeClosingAll()) {
        event->ignore();
        return;
    }
    m_autosave->SetNotice(nullptr);
    m_saveActions->SetNotice(nullptr);
    m_autosave->EndClean();
    const bool isPlain = !isMaximized() && !isFullScreen();
    m_settings.SetWindow(isPlain ? geometry() : normalGeometry(), isMaximized(),
                         m_viewActions->GetLayout());
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
