#pragma once

#include "foundation/vector/XvcPoint.h"
#include "vecprop/XObjectDlg.h"

/// Edits a point: place, mark and size.
class XAPI XvcPointDlg : public XObjectDlg
{
public:
    explicit XvcPointDlg(XvcPoint* point, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Point, {point}, parent)
    {}
};
