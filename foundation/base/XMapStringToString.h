#pragma once

#include "foundation/base/XMap.h"

/// From string to string. Keys end at their first zero byte. See XMap.
class XAPI XMapStringToString : public XMap<XString, const char*, XString, const XString&>
{
    X_DECLARE_CLASS(XMapStringToString)
public:
    explicit XMapStringToString(int blockSize = 10) : XMap(blockSize) {}
};
