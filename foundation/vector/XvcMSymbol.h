#pragma once

#include "foundation/vector/XvcMultiObj.h"
#include "foundation/vector/XvcSymbol.h"

/// Many symbols as one object. Number, table, turn and scale set on the whole are passed to every
/// symbol.
class XAPI XvcMSymbol : public XvcMultiObj
{
    X_DECLARE_CLASS(XvcMSymbol)
public:
    XvcMSymbol() = default;

    /// All return the index of the new symbol; the object form takes the object (-1 for null).
    int AddSymbol(int id, double x, double y, double z = 0.0);
    int AddSymbol(const XvcSymbol& symbol);
    int AddSymbol(std::unique_ptr<XvcSymbol> symbol) { return AddPart(std::move(symbol)); }
    int GetNumOfSymbols() const { return GetPartCount(); }
    XvcSymbol* GetSymbolObjAt(int index) const { return static_cast<XvcSymbol*>(GetPartAt(index)); }

    void SetID(int id);
    void SetSymbolTable(const XvcSymbolTable* table);
    void SetRotate(double angleDeg);
    void SetScale(double scale) { SetScale(scale, scale); }
    void SetScale(double scaleX, double scaleY);

    /// A point or a multipoint; empty points in it are left out. New symbols are number 1, scale 1.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< MULTIPOINT, of the symbols that are set

protected:
    bool IsPartAllowed(const XvcObj& part) const override;
};
