#pragma once

#include "foundation/base/XArray.h"
#include "foundation/base/XString.h"

/// A growable array of strings. See XArray.
class XAPI XStringArray : public XArray<XString, const XString&>
{
    X_DECLARE_CLASS(XStringArray)
};
