#pragma once

#include "foundation/vector/XvcRaster.h"
#include "vecprop/XObjectDlg.h"

/// Edits a raster patch: its box and opacity. Its samples are told only.
class XAPI XvcRasterDlg : public XObjectDlg
{
public:
    explicit XvcRasterDlg(XvcRaster* raster, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Raster, {raster}, parent)
    {}
};
