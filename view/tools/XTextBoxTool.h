#pragma once

#include "view/tools/XBandTool.h"

class XvcTextBox;

/// The tool of mode 113: pulls a box of rich text open, which is edited in place at once.
///
///   building --release--> idle  the box enters the edit layer in edit mode; nothing is asked
///
/// From the first box on the view's text style is 10 points high.
class XAPI XTextBoxTool : public XBandTool
{
public:
    explicit XTextBoxTool(XToolTarget& target) : XBandTool(target, XViewReport::TextBoxCreated) {}

protected:
    bool IsBuilding() const override { return GetBox() != nullptr; }
    void BeginObject() override;
    void SetPosition(const tagXVector3& position) override;
    void TakeBox(const QRect& box) override;

    using XBandTool::XBandTool;
    virtual XvcTextBox* GetBox() const; ///< null when none is building
};
