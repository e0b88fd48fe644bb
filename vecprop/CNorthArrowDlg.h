#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XString.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "vecprop/XObjectDlg.h"

/// Edits a north arrow: its style by pictures, the angle of north, colours and place.
///
/// The arrow itself is changed by an OK only. The getters tell what is chosen, for who wants no more
/// than that; they hold after the dialog as well.
class XAPI CNorthArrowDlg : public XObjectDlg
{
public:
    explicit CNorthArrowDlg(XvcNorthArrow* arrow, QWidget* parent = nullptr);

    XString GetAngle() const; ///< degrees as they stand in the box, three decimals at first
    int GetStyle() const;
    tagXColor GetLineColor() const;
    tagXColor GetForeColor() const;
    tagXColor GetBackColor() const;
};
