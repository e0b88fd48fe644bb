#pragma once

#include "foundation/vector/XvcPolygon.h"
#include "vecprop/XObjectDlg.h"

/// Edits an area: the vertices of its ring, outline and fill.
class XAPI XvcPolygonDlg : public XObjectDlg
{
public:
    explicit XvcPolygonDlg(XvcPolygon* polygon, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Polygon, {polygon}, parent)
    {}
};
