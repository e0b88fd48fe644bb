#pragma once

#include "foundation/vector/XvcArcObj.h"

/// A part of an ellipse's line, drawn in the line colour.
///
/// The create mode says what SetPtStart and SetPtEnd mean: kBox, two corners of the box around the
/// ellipse, whose angles stay; kQuarter, the ends of a quarter of an ellipse that leaves the start
/// level and reaches the end upright; kHalf, the ends of a half circle that runs counter-clockwise.
class XAPI XvcArc : public XvcArcObj
{
    X_DECLARE_CLASS(XvcArc)
public:
    enum CreateMode { kBox, kQuarter, kHalf };

    XvcArc() = default;
    int GetCreateMode() const { return m_createMode; }
    void SetCreateMode(int mode); ///< others than the three are ignored

protected:
    bool IsClosed() const override { return false; }
    void DefineByPoints() override;
    int GetMode() const override { return m_createMode; }
    bool SetLoadedMode(int mode) override;

private:
    int m_createMode = kBox;
};
