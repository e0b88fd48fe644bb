#pragma once

#include "view/XObjectDialogs.h"

/// What becomes of an object that a tool has just drawn.
enum class XNewObjects {
    Ask, ///< its dialog confirms it
    Keep ///< it stays without a question
};

/// The dialogs of vector objects for the tools of a view.
///
/// Whether what a tool has just drawn is asked about is the user's choice (XfnSetAskForNewObject in
/// XUserSettings.h), and the host's until the user has chosen. A call whose object is missing, or
/// of another class than its dialog edits, is answered as cancelled.
class XAPI XvcObjectDialogs : public XObjectDialogs
{
public:
    explicit XvcObjectDialogs(XNewObjects ifNotChosen = XNewObjects::Ask)
        : m_ifNotChosen(ifNotChosen)
    {}

    int DoModal(tagXObjectDialogCall& call) override;
    int InputText(const tagXTextInputCall& call, XString& text) override;
    void CheckObjects() override;

private:
    XNewObjects m_ifNotChosen;
};

/// Makes these dialogs those of every view. To be called before the first view; they stay bound
/// until XObjectDialogs::Set says otherwise.
/// @param ifNotChosen  of new objects, while the user has not chosen; a second call changes it
XAPI void XfnBindObjectDialogs(XNewObjects ifNotChosen = XNewObjects::Ask);
