#include "enhance/XPaletteModel.h"

#include "enhance/XPaletteFile.h"
#include "foundation/raster/XPalette.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kLast = tagXPaletteTable::kEntries - 1;
constexpr int kFirstReal = 6; // data types from here on are told with decimals
constexpr std::size_t kMaxSteps = 200;

using Channel = std::array<unsigned char, tagXPaletteTable::kEntries>;

void InterpolateSpan(Channel& c, int a, int b)
{
    const int first = c[static_cast<std::size_t>(a)];
    const int last = c[static_cast<std::size_t>(b)];
    const float slope = static_cast<float>(last - first) / static_cast<float>(b - a);
    const float rise = static_cast<float>(a) * slope;
    const float base = static_cast<float>(first - static_cast<int>(rise));
    for (int x = a; x < b; ++x) {
        const float run = static_cast<float>(x) * slope;
        c[static_cast<std::size_t>(x)] = static_cast<unsigned char>(static_cast<int>(run + base));
    }
}

void MoveChannel(Channel& c, int step, bool isRotation)
{
    if (step > 0)
        std::rotate(c.begin(), c.end() - 1, c.end());
    else
        std::rotate(c.begin(), c.begin() + 1, c.end());
    if (!isRotation) (step > 0 ? c.front() : c.back()) = 0;
}

bool IsEntry(int entry)
{
    return entry >= 0 && entry <= kLast;
}

long long ToWhole(double value)
{
    constexpr double kLimit = 9.0e18; // what a whole number holds
    return static_cast<long long>(std::clamp(value, -kLimit, kLimit));
}

} // namespace

void XfnInterpolatePalette(tagXPaletteTable& table)
{
    int before = -1;
    for (int entry = 0; entry <= kLast; ++entry) {
        if (!table.IsAnchor(entry)) continue;
        if (before >= 0)
            for (Channel* channel : {&table.red, &table.green, &table.blue})
                InterpolateSpan(*channel, before, entry);
        before = entry;
    }
}

void XPaletteModel::SetTable(const tagXPaletteTable& table)
{
    m_state.table = table;
    m_state.selection = kUserDefined;
    MakePalette();
    m_undo.clear();
    m_redo.clear();
}

void XPaletteModel::Open(int position)
{
    Select(position);
    m_undo.clear();
    m_redo.clear();
}

int XPaletteModel::GetListCount()
{
    return 1 + XfnGetNumberOfPalette();
}

XString XPaletteModel::GetListText(int position)
{
    XString text = "User Defined";
    if (position != kUserDefined) XfnGetPaletteName(position, &text);
    return text;
}

tagXPaletteTable XPaletteModel::GetListTable(int position) const
{
    if (position == kUserDefined)
        return m_state.selection == kUserDefined ? m_state.table : m_state.user;
    tagXPaletteTable table;
    // two runs over tables that differ tell whether entry 255 is written
    table.red[kLast] = 1;
    XfnGetPalette(position, table.red.data(), table.green.data(), table.blue.data());
    tagXPaletteTable other;
    XfnGetPalette(position, other.red.data(), other.green.data(), other.blue.data());
    if (table.red[kLast] != other.red[kLast]) table.SetColor(kLast, table.GetColor(kLast - 1));
    return table;
}

template <class Change>
int XPaletteModel::Do(const Change& change)
{
    const tagState before = m_state;
    change();
    if (m_state == before) return 0;
    Remember(before, false);
    return 1;
}

void XPaletteModel::Remember(const tagState& before, bool isApplied)
{
    m_undo.push_back({before, isApplied});
    if (m_undo.size() > kMaxSteps) m_undo.pop_front();
    m_redo.clear();
}

XPaletteModel::XRestored XPaletteModel::Restore(std::deque<tagStep>& from, std::deque<tagStep>& to)
{
    if (from.empty()) return XRestored::Nothing;
    const bool isApplied = from.back().isApplied;
    to.push_back({m_state, isApplied});
    m_state = from.back().state;
    from.pop_back();
    m_drag = Drag::None;
    return isApplied ? XRestored::AppliedTable : XRestored::Table;
}

XPaletteModel::XRestored XPaletteModel::Undo()
{
    return Restore(m_undo, m_redo);
}

XPaletteModel::XRestored XPaletteModel::Redo()
{
    return Restore(m_redo, m_undo);
}

void XPaletteModel::KeepAsUserTable()
{
    m_state.selection = kUserDefined;
    m_state.user = m_state.table;
}

