#include "foundation/vector/XVectorFileNumbers.h"

#include "foundation/vector/XSymbolSet.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcGroup.h"
#include "foundation/vector/XvcMSymbol.h"
#include "foundation/vector/XvcSymbolDef.h"

#include <algorithm>

namespace {

constexpr int kFirstFree = 1001; // beyond the library's own

const XvcSymbolDef* ToDefinition(const XvcObj* object)
{
    return dynamic_cast<const XvcSymbolDef*>(object);
}

/// Calls `use` for each symbol in an object or list, save those in bases within it.
template <class Use>
void ForEachSymbol(const XObject* element, const Use& use)
{
    if (const auto* symbol = dynamic_cast<const XvcSymbol*>(element)) {
        use(*symbol);
    } else if (const auto* symbols = dynamic_cast<const XvcMSymbol*>(element)) {
        for (int i = 0; i < symbols->GetNumOfSymbols(); ++i)
            use(*symbols->GetSymbolObjAt(i));
    } else if (const auto* group = dynamic_cast<const XvcGroup*>(element)) {
        for (int i = 0; i < group->GetNumOfObjs(); ++i)
            ForEachSymbol(group->GetObjAt(i), use);
    } else if (const auto* list = dynamic_cast<const XObList*>(element)) {
        if (dynamic_cast<const XvcBase*>(list)) return;
        for (__POSITION* pos = list->GetHeadPosition(); pos;)
            ForEachSymbol(list->GetNext(pos), use);
    }
}

} // namespace

bool XfnIsSameSymbol(const XvcObj* a, const XvcObj* b)
{
    const XvcSymbolDef* first = ToDefinition(a);
    const XvcSymbolDef* second = ToDefinition(b);
    if (a == b || !first || !second) return a == b;
    return first->GetOutline().GetText() == second->GetOutline().GetText() &&
           first->GetName() == second->GetName() && first->GetGroup() == second->GetGroup();
}

void XVectorFileNumbers::OpenBase(const XvcBase& base)
{
    tagOpenBase& open = m_open.emplace_back();
    if (const XvcSymbolTable* table = base.GetSymbolTable()) {
        for (const int id : table->GetIDs()) {
            open.table[id] = table->Find(id);
            open.meanings[id] = ToDefinition(open.table[id]);
        }
    }
    const XObList& list = base;
    for (__POSITION* pos = list.GetHeadPosition(); pos;)
        ForEachSymbol(list.GetNext(pos), [this](const XvcSymbol& symbol) { Settle(symbol); });
}

void XVectorFileNumbers::Settle(const XvcSymbol& symbol)
{
    tagOpenBase& open = m_open.back();
    const int id = symbol.GetID();
    const XvcSymbolDef* wanted = symbol.GetDefinition();
    const auto [number, isNew] = open.numbers.try_emplace({id, wanted}, id);
    if (!isNew) return;
    const auto settled = open.meanings.find(id);
    if (settled != open.meanings.end()) {
        if (XfnIsSameSymbol(settled->second, wanted)) return;
    } else {
        const bool isHeld = XfnIsSameSymbol(Find(id), wanted);
        if (isHeld || wanted) {
            open.meanings[id] = wanted;
            if (!isHeld) open.table[id] = wanted;
            return;
        }
    }
    const auto other =
        std::find_if(open.meanings.begin(), open.meanings.end(),
                     [&](const auto& meaning) { return XfnIsSameSymbol(meaning.second, wanted); });
    number->second = other != open.meanings.end() ? other->first : FindFree();
    if (other != open.meanings.end()) return;
    open.meanings[number->second] = wanted;
    if (wanted) open.table[number->second] = wanted;
}

const XvcSymbolDef* XVectorFileNumbers::Find(int id) const
{
    for (auto open = m_open.rbegin(); open != m_open.rend(); ++open) {
        const auto found = open->table.find(id);
        if (found != open->table.end()) return ToDefinition(found->second);
    }
    return ToDefinition(XfnGetStandardSymbols().Find(id));
}

int XVectorFileNumbers::FindFree() const
{
    int number = kFirstFree;
    while (m_open.back().meanings.count(number) > 0 || Find(number))
        ++number;
    return number;
}

int XVectorFileNumbers::GetNumber(const XvcSymbol& symbol) const
{
    const auto found = m_open.back().numbers.find({symbol.GetID(), symbol.GetDefinition()});
    return found == m_open.back().numbers.end() ? symbol.GetID() : found->second;
}

std::unique_ptr<XvcObj> XVectorFileNumbers::MakeNumbered(const XvcObj& object) const
{
    bool isSame = true;
    ForEachSymbol(&object, [&](const XvcSymbol& symbol) {
        isSame = isSame && GetNumber(symbol) == symbol.GetID();
    });
    if (isSame) return nullptr;
    std::unique_ptr<XvcObj> copy = XfnCloneVectorObject(&object);
    ForEachSymbol(copy.get(), [&](const XvcSymbol& symbol) {
        const_cast<XvcSymbol&>(symbol).SetID(GetNumber(symbol)); // of the copy
    });
    return copy;
}
