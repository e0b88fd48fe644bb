#include "view/XRenderWorker.h"

#include <algorithm>
#include <system_error>
#include <utility>

XRenderWorker::XRenderWorker(XRenderTarget& target) : m_target(target) {}

XRenderWorker::~XRenderWorker()
{
    Stop();
}

int XRenderWorker::Start(std::function<void()> body)
{
    if (m_thread.joinable() || m_isTerminating) return 0;
    try {
        m_thread = std::thread(std::move(body));
    } catch (const std::system_error&) {
        return 0;
    }
    return 1;
}

void XRenderWorker::Stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isTerminating = 1;
        m_cancel = 1;
    }
    m_messages.Release();
    m_terminate.Set();
    if (m_thread.joinable()) m_thread.join();
}

int XRenderWorker::Que(int, const tagXPendingFlags& flags, std::shared_ptr<XRenderScene> scene)
{
    if (!IsQueEnabled()) return 0;
    m_messages.Lift();
    const std::lock_guard lock(m_mutex); // the scene of before dies after it
    m_pending.Merge(flags);
    m_scene.swap(scene);
    if (!m_drawLevels.empty() && m_drawLevels.front() != m_maximumLevels.front())
        m_cancel = 1;
    else
        m_restart = 1;
    m_isBarred = false;
    m_isRequested = true;
    m_request.Set();
    return 1;
}

void XRenderWorker::QueCancel()
{
    if (m_isTerminating) return;
    std::shared_ptr<XRenderScene> scene;
    {
        const std::lock_guard lock(m_mutex);
        m_scene.swap(scene);
        m_isBarred = true;
        m_isRequested = false;
        m_restart = 0; // it was the withdrawn request that asked
        m_cancel = 1;
    }
    m_messages.Release();
    m_idle.Wait();
    m_target.AwaitHelpers(); // of a sweep that ended for the request withdrawn here
}

int XRenderWorker::IsBusy() const
{
    const std::lock_guard lock(m_mutex);
    return m_isRequested || m_isSweeping;
}

std::vector<int> XRenderWorker::GetDrawLevels() const
{
    const std::lock_guard lock(m_mutex);
    return m_drawLevels;
}

tagXPendingFlags XRenderWorker::GetPendingFlags() const
{
    const std::lock_guard lock(m_mutex);
    return m_pending;
}

unsigned XRenderWorker::Run()
{
    const XMessageWorker::XScope scope(m_messages);
    XStep step = XStep::Nothing;
    while (step == XStep::Nothing || step == XStep::Served)
        step = Step(kXForever);
    return step == XStep::Terminated ? 1 : 0;
}

XRenderWorker::XStep XRenderWorker::Step(unsigned timeoutMs)
{
    switch (XEvent::WaitAny({&m_terminate, &m_request}, timeoutMs)) {
    case 0:
        if (m_isTerminating) m_terminate.Set(); // for any other waiter
        return XStep::Terminated;
    case 1:
        break;
    default:
        return XStep::Nothing;
    }
    std::shared_ptr<XRenderScene> scene;
    tagXPendingFlags flags;
    if (!TakeRequest(scene, flags)) return XStep::Nothing;
    XStep step = XStep::Served;
    int isShort = 0;
    try {
        step = Sweep(scene, flags, isShort);
    } catch (...) { // no memory for levels or surfaces: the flags wait for the next request
        ResetLevels();
        isShort = -1;
    }
    m_target.EndSweep();
    scene.reset(); // whoever waits for rest may take away what it was drawn from
    EndSweep(flags, isShort);
    return step;
}

/// From here to EndSweep the worker is not idle. The test on composite 0 counts as failed from the
/// start, since the sweep begins with its coarsest pass.
int XRenderWorker::TakeRequest(std::shared_ptr<XRenderScene>& scene, tagXPendingFlags& flags)
{
    const std::lock_guard lock(m_mutex);
    if (!m_isRequested) return 0; // withdrawn
    m_isRequested = false;
    m_cancel = 0;
    if (!m_isProgressive) return 0;
    m_isSweeping = true;
    m_idle.Reset();
    m_drawLevels = m_maximumLevels;
    scene = m_scene;
    flags = std::exchange(m_pending, {});
    return 1;
}

