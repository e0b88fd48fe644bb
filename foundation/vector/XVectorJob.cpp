#include "foundation/vector/XVectorJob.h"

#include "foundation/base/XPath.h"
#include "foundation/platform/XThread.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcMSymbol.h"
#include "foundation/vector/XvcSymbol.h"
#include "foundation/vector/XvcSymbolTable.h"

#include <algorithm>

namespace {

void LinkSymbols(XObject* element, const XvcSymbolTable* table)
{
    if (auto* symbol = dynamic_cast<XvcSymbol*>(element)) {
        symbol->SetSymbolTable(table);
    } else if (auto* symbols = dynamic_cast<XvcMSymbol*>(element)) {
        symbols->SetSymbolTable(table);
    } else if (auto* group = dynamic_cast<XvcGroup*>(element)) {
        for (int i = 0; i < group->GetNumOfObjs(); ++i)
            LinkSymbols(group->GetObjAt(i), table);
    } else if (auto* list = dynamic_cast<XObList*>(element)) {
        const auto* inner = dynamic_cast<const XvcBase*>(list);
        const XvcSymbolTable* own = inner ? inner->GetSymbolTable() : nullptr;
        for (__POSITION* pos = list->GetHeadPosition(); pos;)
            LinkSymbols(list->GetNext(pos), own ? own : table);
    }
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
    if (loaded.GetSymbolTable()) {
        XvcSymbolTable& to = base.GetOwnSymbolTable();
        for (const int id : loaded.GetSymbolTable()->GetIDs()) {
            if (!to.Add(id, loaded.GetSymbolTable()->Release(id)))
                job.Note(XfnFormat("Symbol %d has a meaning already, which its symbols take.", id));
        }
        loaded.SetSymbolTable(nullptr);
        if (!base.GetSymbolTable()) base.SetSymbolTable(&to);
        LinkSymbols(&loaded, &to);
    } else if (job.HasSymbols()) {
        LinkSymbols(&loaded, nullptr);
    }
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
