#pragma once

#include "host/XLayerStack.h"
#include "host/XVectorStack.h"

#include <functional>
#include <vector>

/// A row of the layer tree: an open file, or a layer of a vector file.
struct tagXTreeNode
{
    enum class Kind { None, Vector, Raster };
    Kind kind = Kind::None;
    int index = -1; ///< of the file in its stack
    int layer = -1; ///< of a vector file that has several; -1 for the file itself

    bool IsVector() const { return kind == Kind::Vector; }
    bool IsRaster() const { return kind == Kind::Raster; }
    tagXVectorPlace GetPlace() const { return {IsVector() ? index : -1, layer}; }
    friend bool operator==(const tagXTreeNode&, const tagXTreeNode&) = default;
};

/// All that is open as one tree, from front to back: the vector files, each with its layers when it
/// has more than one, then the rasters. One row is the current one, which commands mean.
///
/// Holds no layers itself: every change goes to one of the two stacks, and what they tell is told
/// here again, with the current row already right. Both outlive the tree. User interface thread.
class XLayerTree
{
public:
    using Node = tagXTreeNode;

    XLayerTree(XLayerStack& rasters, XVectorStack& vectors);

    void AddObserver(std::function<void(LayerChange)> observer);
    XLayerStack& GetRasters() const { return m_rasters; }
    XVectorStack& GetVectors() const { return m_vectors; }

    int GetRowCount() const { return m_vectors.GetCount() + m_rasters.GetCount(); }
    int GetChildCount(int row) const;
    Node GetNode(int row, int child = -1) const; ///< kind None out of range
    /// @return false for a node that there is not; child is -1 for a file
    bool FindRow(const Node& node, int& row, int& child) const;
    bool IsNode(const Node& node) const;
    /// The row of the layer that an object lies in; that of its file when it has no other.
    Node FindNode(const XvcObj& object) const;

    const Node& GetCurrent() const { return m_current; } ///< kind None when nothing is open
    void SetCurrent(const Node& node);
    /// The row before or behind the current one as it is listed; kind None at the ends.
    Node GetNeighbour(int step) const;

    QString GetName(const Node& node) const;
    QString GetPath(const Node& node) const;
    QString GetTip(const Node& node) const;
    bool Rename(const Node& node, const QString& name);
    bool IsVisible(const Node& node) const;
    void SetVisible(const Node& node, bool isVisible);
    bool IsLocked(const Node& node) const; ///< rasters never are
    bool IsEdited(const Node& node) const; ///< holds what is not saved

    /// How many rows there are among which a row can be moved, and where it stands.
    int GetSiblingCount(const Node& node) const;
    int GetSiblingIndex(const Node& node) const;
    /// Moves a row among those of its kind in its file; held at the first and the last place.
    void Move(const Node& node, int to);
    void Close(const Node& node);
    void CloseAll();

    bool GetExtent(const Node& node, double (&box)[4]) const;
    /// Whether other rows have an extent, and none of them meets that of this one.
    bool IsFarFromOthers(int row) const;
    bool GetTotalExtent(double (&box)[4]) const; ///< of all that is open, hidden or not

private:
    void FollowRasters(LayerChange change);
    void FollowVectors(LayerChange change);
    void FindCurrentAgain();
    void Mend();
    void Tell(LayerChange change);

    XLayerStack& m_rasters;
    XVectorStack& m_vectors;
    std::vector<std::function<void(LayerChange)>> m_observers;
    Node m_current;
    // what the current row is, to find it again where rows have moved; compared only
    const XvcBase* m_currentBase = nullptr;
    const XvcLayer* m_currentLayer = nullptr;
    int m_rasterCount = 0; // as last told
    int m_vectorCount = 0;
};
