#include "foundation/vector/XVectorJob.h"

#include "foundation/base/XPath.h"
#include "foundation/platform/XThread.h"
#include "foundation/vector/XSymbolSet.h"
#include "foundation/vector/XVectorFileNumbers.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcMSymbol.h"
#include "foundation/vector/XvcSymbol.h"
#include "foundation/vector/XvcSymbolTable.h"

#include <algorithm>

namespace {

/// Links symbols to the innermost table around them that holds their number.
class Linker
{
public:
    /// @param table    takes the symbols of the file's own table; null when it has none
    /// @param numbers  those of the file, and what they are in `table`
    Linker(const XvcSymbolTable* table, const std::map<int, int>& numbers)
        : m_table(table), m_numbers(numbers)
    {}

    void Link(XObject* element)
    {
        if (auto* symbol = dynamic_cast<XvcSymbol*>(element)) {
            LinkOne(*symbol);
        } else if (auto* symbols = dynamic_cast<XvcMSymbol*>(element)) {
            for (int i = 0; i < symbols->GetNumOfSymbols(); ++i)
                LinkOne(*symbols->GetSymbolObjAt(i));
        } else if (auto* group = dynamic_cast<XvcGroup*>(element)) {
            for (int i = 0; i < group->GetNumOfObjs(); ++i)
                Link(group->GetObjAt(i));
        } else if (auto* list = dynamic_cast<XObList*>(element)) {
            const auto* inner = dynamic_cast<const XvcBase*>(list);
            const XvcSymbolTable* own = inner ? inner->GetSymbolTable() : nullptr;
            if (own) m_inner.push_back(own);
            for (__POSITION* pos = list->GetHeadPosition(); pos;)
                Link(list->GetNext(pos));
            if (own) m_inner.pop_back();
        }
    }

private:
    void LinkOne(XvcSymbol& symbol) const
    {
        const int id = symbol.GetID();
        for (auto table = m_inner.rbegin(); table != m_inner.rend(); ++table)
            if ((*table)->Find(id)) return symbol.SetSymbolTable(*table);
        const auto number = m_numbers.find(id);
        if (number != m_numbers.end()) symbol.SetID(number->second);
        // elsewhere the number means something that the file does not know of
        const bool isStrange = number == m_numbers.end() && m_table && m_table->Find(id);
        symbol.SetSymbolTable(isStrange ? nullptr : m_table);
    }

    const XvcSymbolTable* m_table;
    const std::map<int, int>& m_numbers;
    std::vector<const XvcSymbolTable*> m_inner; // of bases in the file, the innermost last
};

/// Moves definitions to the table of a base that may have others. @return their numbers there
std::map<int, int> MoveSymbols(XvcSymbolTable& from, XvcSymbolTable& to, bool isFresh)
{
    constexpr int kFirstFree = 1001; // beyond the library's own
    std::map<int, int> numbers;
    const std::vector<int> taken = to.GetIDs();
    for (const int id : from.GetIDs()) {
        const auto same = std::find_if(taken.begin(), taken.end(), [&](int other) {
            return XfnIsSameSymbol(to.Find(other), from.Find(id));
        });
        numbers[id] = same != taken.end() ? *same : id;
        if (same != taken.end()) continue;
        if (to.Find(id) || (!isFresh && XfnGetStandardSymbols().Find(id))) {
            int free = kFirstFree;
            while (to.Find(free) || from.Find(free))
                ++free;
            numbers[id] = free;
        }
        to.Add(numbers[id], from.Release(id));
    }
    return numbers;
}

} // namespace

bool XVectorJob::IsStopped() const
{
    return m_isRefused || (m_thread && m_thread->IsStopRequested());
}

bool XVectorJob::Accept(XvcObj& object)
{
    if (m_callback && !m_callback(m_context, &object)) m_isRefused = true;
    return !IsStopped();
}

void XVectorJob::SetProgress(double done, double whole)
{
    if (!m_thread || !(whole > 0.0)) return;
    const int percent = static_cast<int>(std::clamp(done / whole, 0.0, 1.0) * 100.0);
    if (percent == m_percent) return;
    m_percent = percent;
    m_thread->CallbackPercent(percent);
}

void XVectorJob::Note(const XString& sentence)
{
    if (m_notes) m_notes->push_back(Describe(sentence));
}

void XVectorJob::TellCounts()
{
    for (const auto& [what, count] : m_counts)
        Note(XfnFormat(count == 1 ? "%I64d object %s." : "%I64d objects %s.", count, what));
    m_counts.clear();
}

XString XVectorJob::Describe(const XString& sentence) const
{
    return XfnFormat("\"%s\": %s", m_path, sentence);
}

void XfnAdoptImport(XvcBase& loaded, XvcBase& base, XVectorJob& job)
{
    if (base.GetName().IsEmpty()) {
        const XString title = XfnGetFileTitle(job.GetPath());
        base.SetName(loaded.GetName().IsEmpty() ? title : loaded.GetName());
    }
    if (base.GetLink().IsEmpty()) base.SetLink(loaded.GetLink());
    if (base.IsEmpty() && loaded.IsHidden()) base.SetHideFlag(1);
    if (loaded.GetSR()->GetCoordType() != 0) base.SetSR(loaded.GetSR());
    XvcSymbolTable* table = nullptr;
    std::map<int, int> numbers;
    if (loaded.GetSymbolTable()) {
        table = &base.GetOwnSymbolTable();
        numbers = MoveSymbols(*loaded.GetSymbolTable(), *table, base.IsEmpty());
        loaded.SetSymbolTable(nullptr);
        if (!base.GetSymbolTable()) base.SetSymbolTable(table);
    }
    if (job.HasSymbols()) Linker(table, numbers).Link(&loaded);
    for (__POSITION* pos = loaded.GetHeadPosition(); pos;) {
        XObject* element = loaded.GetNext(pos);
        if (XfnIsExactly(element, "XvcLayer")) {
            base.AddTail(static_cast<XvcLayer*>(element));
        } else {
            static_cast<XObList&>(base).AddTail(element);
        }
    }
    loaded.RemoveAll();
    base.CalcRange();
    job.TellCounts();
}

void XfnSetRecords(XvcObj& object, std::uint32_t record)
{
    object.SetRecord(record);
    auto* group = dynamic_cast<XvcGroup*>(&object);
    for (int i = 0; group && i < group->GetNumOfObjs(); ++i)
        XfnSetRecords(*group->GetObjAt(i), record);
}
