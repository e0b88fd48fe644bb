#pragma once

#include "foundation/base/XApi.h"

/// Shows the wait cursor in all windows while it lives. Nests. UI thread only.
class XAPI XWaitCursor
{
public:
    XWaitCursor();
    ~XWaitCursor();
    XWaitCursor(const XWaitCursor&) = delete;
    XWaitCursor& operator=(const XWaitCursor&) = delete;
};
