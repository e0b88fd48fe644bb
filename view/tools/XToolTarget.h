#pragma once

#include "foundation/base/XApi.h"
#include "foundation/platform/XWindowMessages.h"
#include "view/XViewOverlay.h"
#include "view/XViewReason.h"
#include "view/XViewReports.h"
#include "view/tools/XToolHit.h"

#include <QPoint>

#include <initializer_list>
#include <memory>

class XCommandManager;
class XGVMessageManager;
class XGVObjectManager;
class XGVRubberBand;
class XGVSelectedObjs;
class XObList;
class XViewMapping;
class XvcBitmap;
class XvcLayer;
struct tagXToolState;

/// What a tool may know of its view; with a fake of it a tool runs in a test without a window.
///
/// There is nothing to capture the pointer with: from the press of a button to its release all
/// events come to the view, wherever the pointer goes.
///
/// A report may destroy the view, and the tool with it, and so may whatever runs an event loop (a
/// dialog): it is the last thing that a tool does, or the tool holds GetLife and asks it before it
/// goes on. It may also change the selection and, by undoing, put other objects in the place of
/// all.
///
/// Threads: user interface only.
class XAPI XToolTarget
{
public:
    virtual ~XToolTarget() = default;
    /// Expires with the target.
    std::weak_ptr<const void> GetLife() const { return m_life; }

    virtual tagXToolState& GetToolState() = 0;
    virtual XGVMessageManager& GetMessageManager() = 0; ///< mode, post mode, limits
    virtual XGVObjectManager& GetObjectManager() = 0; ///< styles and the object under construction
    virtual XGVSelectedObjs& GetSelection() = 0;
    virtual XvcLayer* GetEditLayer() const = 0;
    virtual void UseEditLayer(XvcLayer* layer) = 0; ///< keeps the selection; null keeps the layer
    virtual XCommandManager& GetCommands() = 0;
    virtual XObList* GetInnBaseList() = 0;
    virtual XObList* GetExtBaseList() = 0;
    /// The object that a press at a world point means, within a tolerance in world lengths: the
    /// frontmost of the first base that has one, the inner bases before the external ones.
    /// @param hit  where it was hit; left alone when there is none
    virtual XvcObj* FindObject(double worldX, double worldY, double tolerance, tagXHitFlag& hit)
    {
        return XfnHitTestBases(*GetInnBaseList(), *GetExtBaseList(), worldX, worldY, tolerance,
                               hit);
    }
    virtual XViewMapping& GetViewMapping() = 0; ///< of both surfaces
    virtual XGVRubberBand& GetRubberBand() = 0;

    /// Lets the user choose a picture for what the tool of mode 109 is drawing.
    /// @return 1 when it has one, 0 when there is none; below 0: the tool asks itself, for BMP
    virtual int ChoosePicture(XvcBitmap&) { return -1; }
    virtual XHWND GetOwnerWindow() const = 0;   ///< of dialogs and text editors
    virtual QPoint GetScreenOrigin() const = 0; ///< upper left corner, device pixels of the screen
    virtual void RotateBy(double angleDeg) = 0; ///< adds to the angle of the view, and shows it

    /// The buffers are made anew at the next drawing.
    virtual void RaiseFlags(std::initializer_list<XViewBuffer> buffers) = 0;
    virtual void RepaintFor(XViewReason reason) = 0;
    /// The marks of the selection and the object under construction are drawn anew, nothing else.
    void ShowOverlay(XViewReason reason = XViewReason::Invalidate)
    {
        RaiseFlags({XViewBuffer::TempVertex, XViewBuffer::TempBack});
        RepaintFor(reason);
    }
    /// Objects changed, and nothing else: the whole picture is drawn anew, with its reports, but the
    /// rasters stay as they were drawn last. Where that takes long the marks come first, and the rest
    /// follows as often as it can.
    virtual void ShowMoved(XViewReason reason = XViewReason::Invalidate) = 0;
    /// The objects of all layers too.
    void ShowAll(XViewReason reason = XViewReason::Invalidate)
    {
        RaiseFlags({XViewBuffer::MainVertex, XViewBuffer::TempVertex, XViewBuffer::MainBack,
                    XViewBuffer::TempBack});
        RepaintFor(reason);
    }
    /// What the rubber band covers, or covered before it changed, is shown anew.
    virtual void RubberBandChanged() = 0;
    virtual void Report(XViewReport code, const void* parameter = nullptr) = 0;

private:
    const std::shared_ptr<const void> m_life = std::make_shared<const char>('\0');
};
