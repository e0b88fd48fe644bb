#pragma once

#include "view/tools/XBandTool.h"

/// The tool of mode 108: writes a line of text, as high as the box that was pulled open, at the
/// place of the press.
///
///   building --release--> idle      with a text: finish; with an empty one: refuse
///   building --release--> building  the entry was given up; the next press begins anew
class XAPI XTextTool final : public XBandTool
{
public:
    explicit XTextTool(XToolTarget& target)
        : XBandTool(target, XViewReport::TextCreated, XObjectDialog::Text)
    {}

protected:
    bool IsBuilding() const override;
    void BeginObject() override;
    void SetPosition(const tagXVector3& position) override;
    void TakeBox(const QRect& box) override;

private:
    int AskText(const QRect& box, XString& text) const;
};
