#pragma once

#include "foundation/base/XApi.h"
#include "foundation/platform/XWindowMessages.h"

#include <memory>
#include <span>
#include <vector>

class XTQSpaceView;
class XToolTarget;
class XViewTool;

/// What the pointer looks like in a mode.
enum class XModeCursor {
    Default, ///< the choice is the parent's
    Arrow,
    Own ///< an image of this mode
};

/// The row of the balloon tool: a number beyond those that a mode can have.
constexpr int kXBalloonTool = 0x10000;

/// A mode of a view: its tool and its cursor.
struct tagXModeRow
{
    int mode;
    XModeCursor cursor;
    /// Null for a mode whose tool this build has not.
    std::unique_ptr<XViewTool> (*make)(XToolTarget& target);
    /// The view's operation that passes messages to it; null with `make`.
    void (XTQSpaceView::*handle)(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam);
};

/// All modes that mean something, and kXBalloonTool. Any other number has no tool and the arrow.
XAPI std::span<const tagXModeRow> XfnModeTable();
XAPI const tagXModeRow* XfnFindMode(int mode); ///< null for a number that is not in the table

/// The tools of one view, each made when it is first needed.
class XAPI XToolSet
{
public:
    explicit XToolSet(XToolTarget& target);
    ~XToolSet();
    /// Passes a message of the pointer to the tool of a mode; nothing without one.
    void Handle(int mode, unsigned message, XWPARAM wParam, XLPARAM lParam);
    /// Ends the gestures in progress of all tools.
    void Cancel();

private:
    XToolTarget& m_target;
    std::vector<std::unique_ptr<XViewTool>> m_tools; // by their row in the table
};
