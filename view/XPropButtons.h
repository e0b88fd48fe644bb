#pragma once

#include "foundation/base/XApi.h"

/// Numbers of the buttons that a view can carry over its picture (XTQSpaceView::AddPropButton).
enum XPropButton : int {
    kXPropSeparator = 0,       ///< a gap
    kXPropPresets = 17,        ///< popup of all stretch presets
    kXPropVisiblePresets = 18, ///< popup of those of the visible region
    kXPropStretch = 19,        ///< stretch dialog
    kXPropZoomRect = 22,
    kXPropOneToOne = 23,
    kXPropZoomIn = 24,
    kXPropZoomOut = 25,
    kXPropFit = 26,
    kXPropThumb = 37 ///< thumb view
};

/// What a window with such buttons can be asked to do. A panel of buttons finds it in the widget
/// over which it is made. Threads: user interface.
class XAPI XPropButtonTarget
{
public:
    /// Whether the button does anything now; 0 for numbers that are not known.
    virtual int CanRunPropButton(int id) const = 0;
    virtual int IsPropButtonOn(int id) const = 0; ///< it shows a state, and is in it
    virtual void RunPropButton(int id) = 0;       ///< nothing while it cannot run
    /// @param command  of XfnGetStretchPresets; nothing for another number
    virtual void RunStretchPreset(int command) = 0;
    virtual int GetLastStretchPreset() const = 0; ///< the command last run; 0 before any

protected:
    virtual ~XPropButtonTarget() = default;
};
