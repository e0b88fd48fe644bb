#pragma once

#include "view/tools/XToolEvent.h"
#include "view/tools/XToolTarget.h"

/// A tool of a view: a small state machine over the messages of the pointer. The states of each
/// stand in its header.
///
/// Whatever a press begins also ends: by the release, which comes even when another window
/// swallowed it, by a right double click, by Escape, or by a change of the mode; the latter three
/// call Cancel. Threads: user interface only. The target outlives the tool.
class XAPI XViewTool
{
public:
    explicit XViewTool(XToolTarget& target) : m_target(target) {}
    virtual ~XViewTool() = default;
    XViewTool(const XViewTool&) = delete;
    XViewTool& operator=(const XViewTool&) = delete;

    /// Reads a message of the pointer (512 to 518, 522) and passes it to the operation that fits.
    /// The tool may have gone when this returns.
    void Handle(unsigned message, XWPARAM wParam, XLPARAM lParam);
    /// Drops a gesture in progress as if it had not begun. Changes no mode and reports nothing.
    virtual void Cancel() {}

protected:
    virtual void OnAny(const tagXToolEvent&) {} ///< before the operation that fits
    virtual void Press(const tagXToolEvent&) {}
    virtual void Move(const tagXToolEvent&) {}
    virtual void Release(const tagXToolEvent&) {}
    virtual void DoubleClick(const tagXToolEvent&) {}
    virtual void RightPress(const tagXToolEvent&) {}
    virtual void RightDoubleClick(const tagXToolEvent&) {}

    XToolTarget& GetTarget() const { return m_target; }

    /// The rubber band from the start pixel to this one, which becomes the previous pixel.
    void ShowBand(const QPoint& to);
    int HideBand(); ///< @return non-zero when it was shown

private:
    tagXToolEvent Read(unsigned message, XWPARAM wParam, XLPARAM lParam) const;

    XToolTarget& m_target;
};
