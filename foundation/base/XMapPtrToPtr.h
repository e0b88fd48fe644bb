#pragma once

#include "foundation/base/XMap.h"

/// From pointer to pointer. See XMap.
class XAPI XMapPtrToPtr : public XMap<void*, void*, void*, void*>
{
    X_DECLARE_CLASS(XMapPtrToPtr)
public:
    explicit XMapPtrToPtr(int blockSize = 10) : XMap(blockSize) {}
};
