#pragma once

#include "foundation/vector/XvcText.h"
#include "vecprop/XObjectDlg.h"

/// Edits a text: its letters, their font and colour, its place and box.
class XAPI XvcTextDlg : public XObjectDlg
{
public:
    explicit XvcTextDlg(XvcText* text, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Text, {text}, parent)
    {}
};
