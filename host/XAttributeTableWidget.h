#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QTableView;
class XAttributeTableModel;
class XHostView;
class XLayerTree;
class XMainActions;
class XObjectPicker;
class XvcLayer;
class XvcObj;

/// The attribute table: all objects of the current vector layer, which can be searched and sorted. The
/// row that is chosen selects its object in the view and brings it into sight; the object selected in
/// the view is the row that is chosen. A double click fits the object. Chosen rows are copied as
/// text. While nobody sees it, it lists nothing and costs nothing.
class XAttributeTableWidget : public QWidget
{
public:
    XAttributeTableWidget(XLayerTree& tree, XObjectPicker& picker, XHostView& view,
                          XMainActions& actions, QWidget* parent);
    ~XAttributeTableWidget() override;

    void GiveBack(); ///< the layer, which may go
    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void MakeTable(XMainActions& actions);
    const XvcLayer* FindLayer(QString& title) const;
    void Follow();
    void FollowPicker();
    void Search();
    void ChooseRow(int row);
    void BringIntoView(const XvcObj& object);
    void Copy();
    void ShowCount();

    XLayerTree& m_tree;
    XObjectPicker& m_picker;
    XHostView& m_view;
    XAttributeTableModel* m_rows;
    QLabel* m_title;
    QLabel* m_count;
    QLineEdit* m_search;
    QTableView* m_table;
    QTimer m_typing; // until the search is typed
    bool m_isChoosing = false;
};
