#pragma once

#include "foundation/base/XList.h"

/// A list of objects that it does not own. See XList.
class XAPI XObList : public XList<XObject*, XObject*>
{
    X_DECLARE_CLASS(XObList)
public:
    explicit XObList(int blockSize = 10) : XList(blockSize) {}
};
