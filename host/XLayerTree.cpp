#include "host/XLayerTree.h"

#include <algorithm>
#include <utility>

using Kind = tagXTreeNode::Kind;

XLayerTree::XLayerTree(XLayerStack& rasters, XVectorStack& vectors)
    : m_rasters(rasters), m_vectors(vectors)
{
    m_rasters.AddObserver([this](LayerChange change) { FollowRasters(change); });
    m_vectors.AddObserver([this](LayerChange change) { FollowVectors(change); });
}

void XLayerTree::AddObserver(std::function<void(LayerChange)> observer)
{
    m_observers.push_back(std::move(observer));
}

void XLayerTree::Tell(LayerChange change)
{
    for (const auto& observer : m_observers)
        observer(change);
}

// What was opened is the current row; a raster is also when it became the current raster.
void XLayerTree::FollowRasters(LayerChange change)
{
    const int count = m_rasters.GetCount();
    const bool isMore = change == LayerChange::List && count > m_rasterCount;
    if (change == LayerChange::List) m_rasterCount = count;
    if (isMore || m_current.IsRaster() || change == LayerChange::Current)
        m_current = {Kind::Raster, m_rasters.GetCurrent(), -1};
    Mend();
    Tell(change);
}

void XLayerTree::FollowVectors(LayerChange change)
{
    const int count = m_vectors.GetCount();
    const bool isMore = change == LayerChange::List && count > m_vectorCount;
    if (change == LayerChange::List) m_vectorCount = count;
    if (isMore)
        m_current = {Kind::Vector, 0, -1};
    else if (m_current.IsVector() && change == LayerChange::List)
        FindCurrentAgain();
    Mend();
    Tell(change);
}

void XLayerTree::FindCurrentAgain()
{
    for (int i = 0; i < m_vectors.GetCount(); ++i) {
        const tagXVectorFile& file = *m_vectors.GetAt(i);
        if (file.base.get() != m_currentBase) continue;
        m_current = {Kind::Vector, i, -1};
        for (int j = 0; file.layers.size() > 1 && j < static_cast<int>(file.layers.size()); ++j)
            if (file.layers[static_cast<std::size_t>(j)].layer == m_currentLayer)
                m_current.layer = j;
    }
}

void XLayerTree::Mend()
{
    if (m_current.IsVector()) {
        m_current.index = std::min(m_current.index, m_vectors.GetCount() - 1);
        if (!m_vectors.IsPlace(m_current.GetPlace())) m_current.layer = -1;
    }
    int row = 0;
    int child = 0;
    if (!FindRow(m_current, row, child)) m_current = GetNode(0);
    if (m_current.kind == Kind::None) m_current = {};
    const tagXVectorFile* file = m_vectors.GetAt(m_current.GetPlace().file);
    const tagXVectorLayer* layer = m_vectors.GetLayerAt(m_current.GetPlace());
    m_currentBase = file ? file->base.get() : nullptr;
    m_currentLayer = layer ? layer->layer : nullptr;
}

int XLayerTree::GetChildCount(int row) const
{
    const tagXVectorFile* file = m_vectors.GetAt(row);
    return file && file->layers.size() > 1 ? static_cast<int>(file->layers.size()) : 0;
}

tagXTreeNode XLayerTree::GetNode(int row, int child) const
{
    if (row < 0 || row >= GetRowCount() || child >= GetChildCount(row)) return {};
    if (row < m_vectors.GetCount()) return {Kind::Vector, row, std::max(child, -1)};
    return {Kind::Raster, row - m_vectors.GetCount(), -1};
}

bool XLayerTree::FindRow(const Node& node, int& row, int& child) const
{
    if (node.kind == Kind::None) return false;
    row = node.IsVector() ? node.index : m_vectors.GetCount() + node.index;
    child = node.layer;
    return GetNode(row, child) == node;
}

bool XLayerTree::IsNode(const Node& node) const
{
    int row = 0;
    int child = 0;
    return FindRow(node, row, child);
}

XLayerTree::Node XLayerTree::FindNode(const XvcObj& object) const
{
    const tagXVectorPlace place = m_vectors.Find(object);
    if (place.file < 0) return {};
    const bool isOne = m_vectors.GetAt(place.file)->layers.size() < 2;
    return {Node::Kind::Vector, place.file, isOne ? -1 : place.layer};
}

void XLayerTree::SetCurrent(const Node& node)
{
    if (node == m_current || !IsNode(node)) return;
    m_current = node;
    Mend();
    if (node.IsRaster() && m_rasters.GetCurrent() != node.index)
        m_rasters.SetCurrent(node.index); // which tells
    else
        Tell(LayerChange::Current);
}

