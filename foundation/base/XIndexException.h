#pragma once

#include "foundation/base/XException.h"

/// An index, count or position that the container does not have. A fault of the caller.
class XAPI XIndexException : public XException
{
    X_DECLARE_CLASS(XIndexException)
public:
    XString GetErrorMessage() const override;

    [[noreturn]] static void Throw();
};
