#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/surface/XDC.h"
#include "view/XCompositeStack.h"
#include "view/XTQSpaceView.h"

#include <algorithm>

// What crosses between the user interface and the worker: scenes one way, pictures the other.

int XTQSpaceView::StartWorker()
{
    return m_renderer.Start(
        GetHWND(), [this] { Process(this); }, [this] { OnPreDraw(); });
}

unsigned XTQSpaceView::Process(XTQSpaceView* view)
{
    return view->m_renderer.GetWorker().Run();
}

void XTQSpaceView::OnPreDraw()
{
    m_renderer.DrawScene();
}

void XTQSpaceView::SetProgressiveView(int isOn)
{
    XRenderWorker& worker = m_renderer.GetWorker();
    if ((isOn != 0) == (worker.IsProgressive() != 0)) return;
    if (!isOn) QueCancel();
    worker.SetProgressive(isOn);
    if (!m_isCreated) return;
    if (isOn && !m_overlay.IsRaised(XViewBuffer::MainBack)) {
        // with its map grid, for the worker begins anew
        if (const auto own = MakeOwnPicture()) m_picture = own;
    }
    m_overlay.Raise({XViewBuffer::MainBack, XViewBuffer::TempBack});
    Repaint(Reason::Invalidate);
}

void XTQSpaceView::Que(int reason)
{
    XRenderWorker& worker = m_renderer.GetWorker();
    if (!m_isCreated || !GetProgressiveView() || !worker.IsQueEnabled()) return;
    // the overlay lies on the picture it was made for: another mapping makes both anew
    if (!(m_queuedAt == m_overlay.GetMainBack().GetMapping()))
        m_overlay.Raise({XViewBuffer::MainBack, XViewBuffer::TempBack});
    const auto take = [this](XViewBuffer buffer) -> std::uint32_t {
        return m_overlay.IsRaised(buffer) != 0;
    };
    const tagXPendingFlags flags = {take(XViewBuffer::BookMark), take(XViewBuffer::MainVertex),
                                    take(XViewBuffer::MainBack), take(XViewBuffer::TempVertex),
                                    take(XViewBuffer::TempBack)};
    m_overlay.GetMainBack().UpdateCompleted();
    m_overlay.GetTempBack().UpdateCompleted();
    if (flags.mainBack && !m_overlay.TakeMoved()) ++m_rasterNumber;
    worker.Que(reason, flags, RecordScene());
    TellBusy();
}

void XTQSpaceView::QueCancel()
{
    m_renderer.GetWorker().QueCancel();
    AdoptPicture();
    TellBusy();
}

/// Brings the recordings up to date and takes with them all else that a picture is made of.
std::shared_ptr<XRenderScene> XTQSpaceView::RecordScene()
{
    m_overlay.UpdateVertices(static_cast<XViewOverlaySteps&>(*this));
    auto scene = std::make_shared<XViewScene>();
    scene->mapping = m_queuedAt = m_overlay.GetMainBack().GetMapping();
    scene->box = m_mapping.GetBound();
    m_mapping.SetVisibleBox(scene->box);
    scene->backColor = m_objects.m_backColor;
    scene->rasterState = GetRasterState();
    for (XDMComposite* own : XfnListComposites(m_compManager.get())) {
        own->PrepareVector();
        own->SetDrawRange(scene->box.minX, scene->box.minY, scene->box.maxX, scene->box.maxY);
        auto drawn = std::make_unique<XDMComposite>();
        drawn->CloneXDMComposite(own);
        scene->composites.push_back({own, std::move(drawn), own->IsUpdateNeeded()});
    }
    for (XViewBuffer vertex : kReplayed)
        scene->vertices.push_back(m_overlay.GetVertex(vertex).GetRecording());
    scene->overlay = m_overlay.GetVertex(XViewBuffer::TempVertex).GetRecording();
    scene->reports = m_reports;
    return scene;
}

/// Takes over the newest picture of the worker, if one waits, and tells who wants to know of it.
void XTQSpaceView::AdoptPicture()
{
    const auto picture = m_renderer.TakePicture();
    if (!picture) return;
    const auto stack = XfnListComposites(m_compManager.get());
    for (const auto& [own, drawn] : picture->results)
        if (std::find(stack.begin(), stack.end(), own) != stack.end())
            own->TakeDrawResults(drawn.get());

    SetPicture(picture);
    if (!picture->isMainNew) return;
    m_dialogs.RepaintButtonPanel();
    m_dialogs.TellDrawn(picture->box);
}

