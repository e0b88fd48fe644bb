#include "host/XAttributeTableModel.h"

#include "foundation/platform/XQtText.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XvcLayer.h"
#include "host/XObjectReport.h"
#include "host/XVectorVisit.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

enum Column { Number, Kind, Name, FirstAttribute = Kind, PlainCount = Name + 1 };

constexpr double kNone = std::numeric_limits<double>::infinity(); // sorts behind all numbers

} // namespace

void XAttributeTableModel::SetLayer(const XvcLayer* layer)
{
    if (layer == m_layer) return Refresh();
    beginResetModel();
    m_layer = layer;
    m_search.clear();
    m_sortColumn = Number;
    m_sortOrder = Qt::AscendingOrder;
    m_entries.clear();
    m_plain.clear();
    m_table = nullptr;
    ListObjects();
    Arrange();
    endResetModel();
}

void XAttributeTableModel::Refresh()
{
    if (!ListObjects()) return;
    beginResetModel();
    Arrange();
    endResetModel();
}

// False when the objects are those that are listed.
bool XAttributeTableModel::ListObjects()
{
    std::vector<tagEntry> entries;
    const auto table = m_layer ? m_layer->GetAttributes() : nullptr;
    if (m_layer) {
        entries.reserve(static_cast<std::size_t>(m_layer->GetCount()));
        XfnVisitObjects(*m_layer, [&](XvcObj& object) {
            entries.push_back({&object, table ? table->GetRowOf(object.GetRecord()) : -1});
            return true;
        });
    }
    const auto isSame = [](const tagEntry& a, const tagEntry& b) {
        return a.object == b.object && a.record == b.record;
    };
    const bool hasNames = !table || table->GetNumOfColumns() == 0;
    if (!hasNames && table == m_table &&
        std::equal(entries.begin(), entries.end(), m_entries.begin(), m_entries.end(), isSame))
        return false;
    m_table = hasNames ? nullptr : table;
    m_entries = std::move(entries);
    m_plain.clear();
    for (std::size_t i = 0; hasNames && i < m_entries.size(); ++i) {
        const XvcObj& object = *m_entries[i].object;
        m_plain.push_back({XfnClassText(object.GetRuntimeClass()->m_lpszClassName),
                           XfnToQString(object.GetName()).simplified()});
    }
    return true;
}

void XAttributeTableModel::SetSearch(const QString& text)
{
    const QString wanted = text.simplified();
    if (wanted == m_search) return;
    beginResetModel();
    m_search = wanted;
    Arrange();
    endResetModel();
}

void XAttributeTableModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= columnCount()) return;
    beginResetModel();
    m_sortColumn = column;
    m_sortOrder = order;
    Arrange();
    endResetModel();
}

void XAttributeTableModel::Arrange()
{
    m_shown.resize(m_entries.size());
    std::iota(m_shown.begin(), m_shown.end(), 0);
    if (!m_search.isEmpty())
        m_shown.erase(std::remove_if(m_shown.begin(), m_shown.end(),
                                     [this](int entry) { return !IsMatch(entry); }),
                      m_shown.end());
    const bool isDown = m_sortOrder == Qt::DescendingOrder;
    if (m_sortColumn == Number) {
        if (isDown) std::reverse(m_shown.begin(), m_shown.end());
        return;
    }
    const std::vector<double> keys =
        IsNumber(m_sortColumn) ? GetNumbers(m_sortColumn) : GetRanks(m_sortColumn);
    std::stable_sort(m_shown.begin(), m_shown.end(), [&](int a, int b) {
        const double x = keys[static_cast<std::size_t>(a)];
        const double y = keys[static_cast<std::size_t>(b)];
        if (x == kNone || y == kNone) return y == kNone && x != kNone;
        return isDown ? x > y : x < y;
    });
}

bool XAttributeTableModel::IsNumber(int column) const
{
    return column == Number ||
           (m_table && m_table->GetColumnType(column - FirstAttribute) != XAttributeTable::kText);
}

std::vector<double> XAttributeTableModel::GetNumbers(int column) const
{
    std::vector<double> keys(m_entries.size(), kNone);
    const int attribute = column - FirstAttribute;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const int record = m_entries[i].record;
        if (record < 0 || !m_table->IsSet(record, attribute)) continue;
        const double value = m_table->GetReal(record, attribute);
        if (std::isfinite(value)) keys[i] = value;
    }
    return keys;
}

