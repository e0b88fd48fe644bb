#pragma once

#include "foundation/vector/XvcEllipse.h"
#include "vecprop/XObjectDlg.h"

/// Edits an ellipse: centre, half axes and turn, outline and fill.
class XAPI XvcEllipseDlg : public XObjectDlg
{
public:
    explicit XvcEllipseDlg(XvcEllipse* ellipse, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Ellipse, {ellipse}, parent)
    {}
};
