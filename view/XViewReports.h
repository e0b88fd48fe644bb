#pragma once

#include "foundation/base/XApi.h"
#include "foundation/platform/XWindowMessages.h"

#include <cstdint>

/// Codes of what a view tells its host, the first parameter of each report.
enum class XViewReport : unsigned {
    /// Parameter: the main back buffer, before the vectors. It may be drawn on during the report
    /// only; whatever the host does in an event loop of its own may make another of it.
    PaintedRasters = 41061,
    PaintedVectors = 41062, ///< the same, after the vectors and before the map grid
    KeyDown = 41064,        ///< parameter: tagXKeyReport*
    KeyUp = 41065,
    LButtonDblClk = 41066, ///< parameter: tagXMouseReport*, and so the following
    LButtonDown = 41067,
    LButtonUp = 41068,
    RButtonDblClk = 41072,
    RButtonDown = 41073,
    RButtonUp = 41074,
    MouseMove = 41075,
    MouseWheel = 41076,
    ZoomFit = 41086, ///< parameter: 0, and so the following up to ZoomOut
    ZoomIn = 41087,
    ZoomOneToOne = 41088,
    ZoomOut = 41089,
    ToolCancelled = 41107 ///< parameter: 0
};

/// Parameter of the mouse reports; lives during the report only.
struct tagXMouseReport
{
    std::int32_t flags; ///< 1 left, 2 right, 4 Shift, 8 Ctrl, 16 middle
    std::int32_t delta; ///< wheel only, as it was applied; else 0
    std::int32_t x;     ///< device pixels from the left edge of the view
    std::int32_t y;     ///< device pixels from its upper edge
};

/// Parameter of the key reports; lives during the report only.
struct tagXKeyReport
{
    std::int32_t flags; ///< 0x4000 when the key was down before, 0x8000 on release
    std::int32_t
        character;       ///< virtual key: upper-case ASCII for letters and digits, see XViewKeys.h
    std::int32_t repeat; ///< 1
};

/// Sends the reports of one view to the window and message that its host named.
///
/// Reports are synchronous on the calling thread; a host that blocks one blocks the view. Until a
/// host is named, and after its window has gone, they go nowhere. A host may destroy the view
/// within any report but PaintedRasters and PaintedVectors: see XTQSpaceView.
class XAPI XViewReports
{
public:
    void SetHost(XHWND window, unsigned message);
    XHWND GetHostWindow() const { return m_window; }
    unsigned GetHostMessage() const { return m_message; }

    void Send(XViewReport code, const void* parameter = nullptr) const;
    /// As Send, but gives up when the host has not answered within `timeoutMs`.
    void SendWithin(XViewReport code, const void* parameter, unsigned timeoutMs) const;

private:
    XHWND m_window = 0;
    unsigned m_message = 0;
};
