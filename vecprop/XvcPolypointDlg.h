#pragma once

#include "foundation/vector/XvcPolypoint.h"
#include "vecprop/XObjectDlg.h"

/// Edits a set of points: their places and the mark of all.
class XAPI XvcPolypointDlg : public XObjectDlg
{
public:
    explicit XvcPolypointDlg(XvcPolypoint* points, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Polypoint, {points}, parent)
    {}
};
