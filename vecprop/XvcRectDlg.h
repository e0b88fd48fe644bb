#pragma once

#include "foundation/vector/XvcRectangle.h"
#include "vecprop/XObjectDlg.h"

/// Edits a rectangle: place, size and turn, outline and fill.
class XAPI XvcRectDlg : public XObjectDlg
{
public:
    explicit XvcRectDlg(XvcRectangle* rectangle, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Rect, {rectangle}, parent)
    {}
};
