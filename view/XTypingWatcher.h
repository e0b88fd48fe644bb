#pragma once

#include "foundation/base/XApi.h"

class XvcTextBox;

/// A window that is told of the typing into the text boxes that are edited in it.
class XAPI XTypingWatcher
{
public:
    virtual ~XTypingWatcher() = default;
    virtual void OnTypingBegun(XvcTextBox& box) = 0; ///< it may lie in no layer yet
    virtual void OnTypingEnded(XvcTextBox& box) = 0; ///< it holds what was typed
    /// The editor of this box has gone, after OnTypingEnded or with the box, which is not to be read.
    virtual void OnTypingGone(const XvcTextBox* box) = 0;
};