/// The map grid belongs to the user interface, so it is laid over what is shown and is no part of
/// what the worker goes on with.
void XTQSpaceView::SetPicture(const std::shared_ptr<const tagXViewPicture>& picture)
{
    XBackBuffer& back = m_overlay.GetMainBack();
    m_picture = picture;
    if (m_dialogs.IsMapGridShown()) {
        auto gridded = std::make_shared<tagXViewPicture>(*picture);
        XBackBuffer surface;
        surface.Resize(nullptr, picture->main->width(), picture->main->height());
        surface.SetMapping(picture->mapping);
        surface.GetImage() = *picture->main;
        m_dialogs.DrawMapGrid(&surface);
        gridded->main = std::make_shared<QImage>(surface.GetImage());
        XfnComposePicture(*gridded, std::make_shared<QImage>(surface.GetImage().copy()));
        m_picture = gridded;
    }
    if (back.GetImage().size() == m_picture->main->size()) back.GetImage() = *m_picture->main;
    update();
}

/// What was drawn on the view's own surfaces; null when there is nothing.
std::shared_ptr<tagXViewPicture> XTQSpaceView::MakeOwnPicture()
{
    auto picture = std::make_shared<tagXViewPicture>();
    picture->main = std::make_shared<QImage>(m_overlay.GetMainBack().GetImage());
    picture->mapping = m_overlay.GetMainBack().GetMapping();
    picture->box = m_mapping.GetBound();
    if (picture->main->isNull()) return nullptr;
    if (!m_overlay.GetVertex(XViewBuffer::TempVertex).IsEmpty()) {
        m_overlay.UpdateTempBack();
        picture->overlay = std::make_shared<QImage>(m_overlay.GetTempBack().GetImage());
    }
    XfnComposePicture(*picture, std::make_shared<QImage>(picture->main->copy()));
    return picture;
}

/// What was drawn on the view's own surfaces, without a map grid, becomes the picture shown and the
/// one that the worker goes on with. Nothing is being drawn.
void XTQSpaceView::PublishOwn()
{
    const auto picture = MakeOwnPicture();
    if (!picture) return;
    m_renderer.SetMain(*picture);
    SetPicture(picture);
}

void XTQSpaceView::ShowPicture(XDC& dc) const
{
    const QImage none;
    const bool isAny = m_picture && m_picture->shown;
    const XBufferMapping& now = m_overlay.GetMainBack().GetMapping();
    XfnShowPicture(dc, isAny ? *m_picture->shown : none, isAny ? m_picture->mapping : now, now,
                   m_objects.m_backColor);
}

/// The draw levels of a direct drawing in a progressive view: where the last whole sweep left the
/// level that the zoom needs, that one; else the coarsest, since whoever asks waits for it. Levels
/// of a sweep of other composites or at another zoom mostly fall out here too, and where one fits
/// by chance it is right.
std::vector<int> XTQSpaceView::GetDirectLevels(const std::vector<XDMComposite*>& stack,
                                               const tagXWorldBox& box, int& isFinest)
{
    isFinest = 1;
    if (!GetProgressiveView()) return {};
    std::vector<int> levels = m_renderer.GetWorker().GetDrawLevels();
    levels.resize(stack.size(), -1);
    for (std::size_t i = 0; i < stack.size(); ++i) {
        const int needed = stack[i]->GetHighestLevelForTarget(&m_overlay.GetMainBack(), box.minX,
                                                              box.minY, box.maxX, box.maxY);
        if (levels[i] != needed) levels[i] = stack[i]->GetMaxLevel();
        if (levels[i] != needed) isFinest = 0;
    }
    return levels;
}

int XTQSpaceView::IsDrawing() const
{
    return m_renderer.GetWorker().IsDrawing() || IsUpdating();
}

int XTQSpaceView::IsBusy() const
{
    return m_renderer.GetWorker().IsBusy() || m_renderer.HasPicture();
}

void XTQSpaceView::TellBusy()
{
    const bool isBusy = IsBusy() != 0;
    if (isBusy == m_isBusyTold) return;
    m_isBusyTold = isBusy;
    OnBusyChanged(isBusy);
}

int XTQSpaceView::OnRendererMessage(unsigned message)
{
    switch (message) {
    case kXPictureMessage:
        AdoptPicture();
        return 1;
    case kXIdleMessage:
        TellBusy();
        return 1;
    default:
        return 0;
    }
}
