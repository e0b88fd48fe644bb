#pragma once

#include "foundation/platform/XMessageWindow.h"
#include "vecprop/XObjectEditModel.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTabWidget;
class XFieldPageWidget;
class XObjectPreviewWidget;
class XVertexTableWidget;

/// The window of every object dialog: pages of fields beside a picture of what they give.
///
/// The objects are lent. They change when the dialog is confirmed, and then only in members that
/// were touched; until then drafts are edited and drawn. The object dialog of north arrows is the
/// exception (CNorthArrowDlg.h). While something is refused OK is disabled, and the reason stands
/// beneath its field, or below when that is on another page. Enter confirms, Escape cancels.
/// Threads: UI thread.
class XAPI XObjectDlg : public QDialog, public XMessageWindow
{
public:
    /// @param objects  at least one, of the class that the dialog edits
    XObjectDlg(XObjectDialog dialog, std::vector<XvcObj*> objects, QWidget* parent = nullptr);
    ~XObjectDlg() override;

    int DoModal(); ///< 1 for OK, 2 for Cancel
    XObjectEditModel& GetModel() { return m_model; }
    const XObjectEditModel& GetModel() const { return m_model; }

    /// Cancels every open dialog whose objects have gone, by the test of its model.
    static void CheckAllObjects();

    void accept() override; ///< does nothing while something is refused; see CheckAllObjects

private:
    void ShowModel();
    bool IsRefusalSeen() const; // on the page that is shown

    XObjectEditModel m_model; // above the widgets, which use it
    QTabWidget* m_tabs;
    std::vector<XFieldPageWidget*> m_pages;
    XVertexTableWidget* m_vertices = nullptr;
    XObjectPreviewWidget* m_preview;
    QLabel* m_refusal;
    QPushButton* m_ok;
};
