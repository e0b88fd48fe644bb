#include "host/XSelectionReport.h"

#include "foundation/base/XObList.h"
#include "foundation/platform/XQtText.h"
#include "foundation/vector/XAttributeTable.h"
#include "foundation/vector/XvcObj.h"
#include "host/XObjectReport.h"

#include <QLocale>
#include <QMap>

#include <algorithm>

namespace {

constexpr int kMostCompared = 1000;

using Rows = std::vector<std::pair<QString, QString>>;

Rows ReadAttributes(const XvcObj& object)
{
    Rows rows;
    int row = -1;
    const XAttributeTable* table = XfnGetAttributes(&object, row);
    for (int column = 0; table && column < table->GetNumOfColumns(); ++column) {
        QString value = XfnToQString(table->GetText(row, column)).simplified();
        if (value.isNull()) value = ""; // a null one would be a heading
        rows.emplace_back(XfnToQString(table->GetColumnName(column)).simplified(), value);
    }
    return rows;
}

// Leaves what both have.
void Compare(Rows& common, const Rows& other)
{
    std::erase_if(common, [&other](auto& row) {
        const auto at = std::find_if(other.begin(), other.end(),
                                     [&row](const auto& one) { return one.first == row.first; });
        if (at == other.end()) return true;
        if (at->second != row.second) row.second = "(different)";
        return false;
    });
}

} // namespace

Rows XfnSelectionReport(const XObList& selection)
{
    QMap<QString, int> kinds;
    Rows common;
    int count = 0;
    for (__POSITION* pos = selection.GetHeadPosition(); pos;) {
        const auto* object = dynamic_cast<const XvcObj*>(selection.GetNext(pos));
        if (!object) continue;
        ++kinds[XfnClassText(object->GetRuntimeClass()->m_lpszClassName)];
        if (count == 0)
            common = ReadAttributes(*object);
        else if (count < kMostCompared && !common.empty())
            Compare(common, ReadAttributes(*object));
        ++count;
    }
    const QLocale locale;
    Rows rows{{"Selected", locale.toString(count) + " objects"}};
    for (const auto& [kind, number] : kinds.asKeyValueRange())
        rows.emplace_back(kind, locale.toString(number));
    if (common.empty()) return rows;
    rows.emplace_back(count > kMostCompared ? "Attributes of the first thousand" : "Attributes",
                      QString());
    rows.insert(rows.end(), common.begin(), common.end());
    return rows;
}
