#pragma once

#include "foundation/base/XMap.h"

/// From string to an object that it does not own. Keys end at their first zero byte. See XMap.
class XAPI XMapStringToOb : public XMap<XString, const char*, XObject*, XObject*>
{
    X_DECLARE_CLASS(XMapStringToOb)
public:
    explicit XMapStringToOb(int blockSize = 10) : XMap(blockSize) {}
};
