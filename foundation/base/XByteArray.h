#pragma once

#include "foundation/base/XArray.h"

/// A growable array of bytes. See XArray.
class XAPI XByteArray : public XArray<unsigned char, unsigned char>
{
    X_DECLARE_CLASS(XByteArray)
};
