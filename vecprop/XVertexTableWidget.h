#pragma once

#include "foundation/base/XApi.h"

#include <QWidget>

class QLabel;
class QTableView;
class XVertexTableModel;

/// The table of vertices with what is done to it: add, remove, copy, paste.
///
/// Keys: F2 or typing edits a cell, Insert adds a row behind the current one, Delete removes the
/// rows that are selected, Ctrl+C and Ctrl+V copy and paste rows.
class XAPI XVertexTableWidget : public QWidget
{
public:
    explicit XVertexTableWidget(XVertexTableModel& model, QWidget* parent = nullptr);

    void ShowModel(); ///< what is refused, and what can be done

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Add();
    void Remove();
    void Copy();
    void Paste();
    int GetRow() const; ///< -1 when there is none
    void GoTo(int row);

    XVertexTableModel& m_model;
    QTableView* m_table;
    QLabel* m_error;
    QWidget* m_remove;
    QWidget* m_copy;
    QString m_refusal; // of the last paste
};
