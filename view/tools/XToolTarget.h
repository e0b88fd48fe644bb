#pragma once

#include "foundation/base/XApi.h"
#include "view/XViewOverlay.h"
#include "view/XViewReason.h"
#include "view/XViewReports.h"

#include <initializer_list>

class XGVMessageManager;
class XGVObjectManager;
class XGVRubberBand;
class XGVSelectedObjs;
class XObList;
class XViewMapping;
class XvcLayer;
struct tagXToolState;

/// What a tool may know of its view; with a fake of it a tool runs in a test without a window.
///
/// There is nothing to capture the pointer with: from the press of a button to its release all
/// events come to the view, wherever the pointer goes.
///
/// A report may destroy the view, and the tool with it: it is the last thing that a tool does, or
/// IsAlive is asked before the next.
///
/// Threads: user interface only.
class XAPI XToolTarget
{
public:
    virtual ~XToolTarget() = default;

    virtual tagXToolState& GetToolState() = 0;
    virtual XGVMessageManager& GetMessageManager() = 0; ///< mode, post mode, limits
    virtual XGVObjectManager& GetObjectManager() = 0; ///< styles and the object under construction
    virtual XGVSelectedObjs& GetSelection() = 0;
    virtual XvcLayer* GetEditLayer() const = 0;
    virtual XObList* GetInnBaseList() = 0;
    virtual XObList* GetExtBaseList() = 0;
    virtual XViewMapping& GetViewMapping() = 0; ///< of both surfaces
    virtual XGVRubberBand& GetRubberBand() = 0;

    /// The buffers are made anew at the next drawing.
    virtual void RaiseFlags(std::initializer_list<XViewBuffer> buffers) = 0;
    virtual void RepaintFor(XViewReason reason) = 0;
    /// What the rubber band covers, or covered before it changed, is shown anew.
    virtual void RubberBandChanged() = 0;
    virtual void Report(XViewReport code, const void* parameter = nullptr) = 0;
};