int XPaletteModel::Select(int position)
{
    if (position < 0 || position >= GetListCount()) return 0;
    return Do([&] {
        tagXPaletteTable& table = m_state.table;
        if (m_state.selection == kUserDefined) m_state.user = table;
        if (position == kUserDefined) {
            table = m_state.user;
        } else {
            XfnGetPalette(position, table.red.data(), table.green.data(), table.blue.data());
            table.anchors.fill(0);
        }
        m_state.selection = position;
        MakePalette();
    });
}

void XPaletteModel::SetCurrent(int entry)
{
    if (IsEntry(entry)) m_current = entry;
}

int XPaletteModel::Step(int entry, int columns, int rows)
{
    const int column = std::clamp(entry % kSide + columns, 0, kSide - 1);
    const int row = std::clamp(entry / kSide + rows, 0, kSide - 1);
    return row * kSide + column;
}

int XPaletteModel::SetCurrentColor(tagXColor color)
{
    return Do([&] {
        m_state.table.SetColor(m_current, color);
        if (m_state.table.IsAnchor(m_current)) MakePalette();
        KeepAsUserTable();
    });
}

int XPaletteModel::ToggleAnchor()
{
    if (m_state.table.IsAnchor(m_current)) return RemoveAnchor();
    return Do([&] {
        m_state.table.anchors[static_cast<std::size_t>(m_current)] = 1;
        MakePalette();
        KeepAsUserTable();
    });
}

int XPaletteModel::RemoveAnchor()
{
    const bool isEnd = m_current == 0 || m_current == kLast;
    if (isEnd || !m_state.table.IsAnchor(m_current)) return 0;
    return Do([&] {
        m_state.table.anchors[static_cast<std::size_t>(m_current)] = 0;
        MakePalette();
        KeepAsUserTable();
    });
}

void XPaletteModel::Move(int step, bool isRotation)
{
    if (m_drag != Drag::Moved) Remember(m_state, true);
    if (m_drag == Drag::Started) m_drag = Drag::Moved;
    for (Channel* channel : {&m_state.table.red, &m_state.table.green, &m_state.table.blue})
        MoveChannel(*channel, step, isRotation);
}

void XPaletteModel::RotateForward()
{
    Move(1, true);
}

void XPaletteModel::RotateBackward()
{
    Move(-1, true);
}

void XPaletteModel::PushForward()
{
    Move(1, false);
}

void XPaletteModel::PushBackward()
{
    Move(-1, false);
}

void XPaletteModel::StartDrag(int x)
{
    m_drag = Drag::Started;
    m_dragX = x;
}

int XPaletteModel::DragTo(int x)
{
    const int direction = m_drag == Drag::None || x == m_dragX ? 0 : x > m_dragX ? 1 : -1;
    m_dragX = x;
    return direction;
}

void XPaletteModel::SetValueRange(double low, double high, int dataType)
{
    m_low = low;
    m_high = high;
    m_dataType = dataType;
}

XString XPaletteModel::GetIndexText() const
{
    return XfnFormat("%d", m_current);
}

XString XPaletteModel::GetRedText() const
{
    return XfnFormat("%d", XfnGetRed(m_state.table.GetColor(m_current)));
}

XString XPaletteModel::GetGreenText() const
{
    return XfnFormat("%d", XfnGetGreen(m_state.table.GetColor(m_current)));
}

XString XPaletteModel::GetBlueText() const
{
    return XfnFormat("%d", XfnGetBlue(m_state.table.GetColor(m_current)));
}

XString XPaletteModel::GetValueText() const
{
    constexpr double kShare = 0.00390625; // an entry's share of the range
    const double step = (m_high - m_low) * kShare;
    const double from = m_current * step + m_low;
    const double to = from + step;
    if (!std::isfinite(from) || !std::isfinite(to)) return XString();
    if (m_dataType < kFirstReal) return XfnFormat("%d ~ %d", ToWhole(from), ToWhole(to));
    return XfnFormat("%.8lf ~ %.8lf", from, to);
}

int XPaletteModel::Load(const XString& path, XString& message)
{
    tagXPaletteTable table = m_state.table;
    if (!XfnReadPalette(path, table, message)) return 0;
    Do([&] {
        m_state.table = table;
        MakePalette();
        KeepAsUserTable();
    });
    return 1;
}

int XPaletteModel::Save(const XString& path, XString& message) const
{
    return XfnWritePalette(path, m_state.table, message);
}
