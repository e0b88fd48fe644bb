#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XObject.h"

#include <map>
#include <memory>
#include <vector>

class XvcObj;

/// Symbol definitions by their number. The table owns them, together with the symbols that were
/// linked to it: these keep what they show when the table is gone.
class XAPI XvcSymbolTable : public XObject
{
    X_DECLARE_CLASS(XvcSymbolTable)
public:
    XvcSymbolTable();
    ~XvcSymbolTable() override;
    XvcSymbolTable(const XvcSymbolTable&) = delete;
    XvcSymbolTable& operator=(const XvcSymbolTable&) = delete;

    /// Takes a definition under `id`.
    /// @return 0 when the id is taken or the definition null; a refused one is destroyed
    int Add(int id, std::unique_ptr<XvcObj> definition);
    XvcObj* Find(int id) const; ///< null when there is none
    /// Takes a definition out and gives it away; null when there is none.
    std::unique_ptr<XvcObj> Release(int id);
    std::vector<int> GetIDs() const; ///< ascending
    int Remove(int id);              ///< 0 when there is none; destroys the definition
    void RemoveAll();
    int GetCount() const { return static_cast<int>(m_shared->definitions.size()); }
    int GetFreeID() const; ///< the lowest id from 1 on that is not taken

private:
    friend class XvcSymbol;
    struct tagShared
    {
        std::map<int, std::unique_ptr<XvcObj>> definitions;
        const XvcSymbolTable* table; // null once it is gone
        XvcObj* Find(int id) const;
    };
    std::shared_ptr<tagShared> m_shared;
};
