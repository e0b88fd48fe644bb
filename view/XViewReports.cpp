#include "view/XViewReports.h"

void XViewReports::SetHost(XHWND window, unsigned message)
{
    m_window = window;
    m_message = message;
}

void XViewReports::Send(XViewReport code, const void* parameter) const
{
    if (m_window == 0) return;
    XfnSendMessage(m_window, m_message, static_cast<XWPARAM>(code),
                   reinterpret_cast<XLPARAM>(parameter));
}

void XViewReports::SendWithin(XViewReport code, const void* parameter, unsigned timeoutMs) const
{
    if (m_window == 0) return;
    XfnSendMessageTimeout(m_window, m_message, static_cast<XWPARAM>(code),
                          reinterpret_cast<XLPARAM>(parameter), timeoutMs);
}
