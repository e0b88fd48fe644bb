#pragma once

#include "view/tools/XTextBoxTool.h"

/// Pulls a text box with a pointer open; otherwise as XTextBoxTool. No mode leads to it: hosts pass
/// messages to XTQSpaceView::HandleMouseBalloonMessage.
class XAPI XBalloonTool final : public XTextBoxTool
{
public:
    explicit XBalloonTool(XToolTarget& target) : XTextBoxTool(target, XViewReport::BalloonCreated)
    {}

protected:
    void BeginObject() override;
    XvcTextBox* GetBox() const override;
};