// The place of each text among the different ones: most columns have few of them.
std::vector<double> XAttributeTableModel::GetRanks(int column) const
{
    QHash<QString, int> places;
    std::vector<QString> texts;
    std::vector<int> own(m_entries.size());
    for (std::size_t i = 0; i < own.size(); ++i) {
        const QString text = GetCell(static_cast<int>(i), column);
        const auto found = places.constFind(text);
        own[i] = found != places.constEnd() ? *found : static_cast<int>(texts.size());
        if (found != places.constEnd()) continue;
        places.insert(text, own[i]);
        texts.push_back(text);
    }
    std::vector<int> order(texts.size());
    std::iota(order.begin(), order.end(), 0);
    const auto at = [&](int i) -> const QString& { return texts[static_cast<std::size_t>(i)]; };
    std::sort(order.begin(), order.end(), [&](int a, int b) {
        const int compared = QString::compare(at(a), at(b), Qt::CaseInsensitive);
        return compared != 0 ? compared < 0 : at(a) < at(b);
    });
    std::vector<double> ranks(texts.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        ranks[static_cast<std::size_t>(order[i])] =
            at(order[i]).isEmpty() ? kNone : static_cast<double>(i);
    std::vector<double> keys(own.size());
    for (std::size_t i = 0; i < own.size(); ++i)
        keys[i] = ranks[static_cast<std::size_t>(own[i])];
    return keys;
}

QString XAttributeTableModel::GetCell(int entry, int column) const
{
    const auto at = static_cast<std::size_t>(entry);
    if (column == Number) return QString::number(entry + 1);
    if (!m_table) return column == Kind ? m_plain[at].kind : m_plain[at].name;
    const int record = m_entries[at].record;
    if (record < 0) return QString();
    return XfnToQString(m_table->GetText(record, column - FirstAttribute));
}

bool XAttributeTableModel::IsMatch(int entry) const
{
    for (int column = 0; column < columnCount(); ++column)
        if (GetCell(entry, column).contains(m_search, Qt::CaseInsensitive)) return true;
    return false;
}

XvcObj* XAttributeTableModel::GetObjectAt(int row) const
{
    if (!m_layer || row < 0 || row >= rowCount()) return nullptr;
    const int entry = m_shown[static_cast<std::size_t>(row)];
    XvcObj* wanted = m_entries[static_cast<std::size_t>(entry)].object;
    const bool isGone =
        XfnVisitObjects(*m_layer, [wanted](XvcObj& object) { return &object != wanted; });
    return isGone ? nullptr : wanted;
}

int XAttributeTableModel::FindRow(const XvcObj* object) const
{
    const auto found = std::find_if(m_shown.begin(), m_shown.end(), [&](int entry) {
        return m_entries[static_cast<std::size_t>(entry)].object == object;
    });
    return found == m_shown.end() ? -1 : static_cast<int>(found - m_shown.begin());
}

QString XAttributeTableModel::GetText(const std::vector<int>& rows) const
{
    QString text;
    const auto addLine = [&](const auto& getCell) {
        for (int column = 0; column < columnCount(); ++column)
            text += (column ? "\t" : "") + getCell(column);
        text += "\n";
    };
    addLine([this](int column) {
        return headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    });
    for (const int row : rows)
        addLine([&](int column) { return data(index(row, column), Qt::DisplayRole).toString(); });
    return text;
}

int XAttributeTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int XAttributeTableModel::columnCount(const QModelIndex& parent) const
{
    if (parent.isValid() || !m_layer) return 0;
    return m_table ? FirstAttribute + m_table->GetNumOfColumns() : static_cast<int>(PlainCount);
}

QVariant XAttributeTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount()) return QVariant();
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>((IsNumber(index.column()) ? Qt::AlignRight : Qt::AlignLeft) |
                                Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return QVariant();
    // a row is one line, whatever the file holds
    return GetCell(m_shown[static_cast<std::size_t>(index.row())], index.column()).simplified();
}

QVariant XAttributeTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return QVariant();
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>((IsNumber(section) ? Qt::AlignRight : Qt::AlignLeft) |
                                Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return QVariant();
    if (section == Number) return "Object";
    if (!m_table) return section == Kind ? "Kind" : "Name";
    return XfnToQString(m_table->GetColumnName(section - FirstAttribute)).simplified();
}
