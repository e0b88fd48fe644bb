#pragma once

#include "foundation/base/XMap.h"

/// From string to pointer. Keys end at their first zero byte. See XMap.
class XAPI XMapStringToPtr : public XMap<XString, const char*, void*, void*>
{
    X_DECLARE_CLASS(XMapStringToPtr)
public:
    explicit XMapStringToPtr(int blockSize = 10) : XMap(blockSize) {}
};
