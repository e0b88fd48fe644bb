#include "foundation/platform/XMessageWorker.h"

#include "foundation/platform/XMessageHub.h"

namespace {
thread_local XMessageWorker* currentWorker = nullptr;
}

XMessageWorker::~XMessageWorker()
{
    Release();
}

void XMessageWorker::Release()
{
    XMessageHub::Get().Release(*this);
}

void XMessageWorker::Lift()
{
    XMessageHub::Get().Lift(*this);
}

int XMessageWorker::IsReleased() const
{
    return XMessageHub::Get().IsReleased(*this);
}

XMessageWorker* XMessageWorker::GetCurrent()
{
    return currentWorker;
}

XMessageWorker::XScope::XScope(XMessageWorker& worker) : m_outer(currentWorker)
{
    currentWorker = &worker;
}

XMessageWorker::XScope::~XScope()
{
    currentWorker = m_outer;
}
