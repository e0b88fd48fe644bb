#pragma once

#include "foundation/base/XApi.h"

/// The tool mode of a view, the mode it falls back to, the limits a host sets, and whether the
/// right button is down.
///
/// Modes are signed 16-bit numbers: -1 none, 0 selection, 101 to 131 creation, 201 zoom rectangle,
/// 202 rotation. Any number is kept as it is. Threads: user interface only.
class XAPI XGVMessageManager
{
public:
    static constexpr short kModeNone = -1;
    static constexpr short kModeZoomRect = 201;

    /// Bits of the mode limit.
    enum Limit : unsigned short {
        kLimitNoKeys = 1,           ///< Ctrl gestures and the Delete key are swallowed
        kLimitNoMoveObject = 2,     ///< objects cannot be moved
        kLimitNoChangeProperty = 4, ///< no property dialogs, no undo or redo
        kLimitNoMultiSelect = 8     ///< no rubber-band selection
    };

    short GetMode() const { return m_mode; }
    void SetMode(short mode) { m_mode = mode; }
    short GetPostMode() const { return m_postMode; }
    void SetPostMode(short mode) { m_postMode = mode; }
    unsigned short GetModeLimit() const { return m_modeLimit; }
    void SetModeLimit(unsigned short limit) { m_modeLimit = limit; }
    void ChangeToPostMode() { m_mode = m_postMode; } ///< the field alone, nothing is emptied

    void SetRButtonDown(int down) { m_rightButtonDown = down != 0; }
    int IsRButtonDragging() const { return m_rightButtonDown; }
    /// @param flags  button and key state of the event; only the left button alone counts
    int IsLButtonDragging(unsigned flags) const { return flags == 1; }

    int IsNoMultiSelect() const { return (m_modeLimit & kLimitNoMultiSelect) != 0; }
    int IsNoMoveObject() const { return (m_modeLimit & kLimitNoMoveObject) != 0; }
    int IsNoChangeProperty() const { return (m_modeLimit & kLimitNoChangeProperty) != 0; }

    /// Non-zero when a message must be swallowed before any tool sees it.
    /// @param wParam  the message's first parameter; 46 is the Delete key
    int IsSwallowed(int isCtrlDown, unsigned long long wParam) const
    {
        return (m_modeLimit & kLimitNoKeys) != 0 && (isCtrlDown || wParam == 46);
    }

private:
    short m_mode = kModeNone;
    short m_postMode = kModeNone;
    unsigned short m_modeLimit = 0;
    int m_rightButtonDown = 0;
};
