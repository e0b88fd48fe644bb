#pragma once

#include "foundation/platform/XEvent.h"
#include "foundation/platform/XMessageWorker.h"
#include "view/XRenderTarget.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

/// The drawing thread of a view: repaints in passes from the coarsest level of each composite down
/// to the one that the zoom needs, and gives up as soon as something newer is asked for.
///
/// A sweep takes the newest scene and all flags that wait, and draws one pass a level. In pass d,
/// counted down to 0, a composite is drawn at its highest level + d, or at its maximum while d is
/// beyond that. So all levels are coarsest in the first pass.
///
/// A request while composite 0 is drawn at its maximum level lets the pass in hand finish, and the
/// sweep then ends: the user gets one whole coarse picture however fast the requests come. At any
/// other level, and at rest, it stops the drawing at once. Only composite 0 is asked. So the first
/// request of all, and every request while composite 0 has a single level, ends its own sweep after
/// one pass; SetAlwaysRefine adds a sweep then.
///
/// A sweep that ended early, or whose last pass threw, leaves its flags waiting, so nothing that
/// was raised is lost. After one that ended early all draw levels are -1 (a composite chooses by itself); after a whole sweep they stay where its
/// last pass put them.
///
/// Threads: Start, Stop and the destructor belong to the owner's thread; the rest is free. Que never
/// waits for the drawing. QueCancel, Stop and the destructor wait for it to stop, and sends of the
/// worker (XfnSendMessage...) fail from then on, so they cannot wait for each other; the next Que
/// allows sends again. None of the three may be called by the worker itself.
class XAPI XRenderWorker
{
public:
    /// @param target  must outlive this object
    explicit XRenderWorker(XRenderTarget& target);
    ~XRenderWorker();
    XRenderWorker(const XRenderWorker&) = delete;
    XRenderWorker& operator=(const XRenderWorker&) = delete;

    /// Starts the thread on `body`, which calls Run.
    /// @return 0 when the system gives no thread
    int Start(std::function<void()> body);
    /// Serves requests until the end: what the thread does.
    /// @return 1 after Stop, 0 when the window has gone
    unsigned Run();
    /// Ends the thread, in mid-pass too, and joins it. Requests are dropped from then on.
    void Stop();

    /// Asks for a sweep.
    /// @param reason  for traces; changes nothing
    /// @param flags   joined to those that wait
    /// @param scene   takes the place of the one that waits
    /// @return 0 when the request was dropped: the queue is disabled, or the end has begun
    int Que(int reason, const tagXPendingFlags& flags, std::shared_ptr<XRenderScene> scene);
    /// A barrier: withdraws the request that waits and returns when nothing is drawn. Flags wait on.
    void QueCancel();
    void QueEnable() { m_isEnabled = 1; }
    void QueDisable() { m_isEnabled = 0; }
    int IsQueEnabled() const { return m_isEnabled && !m_isTerminating; }

    void SetProgressive(int isOn)
    {
        m_isProgressive = isOn != 0;
    } ///< off at first: nothing is drawn
    int IsProgressive() const { return m_isProgressive; }
    /// Asks once more after a sweep that ended early when nothing newer came. Off at first.
    void SetAlwaysRefine(int isOn) { m_isAlwaysRefine = isOn != 0; }
    int IsAlwaysRefine() const { return m_isAlwaysRefine; }

    int IsDrawing() const { return m_isDrawing; } ///< a pass is being drawn
    int IsBusy() const;                           ///< a request waits or a sweep is under way
    int IsTerminating() const { return m_isTerminating; }
    /// Non-zero ends the pass in hand; what draws polls it.
    std::atomic<int>* GetCancelFlag() { return &m_cancel; }
    std::vector<int> GetDrawLevels() const; ///< one a composite; empty before any sweep
    tagXPendingFlags GetPendingFlags() const;

    enum class XStep { Nothing, Served, Left, Terminated };
    /// Waits for one request and serves it: a turn of Run, for owners without a thread.
    /// @param timeoutMs  0 only looks
    XStep Step(unsigned timeoutMs);

private:
    int TakeRequest(std::shared_ptr<XRenderScene>& scene, tagXPendingFlags& flags);
    XStep Sweep(const std::shared_ptr<XRenderScene>& scene, tagXPendingFlags& flags, int& isShort);
    int StartPass(int pass, bool isFirst);
    enum class XPass { Drawn, Threw, Cancelled };
    XPass DrawPass(const tagXPendingFlags& flags);
    void EndSweep(const tagXPendingFlags& flags, int isShort);
    void ResetLevels();

    XRenderTarget& m_target;
    XEvent m_request;
    XEvent m_terminate;
    XEvent m_idle{XEvent::XReset::Manual, true};
    std::atomic<int> m_cancel{0};
    std::atomic<int> m_restart{0};
    std::atomic<int> m_isEnabled{1};
    std::atomic<int> m_isTerminating{0};
    std::atomic<int> m_isDrawing{0};
    std::atomic<int> m_isProgressive{0};
    std::atomic<int> m_isAlwaysRefine{0};
    int m_isFirstDraw = 1; // worker only

    mutable std::mutex m_mutex; // for what follows; held for a few instructions only
    tagXPendingFlags m_pending;
    std::shared_ptr<XRenderScene> m_scene;
    std::vector<int> m_drawLevels; // one entry a composite, and so the following two
    std::vector<int> m_maximumLevels;
    std::vector<int> m_highestLevels;
    bool m_isRequested = false;
    bool m_isSweeping = false;
    bool m_isBarred = false; // by QueCancel, until the next Que

    XMessageWorker m_messages;
    std::thread m_thread;
};
