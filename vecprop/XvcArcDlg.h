#pragma once

#include "foundation/vector/XvcArc.h"
#include "vecprop/XObjectDlg.h"

/// Edits an arc: the ellipse it is part of, its angles and stroke.
class XAPI XvcArcDlg : public XObjectDlg
{
public:
    explicit XvcArcDlg(XvcArc* arc, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Arc, {arc}, parent)
    {}
};