XRenderWorker::XStep XRenderWorker::Sweep(const std::shared_ptr<XRenderScene>& scene,
                                          tagXPendingFlags& flags, int& isShort)
{
    const auto leave = [this] {
        ResetLevels();
        return XStep::Left;
    };
    m_target.BeginSweep(scene);
    const int count = m_target.GetCompositeCount();
    int passes = 0, isLost = 0;
    if (count > 0) {
        if (!m_target.IsAlive()) return leave();
        std::vector<int> highest, maximum;
        for (int i = 0; i < count; ++i) {
            const tagXLevelRange range = m_target.CalcLevels(i);
            highest.push_back(range.highest);
            maximum.push_back(range.maximum);
            passes = std::max(passes, range.maximum - range.highest);
        }
        const std::lock_guard lock(m_mutex);
        m_drawLevels = maximum;
        m_maximumLevels.swap(maximum);
        m_highestLevels.swap(highest);
    }
    if (m_isTerminating) return XStep::Left;
    if (!m_target.IsAlive()) return leave();
    for (int i = 0; i < count && m_isFirstDraw; ++i) {
        if (!m_target.IsCompositeStale(i)) continue;
        m_isFirstDraw = 0;
        flags.mainBack = 1;
    }
    for (int pass = passes; pass >= 0; --pass) {
        if (!StartPass(pass, pass == passes)) {
            isShort = 1;
            break;
        }
        if (!m_target.IsAlive()) return leave();
        if (m_isTerminating) return XStep::Left;
        const XPass result = DrawPass(flags);
        if (result == XPass::Cancelled) {
            isShort = 1;
            break;
        }
        isLost = result == XPass::Threw;
        if (!m_target.IsAlive()) return leave();
        if (m_isTerminating) return XStep::Left;
        if (!m_cancel) m_target.Invalidate();
        if (m_restart.exchange(0)) m_cancel = 1;
    }
    if (isShort) ResetLevels();
    if (!isShort && isLost) isShort = -1; // the flags wait, but a lasting fault is not asked again
    return XStep::Served;
}

/// Sets the levels of a pass. 0 when the sweep is to end before it.
int XRenderWorker::StartPass(int pass, bool isFirst)
{
    const std::lock_guard lock(m_mutex);
    // a request may have come since the pass before looked
    if (!isFirst && m_restart.exchange(0)) m_cancel = 1;
    if (m_cancel) return 0;
    for (std::size_t i = 0; i < m_drawLevels.size(); ++i) {
        const int above = m_maximumLevels[i] - m_highestLevels[i];
        m_drawLevels[i] = pass <= above ? m_highestLevels[i] + pass : m_maximumLevels[i];
    }
    return 1;
}

XRenderWorker::XPass XRenderWorker::DrawPass(const tagXPendingFlags& flags)
{
    XPass result = XPass::Drawn;
    m_isDrawing = 1;
    try {
        m_target.DrawPass(flags, GetDrawLevels());
    } catch (...) { // the sweep goes on with the next level
        result = XPass::Threw;
    }
    if (m_cancel) result = XPass::Cancelled;
    m_isDrawing = 0;
    return result;
}

void XRenderWorker::EndSweep(const tagXPendingFlags& flags, int isShort)
{
    const auto isRequested = [this] {
        const std::lock_guard lock(m_mutex);
        return m_isRequested;
    };
    if (!isRequested()) m_target.AwaitHelpers(); // at rest means that nobody reads bands
    int isIdle = 0;
    {
        const std::lock_guard lock(m_mutex);
        m_isSweeping = false;
        m_cancel = 0;
        if (isShort) m_pending.Merge(flags);
        if (isShort > 0 && m_isAlwaysRefine && !m_isRequested && !m_isBarred && IsQueEnabled()) {
            m_isRequested = true;
            m_request.Set();
        }
        isIdle = !m_isRequested;
    }
    if (isIdle) m_target.OnIdle();
    m_idle.Set();
}

void XRenderWorker::ResetLevels()
{
    const std::lock_guard lock(m_mutex);
    std::fill(m_drawLevels.begin(), m_drawLevels.end(), -1);
}
