#pragma once

#include "foundation/platform/XMessageWindow.h"
#include "host/XSessionSettings.h"
#include "host/XWindowLayout.h"

#include <QMainWindow>
#include <QStringList>

#include <memory>

class QDockWidget;
class QMenu;
class XAttributesWidget;
class XAutosaveActions;
class XClickActions;
class XDrawActions;
class XEditActions;
class XEnhanceActions;
class XFileActions;
class XFocusKeeper;
class XHintLabel;
class XHostView;
class XLayerActions;
class XJobRunner;
class XJobWidget;
class XKeyMapDialog;
class XLayerStack;
class XLayerTree;
class XLevelActions;
class XLevelBar;
class XNoticeBar;
class XMainActions;
class XObjectActions;
class XObjectPicker;
class XRasterNotices;
class XReadOut;
class XRecoveryBar;
class XSaveActions;
class XStatusWidget;
class XVectorActions;
class XVectorStack;
class XViewActions;
class XvcObj;
struct tagXVectorPlace;

/// The window of tqlview: one view in the middle, panels for layers, bands and attributes, menus, a
/// toolbar and the read-outs. It receives the reports of its view.
///
/// What it does stands in helpers: XFileActions opens and closes, XViewActions moves the view,
/// XDrawActions, XEditActions and XSaveActions serve the tools, edits and files of vector objects,
/// XAutosaveActions keeps what is not saved, XLayerActions serves the Layer and Image menus,
/// XEnhanceActions the presets of the stretch, XVectorActions and XObjectActions vector files and
/// the object selected in them, XReadOut fills the status bar, XLayerTree is what is open. This class
/// puts them together.
class XMainWindow : public QMainWindow, public XMessageWindow
{
public:
    /// @param version  for the about box
    explicit XMainWindow(const QString& version);
    ~XMainWindow() override;

    XHostView& GetView() { return *m_view; }
    XLayerStack& GetLayers() { return *m_layers; }
    XFileActions& GetFiles() { return *m_files; }
    XLayerTree& GetTree() { return *m_tree; }
    XVectorStack& GetVectors() { return *m_vectors; }
    XObjectPicker& GetPicker() { return *m_picker; }
    XJobRunner& GetJobs() { return *m_jobs; }
    XJobRunner& GetLoads() { return *m_loads; } ///< vector files being opened
    XMainActions& GetActions() { return *m_actions; }
    XAutosaveActions& GetAutosave() { return *m_autosave; }

    /// Places the window: as asked for, else as it was left, always inside an available screen.
    /// @param size  empty when none was asked for
    void Place(const QSize& size, const QPoint& pos, bool hasPos);

    /// The program is told to end: keeps where the window stands, and a copy of all unsaved edits for
    /// the next run to offer. Asks nothing; the window may stay or go.
    void KeepSession();

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
    void MakeModels();
    void MakePanels();
    void ShowAttributes();
    void ShowLocked(const XvcObj* object, tagXVectorPlace place);
    void NameTabs();
    void MakeJobs();
    void MakeMenus();
    void MakeEditing();
    void ConnectOthers();
    void ConnectView();
    void FollowLayers();
    bool IsInView(const double (&box)[4]);
    void CopyText(const QString& text, const QString& notice);
    void ShowHint();
    void Notice(const QString& text, const QString& detail = QString());
    bool StopOnEscape();

    QString m_version;
    XSessionSettings m_settings;
    XWindowLayout m_layout;
    XHostView* m_view;
    std::unique_ptr<XMainActions> m_actions;
    std::unique_ptr<XLayerStack> m_layers;
    std::unique_ptr<XVectorStack> m_vectors;
    std::unique_ptr<XLayerTree> m_tree;
    std::unique_ptr<XRasterNotices> m_rasterNotices;
    std::unique_ptr<XObjectPicker> m_picker;
    XStatusWidget* m_status = nullptr;
    std::unique_ptr<XReadOut> m_readOut;
    std::unique_ptr<XJobRunner> m_loads;
    std::unique_ptr<XVectorActions> m_vectorActions;
    std::unique_ptr<XFileActions> m_files;
    std::unique_ptr<XViewActions> m_viewActions;
    std::unique_ptr<XLayerActions> m_layerActions;
    std::unique_ptr<XEnhanceActions> m_enhanceActions;
    std::unique_ptr<XObjectActions> m_objectActions;
    std::unique_ptr<XDrawActions> m_drawActions;
    std::unique_ptr<XClickActions> m_clickActions;
    std::unique_ptr<XEditActions> m_editActions;
    std::unique_ptr<XSaveActions> m_saveActions;
    std::unique_ptr<XAutosaveActions> m_autosave;
    QDockWidget* m_attributes = nullptr;
    XAttributesWidget* m_attributeRows = nullptr;
    bool m_wereAttributesShown = false;
    XKeyMapDialog* m_keyMap = nullptr;
    XHintLabel* m_hint = nullptr;
    std::unique_ptr<XFocusKeeper> m_focus;
    XLevelBar* m_levelBar = nullptr;
    XNoticeBar* m_noticeBar = nullptr;
    XRecoveryBar* m_recoveryBar = nullptr;
    std::unique_ptr<XJobRunner> m_jobs;
    std::unique_ptr<XLevelActions> m_levelActions;
    int m_shownRows = 0;
    int m_shownRasters = 0;
    bool m_isRedrawDue = false; // once the pass at hand has ended
    bool m_isFirstShow = true;
};
