#include "view/XViewRenderer.h"

#include "foundation/surface/XVertBuffer.h"
#include "view/XCompositeStack.h"

#include <QElapsedTimer>

#include <new>
#include <utility>

namespace {

/// Lends pixels to a surface for the time of a scope.
class PixelLoan
{
public:
    PixelLoan(XBackBuffer& surface, QImage& pixels) : m_surface(surface), m_pixels(pixels)
    {
        Swap();
    }
    ~PixelLoan() { Swap(); }
    PixelLoan(const PixelLoan&) = delete;
    PixelLoan& operator=(const PixelLoan&) = delete;

private:
    void Swap() { m_surface.GetImage().swap(m_pixels); }

    XBackBuffer& m_surface;
    QImage& m_pixels;
};

int Replay(const XViewScene::Recording& recording, XBackBuffer& surface,
           const std::atomic<int>* cancel)
{
    if (!recording || recording->GetCommands().empty()) return 1;
    XVertBuffer buffer;
    buffer.SetRecording(recording);
    return buffer.Draw(&surface, cancel);
}

QSize SizeOf(const XBufferMapping& mapping)
{
    return {mapping.GetWidth(), mapping.GetHeight()};
}

} // namespace

XViewRenderer::XViewRenderer() = default;

XViewRenderer::~XViewRenderer()
{
    Stop();
}

int XViewRenderer::Start(XHWND window, std::function<void()> process, std::function<void()> draw)
{
    m_window = window;
    m_draw = std::move(draw);
    m_isAlive = 1;
    return m_worker.Start(std::move(process));
}

void XViewRenderer::Stop()
{
    m_isAlive = 0;
    m_worker.Stop();
    m_helpers.Wait();
}

std::shared_ptr<const tagXViewPicture> XViewRenderer::TakePicture()
{
    const std::lock_guard lock(m_mutex);
    return std::move(m_published);
}

int XViewRenderer::HasPicture() const
{
    const std::lock_guard lock(m_mutex);
    return m_published != nullptr;
}

void XViewRenderer::BeginSweep(const std::shared_ptr<XRenderScene>& scene)
{
    m_scene = std::static_pointer_cast<XViewScene>(scene);
    m_isOverlayDone = false;
    for (const XViewScene::tagComposite& composite : m_scene->composites)
        composite.drawn->SetDrawHelpers(&m_helpers);
    const QSize size = SizeOf(m_scene->mapping);
    if (size != SizeOf(m_surface.GetMapping())) {
        m_surface.Resize(nullptr, size.width(), size.height());
        m_surface.GetImage() = QImage();
    }
    m_surface.SetMapping(m_scene->mapping);
}

int XViewRenderer::GetCompositeCount() const
{
    return static_cast<int>(m_scene->composites.size());
}

tagXLevelRange XViewRenderer::CalcLevels(int composite)
{
    const XDMComposite& drawn = *m_scene->composites[static_cast<std::size_t>(composite)].drawn;
    const tagXWorldBox& box = m_scene->box;
    tagXLevelRange range;
    range.highest =
        drawn.GetHighestLevelForTarget(&m_surface, box.minX, box.minY, box.maxX, box.maxY);
    // what is kept is of the highest already: one pass
    const bool isKept = m_rasters.Has(m_scene->mapping, m_scene->rasterState) != 0;
    range.maximum = isKept ? range.highest : drawn.GetMaxLevel();
    return range;
}

int XViewRenderer::IsCompositeStale(int composite) const
{
    return m_scene->composites[static_cast<std::size_t>(composite)].isStale;
}

void XViewRenderer::DrawPass(const tagXPendingFlags& flags, const std::vector<int>& levels)
{
    m_flags = flags;
    if (m_isOverlayDone) m_flags.tempBack = 0;
    if (!m_last.main || !(m_last.mapping == m_scene->mapping))
        m_flags.mainBack = m_flags.tempBack = 1;
    m_levels = levels;
    m_next.reset();
    m_draw();
}

int XViewRenderer::IsStopped() const
{
    return !m_isAlive || m_worker.IsTerminating();
}

int XViewRenderer::IsCancelled()
{
    return *m_worker.GetCancelFlag() || IsStopped();
}

void XViewRenderer::DrawScene()
{
    if (IsStopped() || !m_scene || (!m_flags.mainBack && !m_flags.tempBack)) return;
    auto next = std::make_shared<tagXViewPicture>(m_last);
    next->results.clear();
    next->isMainNew = 0;
    next->mapping = m_scene->mapping;
    next->box = m_scene->box;
    if (m_flags.mainBack) {
        next->main = DrawMain();
        next->isMainNew = 1;
        if (!next->main || IsCancelled()) return;
    }
    if (m_flags.tempBack) next->overlay = DrawOverlay();
    if (IsCancelled()) return;
    XfnComposePicture(*next, next->overlay ? TakePixels() : nullptr);
    m_next = std::move(next);
}

