#pragma once

#include "foundation/vector/XvcSymbol.h"
#include "vecprop/XObjectDlg.h"

/// Edits a symbol: which one it is, place, size and turn.
class XAPI XvcSymbolDlg : public XObjectDlg
{
public:
    explicit XvcSymbolDlg(XvcSymbol* symbol, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Symbol, {symbol}, parent)
    {}
};
