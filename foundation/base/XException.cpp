#include "foundation/base/XException.h"

X_IMPLEMENT_CLASS(XException, XObject)

XException::~XException() = default;

void XException::Delete()
{
    if (m_autoDelete) delete this;
}

XString XException::GetErrorMessage() const
{
    return "The operation failed.";
}
