#pragma once

#include <QWidget>

class QListView;
class QSlider;
class QSpinBox;
class QTableView;
class XLayerListModel;
class XLayerStack;
class XMainActions;
class XPropertyTableModel;

/// The layers panel: the list with its check marks, the buttons that move and close the current
/// layer, its opacity, and what its file is. Shows the stack; all changes go through it.
class XLayersWidget : public QWidget
{
public:
    XLayersWidget(XLayerStack& stack, XMainActions& actions, QWidget* parent);
    ~XLayersWidget() override;

private:
    QWidget* MakeList();
    QWidget* MakeButtons(XMainActions& actions);
    QWidget* MakeOpacity();
    QWidget* MakeProperties();
    void ShowStack();
    void ShowProperties();

    XLayerStack& m_stack;
    XLayerListModel* m_layers;
    XPropertyTableModel* m_properties;
    QListView* m_list = nullptr;
    QSlider* m_opacity = nullptr;
    QSpinBox* m_opacityBox = nullptr;
    QTableView* m_table = nullptr;
};
