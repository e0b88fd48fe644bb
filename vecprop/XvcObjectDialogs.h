#pragma once

#include "view/XObjectDialogs.h"

/// The dialogs of vector objects for the tools of a view.
///
/// What a tool has just drawn is taken without a question unless the user wants to be asked
/// (XfnGetAskForNewObject in XUserSettings.h). A call whose object is missing, or of another class
/// than its dialog edits, is answered as cancelled.
class XAPI XvcObjectDialogs : public XObjectDialogs
{
public:
    int DoModal(tagXObjectDialogCall& call) override;
    int InputText(const tagXTextInputCall& call, XString& text) override;
};

/// Makes these dialogs those of every view. To be called once, before the first view; they stay
/// bound until XObjectDialogs::Set says otherwise.
XAPI void XfnBindObjectDialogs();
