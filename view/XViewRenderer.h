#pragma once

#include "foundation/raster/XDrawHelpers.h"
#include "foundation/surface/XBackBuffer.h"
#include "view/XImagePool.h"
#include "view/XRenderWorker.h"
#include "view/XViewPicture.h"
#include "view/XViewScene.h"

#include <functional>
#include <mutex>

/// Posted to the view when a picture waits in TakePicture.
constexpr unsigned kXPictureMessage = 2041;
/// Posted to the view when nothing is left to draw.
constexpr unsigned kXIdleMessage = 2042;

/// The progressive drawing of a view: a worker with surfaces of its own, which draws scenes and
/// publishes whole pictures.
///
/// Threads: the user interface, except for DrawScene.
class XAPI XViewRenderer : private XRenderTarget
{
public:
    XViewRenderer();
    ~XViewRenderer() override; ///< stops

    XRenderWorker& GetWorker() { return m_worker; }
    const XRenderWorker& GetWorker() const { return m_worker; }

    /// @param window   told of pictures and of the end of work
    /// @param process  the thread's function; runs the worker
    /// @param draw     called by the worker for each pass; runs DrawScene
    int Start(XHWND window, std::function<void()> process, std::function<void()> draw);
    /// Ends the worker, in mid-pass too. Nothing is drawn from then on.
    void Stop();

    /// The newest picture that was not taken yet; null when there is none.
    std::shared_ptr<const tagXViewPicture> TakePicture();
    int HasPicture() const;
    /// What the vectors of the last whole drawing took over rasters that were kept.
    int GetMoveMs() const { return m_moveMs; }
    /// What was drawn elsewhere becomes the picture that later overlays are laid over. Only
    /// while nothing is drawn: after QueCancel of the worker.
    void SetMain(const tagXViewPicture& picture) { m_last = picture; }

    /// Draws the pass in hand: the main picture and the overlay, as far as their flags are raised.
    /// Worker only. Returns early without a window and when the end has begun.
    void DrawScene();

private:
    int IsAlive() const override { return m_isAlive; }
    void BeginSweep(const std::shared_ptr<XRenderScene>& scene) override;
    int GetCompositeCount() const override;
    tagXLevelRange CalcLevels(int composite) override;
    int IsCompositeStale(int composite) const override;
    void DrawPass(const tagXPendingFlags& flags, const std::vector<int>& levels) override;
    void Invalidate() override;
    void AwaitHelpers() override { m_helpers.Wait(); }
    void EndSweep() override;
    void OnIdle() override;

    int IsStopped() const;
    int IsCancelled();
    std::shared_ptr<QImage> TakePixels();
    std::shared_ptr<QImage> DrawMain();
    void DrawRasters();
    std::shared_ptr<QImage> DrawOverlay();

    XHWND m_window = 0;
    std::function<void()> m_draw;
    std::atomic<int> m_isAlive{0};
    std::atomic<int> m_moveMs{0};

    XDrawHelpers m_helpers; // read bands until AwaitHelpers

    // the worker's
    XImagePool m_pool;
    std::shared_ptr<XViewScene> m_scene;
    XBackBuffer m_surface;        // has pixels only while something is drawn on it
    XRasterKeeper m_rasters;      // of the last drawing at the levels that the zoom needs
    bool m_areRastersNew = false; // drawn in this pass
    tagXPendingFlags m_flags;
    std::vector<int> m_levels;
    tagXViewPicture m_last;
    std::shared_ptr<tagXViewPicture> m_next; // drawn in this pass, not published yet
    bool m_isOverlayDone = false;            // of this sweep: no level changes it

    mutable std::mutex m_mutex; // for the next
    std::shared_ptr<tagXViewPicture> m_published;

    XRenderWorker m_worker{static_cast<XRenderTarget&>(*this)}; // its thread ends first
};
