#include "vecprop/XVertexTableModel.h"

#include "foundation/base/XNumber.h"
#include "foundation/platform/XQtText.h"
#include "vecprop/XFieldText.h"

#include <QColor>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace {

constexpr const char* kNoNumber = "Enter a number.";

// The separators of a line, the surest first: a comma may be the point of a number, so it parts
// numbers only where nothing else does.
QStringList SplitLine(const QString& line)
{
    if (line.contains('\t')) return line.split('\t');
    if (line.contains(';')) return line.split(';');
    static const QRegularExpression blanks("\\s+");
    if (line.contains(blanks)) {
        QStringList parts = line.split(blanks);
        for (QString& part : parts) // "1.5, 2.5"
            if (part.endsWith(',')) part.chop(1);
        return parts;
    }
    return line.split(',');
}

bool ReadVertex(const QString& line, tagXVector3& vertex)
{
    const QStringList parts = SplitLine(line);
    if (parts.size() < 2 || parts.size() > 3) return false;
    double* const to[] = {&vertex.x, &vertex.y, &vertex.z};
    for (int i = 0; i < parts.size(); ++i)
        if (!XfnReadWholeNumber(XfnFromQString(parts[i]), "", *to[i])) return false;
    return true;
}

double GetPart(const tagXVector3& vertex, int column)
{
    return column == XVertexTableModel::kX   ? vertex.x
           : column == XVertexTableModel::kY ? vertex.y
                                             : vertex.z;
}

} // namespace

XVertexTableModel::XVertexTableModel(QObject* parent) : QAbstractTableModel(parent) {}

void XVertexTableModel::SetVertices(const XVertexArray& vertices)
{
    beginResetModel();
    m_vertices = vertices;
    m_refused.clear();
    m_isTouched = 0;
    endResetModel();
}

void XVertexTableModel::SetRule(const char* noun, const char* plural, int least)
{
    m_noun = noun;
    m_plural = plural;
    m_least = least;
}

XString XVertexTableModel::GetError() const
{
    if (m_isTouched && m_vertices.GetSize() < m_least)
        return m_least == 1 ? XString("At least 1 ") + m_noun + " is needed."
                            : XfnFormat("At least %d %s are needed.", m_least, m_plural);
    if (m_refused.empty()) return {};
    const auto [row, column] = m_refused.begin()->first;
    return XfnFormat("Row %d, %c: enter a number.", row + 1, "xyz"[column]);
}

int XVertexTableModel::InsertBehind(int row)
{
    const int count = m_vertices.GetSize();
    const int at = std::clamp(row + 1, 0, count);
    tagXVector3 vertex{0.0, 0.0, 0.0};
    if (at > 0 && at < count) {
        const tagXVector3 a = m_vertices.GetAt(at - 1), b = m_vertices.GetAt(at);
        vertex = {a.x / 2 + b.x / 2, a.y / 2 + b.y / 2, a.z / 2 + b.z / 2};
    } else if (count > 0) {
        const tagXVector3 last = m_vertices.GetAt(at == 0 ? 0 : count - 1);
        vertex = last;
        if (count > 1) {
            const tagXVector3 before = m_vertices.GetAt(at == 0 ? 1 : count - 2);
            vertex = {last.x + (last.x - before.x), last.y + (last.y - before.y), last.z};
        }
    }
    beginInsertRows({}, at, at);
    m_vertices.InsertAt(at, vertex);
    ShiftRefused(at, 1);
    endInsertRows();
    Changed();
    return at;
}

void XVertexTableModel::Remove(int first, int last)
{
    first = std::max(first, 0);
    last = std::min(last, m_vertices.GetSize() - 1);
    if (first > last) return;
    beginRemoveRows({}, first, last);
    m_vertices.RemoveAt(first, last - first + 1);
    ShiftRefused(first, first - last - 1);
    endRemoveRows();
    Changed();
}

