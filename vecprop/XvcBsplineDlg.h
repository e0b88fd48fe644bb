#pragma once

#include "foundation/vector/XvcBspline.h"
#include "vecprop/XObjectDlg.h"

/// Edits a curve: its poles and knots, order, ends and stroke.
class XAPI XvcBsplineDlg : public XObjectDlg
{
public:
    explicit XvcBsplineDlg(XvcBspline* curve, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Bspline, {curve}, parent)
    {}
};
