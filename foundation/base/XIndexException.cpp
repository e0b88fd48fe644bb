#include "foundation/base/XIndexException.h"

X_IMPLEMENT_CLASS(XIndexException, XException)

XString XIndexException::GetErrorMessage() const
{
    return "An index lies outside the range.";
}

void XIndexException::Throw()
{
    throw XIndexException();
}
