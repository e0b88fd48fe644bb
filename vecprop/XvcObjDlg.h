#pragma once

#include "vecprop/XObjectDlg.h"

/// Edits what every object has: colours, thickness, styles, name, link and whether it is hidden.
class XAPI XvcObjDlg : public XObjectDlg
{
public:
    explicit XvcObjDlg(XvcObj* object, QWidget* parent = nullptr)
        : XObjectDlg(XObjectDialog::Object, {object}, parent)
    {}
};
