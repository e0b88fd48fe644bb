#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XString.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "vecprop/XObjectDlg.h"

/// Edits a north arrow: its style by pictures, the angle of north, colours and place.
///
/// The arrow itself is changed by an OK only. Opened by a tool (XvcObjectDialogs) the dialog is given
/// the angle with three decimals, and every OK writes angle, style and colours back: one that
/// touched nothing rounds the angle. The getters tell what is chosen, for who wants no more
/// than that; they hold after the dialog as well.
class XAPI CNorthArrowDlg : public XObjectDlg
{
public:
    explicit CNorthArrowDlg(XvcNorthArrow* arrow, QWidget* parent = nullptr);

    void SetAngle(const XString& degrees); ///< what stands in its box
    XString GetAngle() const;              ///< degrees as they stand in the box
    int GetStyle() const;
    tagXColor GetLineColor() const;
    tagXColor GetForeColor() const;
    tagXColor GetBackColor() const;
};
