#include "foundation/platform/XMessageWindow.h"

#include "foundation/platform/XMessageHub.h"

XMessageWindow::XMessageWindow() : m_handle(XMessageHub::Get().AddWindow(this)) {}

XMessageWindow::~XMessageWindow()
{
    DestroyHandle();
}

void XMessageWindow::DestroyHandle()
{
    if (!m_handle) return;
    XMessageHub::Get().RemoveWindow(m_handle);
    m_handle = 0;
}

XLRESULT XMessageWindow::OnWindowMessage(unsigned, XWPARAM, XLPARAM)
{
    return 0;
}
