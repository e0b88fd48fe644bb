#pragma once

#include <QSet>
#include <QString>
#include <QWidget>

#include <functional>

class QMenu;
class QSlider;
class QSpinBox;
class QTableView;
class QTreeView;
class XLayerTree;
class XLayerTreeModel;
class XMainActions;
class XPropertyTableModel;

/// The layers panel: the tree with its check marks and locks, the buttons that move and close the
/// current layer, the opacity of a raster, and what its file is. Shows the tree; all changes go
/// through it.
///
/// A double click chooses a row for work in the picture; on the colour of a vector layer it chooses
/// another colour. Keys in the tree: F2 renames, Del closes, Alt+Up and Alt+Down move, Space shows and hides.
class XLayersWidget : public QWidget
{
public:
    XLayersWidget(XLayerTree& tree, XMainActions& actions, QWidget* parent);
    ~XLayersWidget() override;

    /// Called when a row was chosen with a double click.
    void SetPicked(std::function<void()> picked) { m_picked = std::move(picked); }
    /// Receives what is worth a line in the status bar.
    void SetNotice(std::function<void(const QString&)> notice);
    void RenameCurrent(); ///< opens the box of the current row's name

private:
    QWidget* MakeTree(XMainActions& actions);
    void MakeMenu(XMainActions& actions);
    QWidget* MakeButtons(XMainActions& actions);
    QWidget* MakeOpacity();
    QWidget* MakeProperties();
    void ShowTree();
    void ExpandRows();
    void ShowProperties();

    std::function<void()> m_picked;
    XLayerTree& m_tree;
    XLayerTreeModel* m_layers;
    XPropertyTableModel* m_properties;
    QTreeView* m_view = nullptr;
    QMenu* m_menu = nullptr;
    QWidget* m_opacityRow = nullptr;
    QSlider* m_opacity = nullptr;
    QSpinBox* m_opacityBox = nullptr;
    QTableView* m_table = nullptr;
    QSet<QString> m_collapsed; // paths of files that the user closed up
    bool m_isExpanding = false;
};
