#pragma once

#include <QWidget>

class QLabel;
class QTableView;
class XDMCompManager;
class XMainActions;
class XObjectPicker;
class XPropertyTableModel;
class XVectorStack;

/// The attributes panel: what the selected object is, how large, and what its file tells of it. Shows
/// the picker's object; chosen rows can be copied, and the whole.
class XAttributesWidget : public QWidget
{
public:
    XAttributesWidget(XObjectPicker& picker, XVectorStack& vectors, XDMCompManager& manager,
                      XMainActions& actions, QWidget* parent);
    ~XAttributesWidget() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowObject();
    void CopyChosen();

    XObjectPicker& m_picker;
    XVectorStack& m_vectors;
    XDMCompManager& m_manager;
    XPropertyTableModel* m_rows;
    QLabel* m_none;
    QTableView* m_table;
};
