#pragma once

#include "foundation/vector/XvcPolyline.h"
#include "vecprop/XObjectDlg.h"

/// Edits a line through vertices: the vertices and its stroke.
class XAPI XvcPolylineDlg : public XObjectDlg
{
public:
    explicit XvcPolylineDlg(XvcPolyline* line, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Polyline, {line}, parent)
    {}
};