tagXTreeNode XLayerTree::GetNeighbour(int step) const
{
    std::vector<Node> listed;
    for (int row = 0; row < GetRowCount(); ++row)
        for (int child = -1; child < GetChildCount(row); ++child)
            listed.push_back(GetNode(row, child));
    const auto here = std::find(listed.begin(), listed.end(), m_current);
    const auto to = (here - listed.begin()) + step;
    return here != listed.end() && to >= 0 && to < static_cast<long>(listed.size())
               ? listed[static_cast<std::size_t>(to)]
               : Node();
}

QString XLayerTree::GetName(const Node& node) const
{
    if (node.IsVector()) return m_vectors.GetName(node.GetPlace());
    const tagXLayer* layer = m_rasters.GetAt(node.index);
    return node.IsRaster() && layer ? layer->name : QString();
}

QString XLayerTree::GetPath(const Node& node) const
{
    if (node.IsVector()) return IsNode(node) ? m_vectors.GetAt(node.index)->path : QString();
    const tagXLayer* layer = m_rasters.GetAt(node.index);
    return node.IsRaster() && layer ? layer->path : QString();
}

QString XLayerTree::GetTip(const Node& node) const
{
    QString tip = GetPath(node);
    if (node.layer >= 0) tip = GetName(node) + " in " + tip;
    if (IsEdited(node)) tip += (tip.isEmpty() ? "" : "\n") + QString("Not saved");
    if (IsLocked(node)) tip += "\nLocked: neither picked nor changed";
    return tip;
}

bool XLayerTree::Rename(const Node& node, const QString& name)
{
    if (node.IsVector()) return m_vectors.Rename(node.GetPlace(), name);
    return node.IsRaster() && m_rasters.Rename(node.index, name);
}

bool XLayerTree::IsVisible(const Node& node) const
{
    return node.IsVector() ? m_vectors.IsVisible(node.GetPlace())
                           : node.IsRaster() && m_rasters.IsVisible(node.index);
}

void XLayerTree::SetVisible(const Node& node, bool isVisible)
{
    if (node.IsVector())
        m_vectors.SetVisible(node.GetPlace(), isVisible);
    else if (node.IsRaster())
        m_rasters.SetVisible(node.index, isVisible);
}

bool XLayerTree::IsLocked(const Node& node) const
{
    return node.IsVector() && m_vectors.IsLocked(node.GetPlace());
}

bool XLayerTree::IsEdited(const Node& node) const
{
    return node.IsVector() && m_vectors.IsEdited(node.GetPlace());
}

int XLayerTree::GetSiblingCount(const Node& node) const
{
    if (!IsNode(node)) return 0;
    if (node.IsRaster()) return m_rasters.GetCount();
    return node.layer < 0 ? m_vectors.GetCount() : GetChildCount(node.index);
}

int XLayerTree::GetSiblingIndex(const Node& node) const
{
    return node.layer >= 0 ? node.layer : node.index;
}

void XLayerTree::Move(const Node& node, int to)
{
    const int count = GetSiblingCount(node);
    const int held = std::clamp(to, 0, std::max(0, count - 1));
    if (count == 0 || held == GetSiblingIndex(node)) return;
    if (node.IsRaster())
        m_rasters.Move(node.index, held);
    else
        m_vectors.Move(node.GetPlace(), held);
}

void XLayerTree::Close(const Node& node)
{
    if (node.IsVector())
        m_vectors.Close(node.GetPlace());
    else if (node.IsRaster())
        m_rasters.Close(node.index);
}

void XLayerTree::CloseAll()
{
    m_vectors.CloseAll();
    m_rasters.CloseAll();
}

bool XLayerTree::GetExtent(const Node& node, double (&box)[4]) const
{
    return node.IsVector() ? m_vectors.GetExtent(node.GetPlace(), box)
                           : node.IsRaster() && m_rasters.GetExtent(node.index, box);
}

bool XLayerTree::GetTotalExtent(double (&box)[4]) const
{
    bool isAny = false;
    for (int row = 0; row < GetRowCount(); ++row) {
        double one[4] = {0, 0, 0, 0};
        if (!GetExtent(GetNode(row), one)) continue;
        for (int i = 0; i < 4; ++i)
            box[i] = !isAny ? one[i] : i < 2 ? std::min(box[i], one[i]) : std::max(box[i], one[i]);
        isAny = true;
    }
    return isAny;
}

bool XLayerTree::IsFarFromOthers(int row) const
{
    double own[4] = {0, 0, 0, 0};
    if (!GetExtent(GetNode(row), own)) return false;
    bool isAny = false;
    for (int i = 0; i < GetRowCount(); ++i) {
        double other[4] = {0, 0, 0, 0};
        if (i == row || !GetExtent(GetNode(i), other)) continue;
        isAny = true;
        if (own[0] <= other[2] && own[2] >= other[0] && own[1] <= other[3] && own[3] >= other[1])
            return false;
    }
    return isAny;
}
