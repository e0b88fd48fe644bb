#pragma once

#include "foundation/vector/XvcBitmap.h"
#include "vecprop/XObjectDlg.h"

/// Edits a picture: its file, its box, what shows through it, its frame.
class XAPI XvcBitmapDlg : public XObjectDlg
{
public:
    explicit XvcBitmapDlg(XvcBitmap* bitmap, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Bitmap, {bitmap}, parent)
    {}
};
