#pragma once

#include "foundation/base/XList.h"

/// A list of untyped pointers. See XList.
class XAPI XPtrList : public XList<void*, void*>
{
    X_DECLARE_CLASS(XPtrList)
public:
    explicit XPtrList(int blockSize = 10) : XList(blockSize) {}
};
