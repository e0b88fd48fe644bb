#pragma once

#include <QWidget>

#include <utility>
#include <vector>

class QLabel;
class QTableView;
class XDMCompManager;
class XMainActions;
class XObjectPicker;
class XPropertyTableModel;
class XVectorStack;
class XvcObj;
struct tagXVectorPlace;

/// The attributes panel: what the selected object is, how large, and what its file tells of it. Shows
/// the picker's object, or what several selected ones have in common; chosen rows can be copied, and the whole.
class XAttributesWidget : public QWidget
{
public:
    XAttributesWidget(XObjectPicker& picker, XVectorStack& vectors, XDMCompManager& manager,
                      XMainActions& actions, QWidget* parent);
    ~XAttributesWidget() override;

    /// Tells of an object of a locked layer, which is not selected, until something else is; null takes
    /// that back. The object is read at once.
    void ShowLocked(const XvcObj* object, tagXVectorPlace place);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowObject();
    void ShowRows(std::vector<std::pair<QString, QString>> rows);
    void CopyChosen();

    XObjectPicker& m_picker;
    XVectorStack& m_vectors;
    XDMCompManager& m_manager;
    XPropertyTableModel* m_rows;
    QLabel* m_none;
    QTableView* m_table;
    bool m_isLockedShown = false;
};
