#pragma once

#include "vecprop/XObjectDlg.h"

class XObList;

/// Edits what several objects have in common. Where they differ an asterisk stands, and stays
/// unless it is touched.
class XAPI XvcObjGrpDlg : public XObjectDlg
{
public:
    /// @param objects  holds at least one vector object; other elements are left out
    explicit XvcObjGrpDlg(const XObList& objects, QWidget* parent = nullptr);

    /// The vector objects of a list, in its order.
    static std::vector<XvcObj*> Collect(const XObList& objects);
};
