#pragma once

#include <map>
#include <memory>
#include <utility>
#include <vector>

class XObject;
class XvcBase;
class XvcObj;
class XvcSymbol;
class XvcSymbolDef;

/// For the sources of this folder only: the numbers that symbols have in a native vector file.
///
/// In memory each symbol has a table of its own, so one number may mean two definitions. In a file it
/// means one in each base: who comes first keeps it, others get one that is free. What symbols
/// need and no base around them holds comes into the table of their base.
class XVectorFileNumbers
{
public:
    using Definitions = std::map<int, const XvcObj*>;

    /// Settles the numbers in a base, save those in bases within it, which open and close in turn.
    void OpenBase(const XvcBase& base);
    void CloseBase() { m_open.pop_back(); }
    /// The table that the base opened last has in the file.
    const Definitions& GetDefinitions() const { return m_open.back().table; }
    /// A copy that has the numbers of the file; null when the object has them itself.
    std::unique_ptr<XvcObj> MakeNumbered(const XvcObj& object) const;

private:
    struct tagOpenBase
    {
        Definitions table;
        std::map<int, const XvcSymbolDef*> meanings; // of numbers in the file; null: none
        std::map<std::pair<int, const XvcSymbolDef*>, int> numbers; // in memory to file
    };
    void Settle(const XvcSymbol& symbol);
    const XvcSymbolDef* Find(int id) const; // as a reader of the file will
    int FindFree() const;
    int GetNumber(const XvcSymbol& symbol) const;

    std::vector<tagOpenBase> m_open;
};

/// Whether symbols that show the one look as those that show the other.
bool XfnIsSameSymbol(const XvcObj* a, const XvcObj* b);
