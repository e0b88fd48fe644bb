#pragma once

#include "foundation/base/XApi.h"
#include "foundation/platform/XWindowMessages.h"

#include <cstddef>
#include <cstdint>

class XvcObj;
struct tagCommandSet;
struct tagXHitFlag;

/// Codes of what a view tells its host, the first parameter of each report. The second is the address
/// of what the comment names, which lives during the report only; "0" is none.
enum class XViewReport : unsigned {
    AfterCopy = 41046,        ///< 0
    BeforeCopy = 41047,       ///< XObList*: the selection
    PictureCreated = 41048,   ///< XvcObj*: bitmap, index map, army mark; 0 when refused
    CurveCreated = 41049,     ///< XvcObj*; 0 when refused, and so for all that are created
    EllipseCreated = 41050,   ///< XvcObj*
    LineCreated = 41051,      ///< XvcObj*: line, arrow
    ToolFinished = 41052,     ///< tagXCreatedReport*, before the report of the tool's own
    PointCreated = 41053,     ///< XvcObj*
    PolygonCreated = 41054,   ///< XvcObj*
    PolylineCreated = 41055,  ///< XvcObj*
    RectangleCreated = 41056, ///< XvcObj*
    TextCreated = 41057,      ///< XvcObj*: text, secret mark
    AfterDelete = 41058,      ///< 0
    BeforeDelete = 41059,     ///< XObList*: the selection
    /// XBackBuffer*: the main one, before the vectors. It may be drawn on during the report only;
    /// whatever the host does in an event loop of its own may make another of it. In a progressive
    /// view it is the worker's surface at the mapping of its pass, the report comes from the event
    /// loop, and one that the host does not begin to answer in time is dropped.
    PaintedRasters = 41061,
    PaintedVectors = 41062,    ///< the same, after the vectors and before the map grid
    ObjectHit = 41063,         ///< tagXHitReport*
    KeyDown = 41064,           ///< tagXKeyReport*
    KeyUp = 41065,             ///< tagXKeyReport*
    LButtonDblClk = 41066,     ///< tagXMouseReport*
    LButtonDown = 41067,       ///< tagXMouseReport*
    LButtonUp = 41068,         ///< tagXMouseReport*
    RButtonDblClk = 41072,     ///< tagXMouseReport*
    RButtonDown = 41073,       ///< tagXMouseReport*
    RButtonUp = 41074,         ///< tagXMouseReport*
    MouseMove = 41075,         ///< tagXMouseReport*
    MouseWheel = 41076,        ///< tagXMouseReport*
    AfterPaste = 41077,        ///< 0
    BeforePaste = 41078,       ///< 0
    AfterModify = 41079,       ///< 0
    BeforeModify = 41080,      ///< XObList*: the selection
    AfterRedo = 41081,         ///< 0
    BeforeRedo = 41082,        ///< tagCommandSet*: what is done again
    AfterUndo = 41083,         ///< 0
    BeforeUndo = 41084,        ///< tagCommandSet*: what is undone
    SelectionFinished = 41085, ///< XObList*: the selection
    ZoomFit = 41086,           ///< 0, and so down to ZoomOut
    ZoomIn = 41087,
    ZoomOneToOne = 41088,
    ZoomOut = 41089,
    ZoomRect = 41090,          ///< 0: the zoom rectangle tool is done
    Rotated = 41091,           ///< 0
    NorthArrowCreated = 41092, ///< 0
    ScaleBarCreated = 41093,   ///< XvcObj* or 0
    TextBoxCreated = 41095,    ///< XvcObj*
    BalloonCreated = 41096,    ///< XvcObj*
    ToolCancelled = 41107,     ///< 0
    DateMeasured = 51026       ///< XvcObj*: a date, before its text is measured
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

/// Parameter of ObjectHit; lives during the report only.
struct tagXHitReport
{
    XvcObj* object;
    const tagXHitFlag* hit; ///< the view's
};

/// Parameter of ToolFinished; lives during the report only.
struct tagXCreatedReport
{
    XvcObj* object;      ///< null when the user cancelled the property dialog
    tagCommandSet* undo; ///< the step that takes it back; null with the object
};

/// How long a host may take before it begins to answer a report of painting, in milliseconds.
inline unsigned XfnGetPaintReportTimeout(std::size_t composites)
{
    return composites > 1 ? 1000 : 10;
}

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