int XVertexTableModel::Paste(const QString& text, int row, XString& error)
{
    std::vector<tagXVector3> pasted;
    const QStringList lines = text.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (line.isEmpty()) continue;
        tagXVector3 vertex{0.0, 0.0, 0.0};
        if (!ReadVertex(line, vertex)) {
            error.Format("Line %d is not two or three numbers.", i + 1);
            return 0;
        }
        pasted.push_back(vertex);
    }
    if (pasted.empty()) {
        error = "There are no numbers to paste.";
        return 0;
    }
    const int count = static_cast<int>(pasted.size());
    const int at = std::clamp(row + 1, 0, m_vertices.GetSize());
    // built anew in one go: thousands of inserts in the middle would each move the rest
    XVertexArray joined;
    joined.Reserve(m_vertices.GetSize() + count);
    for (int i = 0; i < at; ++i)
        joined.Add(m_vertices.GetAt(i));
    for (const tagXVector3& vertex : pasted)
        joined.Add(vertex);
    for (int i = at; i < m_vertices.GetSize(); ++i)
        joined.Add(m_vertices.GetAt(i));
    beginInsertRows({}, at, at + count - 1);
    m_vertices = std::move(joined);
    ShiftRefused(at, count);
    endInsertRows();
    Changed();
    return count;
}

QString XVertexTableModel::Copy(int first, int last) const
{
    QString text;
    first = std::max(first, 0);
    last = std::min(last, m_vertices.GetSize() - 1);
    for (int row = first; row <= last; ++row)
        for (int column = 0; column < kColumnCount; ++column)
            text += XfnToQString(XfnFormatShortest(GetPart(m_vertices.GetAt(row), column))) +
                    (column + 1 < kColumnCount ? '\t' : '\n');
    return text;
}

int XVertexTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_vertices.GetSize();
}

int XVertexTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumnCount;
}

QVariant XVertexTableModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto refused = m_refused.find({index.row(), index.column()});
    const bool isRefused = refused != m_refused.end();
    const auto write = [&](int places) {
        return XfnToQString(
            XfnFormatPlaces(GetPart(m_vertices.GetAt(index.row()), index.column()), places));
    };
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (isRefused) return refused->second;
        return write(role == Qt::EditRole ? -1 : m_places);
    case Qt::ToolTipRole:
        if (isRefused) return kNoNumber;
        return write(m_places) == write(-1) ? QVariant() : write(-1);
    case Qt::AccessibleDescriptionRole:
        return isRefused ? QVariant(kNoNumber) : QVariant();
    case Qt::BackgroundRole:
        return isRefused ? QVariant(QColor(0xC0, 0x30, 0x30)) : QVariant();
    case Qt::ForegroundRole:
        return isRefused ? QVariant(QColor(Qt::white)) : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant XVertexTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return section + 1;
    return QString("xyz").mid(section, 1);
}

Qt::ItemFlags XVertexTableModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.isValid() ? flags | Qt::ItemIsEditable : flags;
}

bool XVertexTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) return false;
    const QString typed = value.toString();
    if (typed == data(index, Qt::EditRole).toString()) return true; // looking is no change
    tagXVector3 vertex = m_vertices.GetAt(index.row());
    double* const parts[] = {&vertex.x, &vertex.y, &vertex.z};
    const std::pair<int, int> cell(index.row(), index.column());
    if (XfnReadWholeNumber(XfnFromQString(typed), "", *parts[index.column()])) {
        m_refused.erase(cell);
        m_vertices.SetAt(index.row(), vertex);
    } else {
        m_refused[cell] = typed;
    }
    Q_EMIT dataChanged(index, index);
    Changed();
    return true;
}

void XVertexTableModel::Changed()
{
    m_isTouched = 1;
    if (m_handler) m_handler();
}

// Refused cells keep to their rows when rows come (count above 0) or go before them.
void XVertexTableModel::ShiftRefused(int row, int count)
{
    std::map<std::pair<int, int>, QString> shifted;
    for (const auto& [cell, typed] : m_refused) {
        if (cell.first < row)
            shifted.insert({cell, typed});
        else if (count > 0 || cell.first >= row - count)
            shifted.insert({{cell.first + count, cell.second}, typed});
    }
    m_refused.swap(shifted);
}
