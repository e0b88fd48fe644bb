#include "foundation/vector/XvcSymbolTable.h"

#include "foundation/vector/XvcObj.h"

X_IMPLEMENT_CLASS(XvcSymbolTable, XObject)

XvcSymbolTable::XvcSymbolTable() = default;
XvcSymbolTable::~XvcSymbolTable() = default;

int XvcSymbolTable::Add(int id, std::unique_ptr<XvcObj> definition)
{
    if (!definition) return 0;
    return m_definitions.try_emplace(id, std::move(definition)).second ? 1 : 0;
}

XvcObj* XvcSymbolTable::Find(int id) const
{
    const auto found = m_definitions.find(id);
    return found == m_definitions.end() ? nullptr : found->second.get();
}

int XvcSymbolTable::Remove(int id)
{
    return m_definitions.erase(id) > 0 ? 1 : 0;
}

void XvcSymbolTable::RemoveAll()
{
    m_definitions.clear();
}

int XvcSymbolTable::GetFreeID() const
{
    int id = 1;
    for (const auto& [taken, definition] : m_definitions) {
        if (taken < id) continue;
        if (taken > id) break;
        ++id;
    }
    return id;
}
