#include "foundation/vector/XvcSymbolTable.h"

#include "foundation/vector/XvcObj.h"

X_IMPLEMENT_CLASS(XvcSymbolTable, XObject)

XvcSymbolTable::XvcSymbolTable() : m_shared(std::make_shared<tagShared>())
{
    m_shared->table = this;
}

XvcSymbolTable::~XvcSymbolTable()
{
    m_shared->table = nullptr;
}

int XvcSymbolTable::Add(int id, std::unique_ptr<XvcObj> definition)
{
    XvcObj::TouchAll(); // symbols may look different
    if (!definition) return 0;
    return m_shared->definitions.try_emplace(id, std::move(definition)).second ? 1 : 0;
}

XvcObj* XvcSymbolTable::Find(int id) const
{
    return m_shared->Find(id);
}

XvcObj* XvcSymbolTable::tagShared::Find(int id) const
{
    const auto found = definitions.find(id);
    return found == definitions.end() ? nullptr : found->second.get();
}

std::unique_ptr<XvcObj> XvcSymbolTable::Release(int id)
{
    XvcObj::TouchAll();
    const auto found = m_shared->definitions.find(id);
    if (found == m_shared->definitions.end()) return nullptr;
    std::unique_ptr<XvcObj> released = std::move(found->second);
    m_shared->definitions.erase(found);
    return released;
}

std::vector<int> XvcSymbolTable::GetIDs() const
{
    std::vector<int> ids;
    for (const auto& [id, definition] : m_shared->definitions)
        ids.push_back(id);
    return ids;
}

int XvcSymbolTable::Remove(int id)
{
    XvcObj::TouchAll();
    return m_shared->definitions.erase(id) > 0 ? 1 : 0;
}

void XvcSymbolTable::RemoveAll()
{
    XvcObj::TouchAll();
    m_shared->definitions.clear();
}

int XvcSymbolTable::GetFreeID() const
{
    int id = 1;
    for (const auto& [taken, definition] : m_shared->definitions) {
        if (taken < id) continue;
        if (taken > id) break;
        ++id;
    }
    return id;
}
