#pragma once

#include "foundation/platform/XMessageWindow.h"
#include "host/XSessionSettings.h"

#include <QMainWindow>
#include <QStringList>

#include <memory>

class QMenu;
class XFileActions;
class XHostView;
class XLayerActions;
class XJobRunner;
class XJobWidget;
class XLayerStack;
class XLevelActions;
class XLevelBar;
class XNoticeBar;
class XMainActions;
class XReadOut;
class XStatusWidget;
class XViewActions;

/// The window of tqlview: one view in the middle, panels for layers and bands, menus, a toolbar and
/// the read-outs. It receives the reports of its view.
///
/// What it does stands in helpers: XFileActions opens and closes, XViewActions moves the view,
/// XLayerActions serves the Layer and Image menus, XReadOut fills the status bar, XLayerStack is what
/// is open. This class puts them together.
class XMainWindow : public QMainWindow, public XMessageWindow
{
public:
    /// @param version  for the about box
    explicit XMainWindow(const QString& version);
    ~XMainWindow() override;

    XHostView& GetView() { return *m_view; }
    XLayerStack& GetLayers() { return *m_layers; }
    XFileActions& GetFiles() { return *m_files; }
    XJobRunner& GetJobs() { return *m_jobs; }
    XMainActions& GetActions() { return *m_actions; }

    /// Places the window: as asked for, else as it was left, always inside an available screen.
    /// @param size  empty when none was asked for
    void Place(const QSize& size, const QPoint& pos, bool hasPos);

    /// Opens files, with their errors told, once the empty window has been seen.
    void OpenAfterFirstPaint(const QStringList& paths);

    XLRESULT OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam) override;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void MakePanels();
    void MakeJobs();
    void MakeMenus();
    void ConnectOthers();
    void FollowLayers();
    void ShowHint();
    void ResetLayout();
    void ShareHeight();
    void Notice(const QString& text, const QString& detail = QString());
    bool StopOnEscape();
    void TellUnread();

    QString m_version;
    XSessionSettings m_settings;
    XHostView* m_view;
    std::unique_ptr<XMainActions> m_actions;
    std::unique_ptr<XLayerStack> m_layers;
    XStatusWidget* m_status = nullptr;
    std::unique_ptr<XReadOut> m_readOut;
    std::unique_ptr<XFileActions> m_files;
    std::unique_ptr<XViewActions> m_viewActions;
    std::unique_ptr<XLayerActions> m_layerActions;
    XLevelBar* m_levelBar = nullptr;
    XNoticeBar* m_noticeBar = nullptr;
    std::unique_ptr<XJobRunner> m_jobs;
    std::unique_ptr<XLevelActions> m_levelActions;
    QByteArray m_firstLayout;
    int m_shownLayers = 0;
    bool m_isFirstShow = true;
};
