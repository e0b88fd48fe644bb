#pragma once

#include "foundation/vector/XvcArcObj.h"

/// A part of an ellipse's area: cut off by the chord between the ends of the arc, or a pie, whose
/// sides meet in the centre. Outlined and filled as a polygon.
class XAPI XvcArcClosed : public XvcArcObj
{
    X_DECLARE_CLASS(XvcArcClosed)
public:
    enum CloseType { kChord, kPie };

    XvcArcClosed() = default;
    int GetCloseType() const { return m_closeType; }
    void SetCloseType(int type); ///< others than the two are ignored

protected:
    bool IsClosed() const override { return true; }
    bool IsPie() const override { return m_closeType == kPie; }
    int GetMode() const override { return m_closeType; }
    bool SetLoadedMode(int mode) override;

private:
    int m_closeType = kChord;
};
