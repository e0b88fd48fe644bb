#pragma once

#include "foundation/base/XMap.h"

/// From pointer to integer. See XMap.
class XAPI XMapPtrToInt : public XMap<void*, void*, int, int>
{
    X_DECLARE_CLASS(XMapPtrToInt)
public:
    explicit XMapPtrToInt(int blockSize = 10) : XMap(blockSize) {}
};