/// Throws without memory, so that the flags of the pass wait on.
std::shared_ptr<QImage> XViewRenderer::TakePixels()
{
    std::shared_ptr<QImage> pixels = m_pool.Take(SizeOf(m_scene->mapping));
    if (!pixels) throw std::bad_alloc();
    return pixels;
}

/// Null when the pass has been cancelled meanwhile.
std::shared_ptr<QImage> XViewRenderer::DrawMain()
{
    std::shared_ptr<QImage> pixels = TakePixels();
    if (IsCancelled()) return nullptr;
    m_surface.SetMapping(m_scene->mapping); // a host may have changed it in a report
    const PixelLoan loan(m_surface, *pixels);
    QElapsedTimer time;
    time.start();
    DrawRasters();

    // what will not be shown need not be finished, and nobody is told of it
    std::atomic<int>* const cancel = m_worker.GetCancelFlag();
    const unsigned timeoutMs = XfnGetPaintReportTimeout(m_scene->composites.size());
    if (IsCancelled()) return nullptr;
    m_scene->reports.SendWithin(XViewReport::PaintedRasters, &m_surface, timeoutMs);
    for (const XViewScene::Recording& recording : m_scene->vertices)
        if (IsCancelled() || !Replay(recording, m_surface, cancel)) return nullptr;
    if (IsCancelled()) return nullptr;
    m_scene->reports.SendWithin(XViewReport::PaintedVectors, &m_surface, timeoutMs);
    if (!m_areRastersNew) m_moveMs = static_cast<int>(time.elapsed());
    return pixels;
}

void XViewRenderer::DrawRasters()
{
    m_areRastersNew = !m_rasters.Restore(m_surface, m_scene->rasterState);
    if (!m_areRastersNew) return;
    m_surface.Clear(m_scene->backColor);
    std::vector<XDMComposite*> stack;
    for (const XViewScene::tagComposite& composite : m_scene->composites)
        stack.push_back(composite.drawn.get());
    const bool hasLevels = m_levels.size() == stack.size();
    XfnDrawCompositeStack(stack, &m_surface, m_scene->box, m_scene->backColor,
                          hasLevels ? m_levels.data() : nullptr, m_worker.GetCancelFlag());
    if (IsCancelled()) return;
    bool isFinest = hasLevels;
    for (std::size_t i = 0; isFinest && i < stack.size(); ++i)
        isFinest = m_levels[i] == CalcLevels(static_cast<int>(i)).highest;
    if (isFinest) m_rasters.Keep(m_surface, m_scene->rasterState);
}

/// Null when there is nothing to lay over the picture.
std::shared_ptr<QImage> XViewRenderer::DrawOverlay()
{
    if (!m_scene->overlay || m_scene->overlay->GetCommands().empty()) return nullptr;
    std::shared_ptr<QImage> pixels = TakePixels();
    m_surface.SetMapping(m_scene->mapping);
    const PixelLoan loan(m_surface, *pixels);
    m_surface.Clear(0xFF000000u);
    Replay(m_scene->overlay, m_surface, m_worker.GetCancelFlag());
    return pixels;
}

void XViewRenderer::Invalidate()
{
    if (!m_next) return;
    if (m_next->isMainNew && m_areRastersNew) {
        for (const XViewScene::tagComposite& composite : m_scene->composites) {
            auto result = std::make_shared<XDMComposite>();
            result->CloneXDMComposite(composite.drawn.get());
            result->TakeDrawResults(composite.drawn.get());
            m_next->results.emplace_back(composite.own, std::move(result));
        }
    }
    if (m_flags.tempBack) m_isOverlayDone = true;
    m_last = *m_next;
    m_last.results.clear();
    {
        const std::lock_guard lock(m_mutex);
        if (m_published && m_published->isMainNew && !m_next->isMainNew) {
            m_next->isMainNew = 1;
            m_next->results = std::move(m_published->results);
        }
        m_published.swap(m_next);
    }
    // one message is enough for what waits
    if (!std::exchange(m_next, nullptr)) XfnPostMessage(m_window, kXPictureMessage, 0, 0);
}

void XViewRenderer::EndSweep()
{
    m_scene.reset();
    m_next.reset();
}

void XViewRenderer::OnIdle()
{
    XfnPostMessage(m_window, kXIdleMessage, 0, 0);
}
