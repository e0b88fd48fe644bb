#pragma once

#include "foundation/vector/XvcArcClosed.h"
#include "vecprop/XObjectDlg.h"

/// Edits the area of an arc: its ellipse, angles and how it is closed.
class XAPI XvcArcClosedDlg : public XObjectDlg
{
public:
    explicit XvcArcClosedDlg(XvcArcClosed* arc, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::ArcClosed, {arc}, parent)
    {}
};
