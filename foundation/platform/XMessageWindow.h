#pragma once

#include "foundation/platform/XWindowMessages.h"

/// Whatever can receive numbered messages: a widget, a dialog, a test object, by derivation.
///
/// The handle is made by the constructor and dies with the object, or earlier by DestroyHandle;
/// sends that wait for the window then fail, and posts to it are dropped.
/// Threads: constructed, destroyed and called in the UI thread only; that is the thread of the
/// application object, or, without one, of the first window.
class XAPI XMessageWindow
{
public:
    XMessageWindow();
    virtual ~XMessageWindow();
    XMessageWindow(const XMessageWindow&) = delete;
    XMessageWindow& operator=(const XMessageWindow&) = delete;

    /// 0 after DestroyHandle. The number may be kept and used by any thread.
    XHWND GetHWND() const { return m_handle; }

    /// Handles one message. An exception must not leave it.
    /// @return what the sender gets; the default answers 0
    virtual XLRESULT OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam);

protected:
    /// Makes the handle dead. A window whose handler runs another event loop calls this first thing
    /// in its destructor, so that no message finds it half destroyed.
    void DestroyHandle();

private:
    XHWND m_handle;
};
