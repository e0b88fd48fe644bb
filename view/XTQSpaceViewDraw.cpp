#include "foundation/base/XFileException.h"
#include "foundation/surface/XQtColor.h"
#include "view/XBaseLists.h"
#include "view/XCompositeStack.h"
#include "view/XSelectionMarks.h"
#include "view/XTQSpaceView.h"

#include <QElapsedTimer>
#include <QPaintEvent>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

// Sets a flag of a window for the time of a scope, in which the window may go.
class ScopeFlag
{
public:
    ScopeFlag(XHWND owner, bool& flag) : m_owner(owner), m_flag(flag) { m_flag = true; }
    ~ScopeFlag()
    {
        if (XfnIsWindow(m_owner)) m_flag = false;
    }
    ScopeFlag(const ScopeFlag&) = delete;
    ScopeFlag& operator=(const ScopeFlag&) = delete;

private:
    XHWND m_owner;
    bool& m_flag;
};

} // namespace

void XTQSpaceView::InvalidateControl(int all)
{
    if (all) {
        m_overlay.Raise({XViewBuffer::BookMark, XViewBuffer::MainVertex, XViewBuffer::TempVertex,
                         XViewBuffer::MainBack, XViewBuffer::TempBack});
    }
    Repaint(Reason::Invalidate);
}

void XTQSpaceView::RaiseFlags(std::initializer_list<XViewBuffer> buffers)
{
    m_overlay.Raise(buffers);
    if (m_overlay.IsRaised(XViewBuffer::MainVertex)) m_isMoveAwaited = false;
}

void XTQSpaceView::ShowMoved(XViewReason reason)
{
    constexpr int kSmoothMs = 40, kLeastWaitMs = 100;
    constexpr int kMostMarked = 1000; // the marks of more take longer than the objects themselves
    const int ms = m_recordMs + (GetProgressiveView() ? m_renderer.GetMoveMs() : m_moveMs);
    if (ms <= kSmoothMs && m_selection.GetList()->GetCount() <= kMostMarked) {
        m_overlay.RaiseMoved();
        return Repaint(reason);
    }
    ShowOverlay(reason);
    if (std::exchange(m_isMoveAwaited, true)) return;
    // a third of the time at most
    QTimer::singleShot(std::max(kLeastWaitMs, 2 * ms), this, [this, reason] {
        if (!std::exchange(m_isMoveAwaited, false)) return; // drawn meanwhile
        m_overlay.RaiseMoved();
        Repaint(reason);
    });
}

void XTQSpaceView::Repaint(Reason reason)
{
    if (GetProgressiveView()) Que(static_cast<int>(reason));
    update(); // at once, with the picture at hand where it lies now
}

void XTQSpaceView::SetBackgroundColor(tagXColor color)
{
    m_objects.m_backColor = color;
    const XHWND window = GetHWND();
    UpdateBackBuffer();
    if (!XfnIsWindow(window)) return;
    // drawn from recordings that are made anew only at the next paint
    for (XViewBuffer vertex : kReplayed)
        if (m_overlay.IsRaised(vertex)) m_overlay.Raise({XViewBuffer::MainBack});
    Repaint(Reason::BackgroundColor);
}

void XTQSpaceView::UpdateVertBuffer()
{
    QElapsedTimer time;
    time.start();
    XVertBuffer& buffer = m_overlay.GetVertex(XViewBuffer::MainVertex);
    buffer.UpdateCompleted();
    buffer.Start();
    XfnForEachBase(m_innerBases, m_externalBases, [&](XvcBase& base) {
        base.CalcRange();
        base.CreateVertexBuffer(&buffer, nullptr, nullptr);
    });
    buffer.End();
    m_recordMs = static_cast<int>(time.elapsed());
}

void XTQSpaceView::UpdateVertBufferMeasure()
{
    XVertBuffer& buffer = m_overlay.GetVertex(XViewBuffer::Measure);
    buffer.UpdateCompleted();
    buffer.Start();
    if (XViewMeasureDlg* dialog = m_dialogs.GetMeasure())
        dialog->Draw(buffer, dialog->IsUnderMeasuring());
    buffer.End();
}

void XTQSpaceView::UpdateVertBufferBookMark()
{
    XVertBuffer& buffer = m_overlay.GetVertex(XViewBuffer::BookMark);
    buffer.UpdateCompleted();
    buffer.Start();
    m_bookMark.Record(buffer, m_overlay.GetMainBack());
    buffer.End();
}

void XTQSpaceView::UpdateVertBufferTemp()
{
    XVertBuffer& buffer = m_overlay.GetVertex(XViewBuffer::TempVertex);
    buffer.UpdateCompleted();
    buffer.Start();
    const XObList& selection = *m_selection.GetList();
    const auto record =
        selection.GetCount() < m_fullMarkCount ? &XfnRecordSelection : &XfnRecordManySelected;
    record(buffer, selection, m_overlay.GetMainBack(), m_objects.m_selectionColor);
    if (m_selection.IsEmpty() && m_objects.m_currentObject)
        XfnRecordCurrent(buffer, *m_objects.m_currentObject);
    buffer.End();
    PlaceTextEditors();
}

void XTQSpaceView::MakeCtrlPoint(const tagXVector3& vector, XvcPolygon& polygon) const
{
    XfnMakeCtrlPoint(vector, m_overlay.GetMainBack(), polygon);
}

void XTQSpaceView::UpdateBackBufferTemp()
{
    m_overlay.UpdateTempBack();
}

void XTQSpaceView::UpdateBackBuffer()
{
    XBackBuffer& buffer = m_overlay.GetMainBack();
    if (m_isDrawingBack) { // asked for by a host within a paint report
        buffer.SetUpdateNeeded();
        return;
    }
    const XHWND window = GetHWND();
    if (GetProgressiveView()) QueCancel();
    const ScopeFlag drawing(window, m_isDrawingBack);
    buffer.UpdateCompleted();
    try {
        const int isDone = DrawMainBack();
        if (!XfnIsWindow(window)) return;
        if (!isDone) buffer.SetUpdateNeeded();
        if (isDone && GetProgressiveView()) {
            const bool isAsked = m_renderer.GetWorker().IsBusy(); // within a report
            QueCancel();
            PublishOwn();
            if (isAsked) Repaint(Reason::Invalidate);
        }
    } catch (XFileException& e) {
        e.Delete();
        buffer.SetUpdateNeeded();
    }
}

// Answers 0 when it did not come to its end: without a composite manager, or because the window has
// gone meanwhile.
int XTQSpaceView::DrawMainBack()
{
    XBackBuffer& buffer = m_overlay.GetMainBack();
    const bool isMove = m_overlay.TakeMoved() != 0;
    if (!isMove) {
        ++m_rasterNumber;
        m_rasters.Drop();
    }
    QElapsedTimer time;
    time.start();
    const bool isKept = m_compManager && m_rasters.Restore(buffer, GetRasterState());
    if (!isKept) buffer.Clear(m_objects.m_backColor);
    if (!m_compManager) return 0;
    const XBufferMapping drawnAt = buffer.GetMapping();
    const tagXWorldBox box = m_mapping.GetBound();
    m_mapping.SetVisibleBox(box);

    const auto stack = XfnListComposites(m_compManager.get());
    int isFinest = 1;
    if (!isKept) {
        const auto levels = GetDirectLevels(stack, box, isFinest);
        XfnDrawCompositeStack(stack, &buffer, box, m_objects.m_backColor,
                              levels.empty() ? nullptr : levels.data(), &m_cancel);
        if (isMove && isFinest && !stack.empty() && !m_cancel)
            m_rasters.Keep(buffer, GetRasterState());
        time.start(); // of the vectors
    }
    const unsigned timeoutMs = XfnGetPaintReportTimeout(stack.size());
    if (!ReportPaint(XViewReport::PaintedRasters, timeoutMs)) return 0;
    m_dialogs.RepaintButtonPanel();
    for (XViewBuffer vertex : kReplayed)
        m_overlay.GetVertex(vertex).Draw(&buffer);
    if (!ReportPaint(XViewReport::PaintedVectors, timeoutMs)) return 0;
    if (!GetProgressiveView()) m_dialogs.DrawMapGrid(&buffer); // else when it is shown
    if (isMove) m_moveMs = static_cast<int>(time.elapsed());

    // an event loop within a report may have resized or moved what is drawn here
    if (!(buffer.GetMapping() == drawnAt)) buffer.SetUpdateNeeded();
    if (buffer.IsUpdateNeeded()) Repaint(Reason::Invalidate);
    if (!isFinest) buffer.SetUpdateNeeded(); // the next request refines
    m_dialogs.TellDrawn(box);
    return 1;
}

int XTQSpaceView::ReportPaint(XViewReport code, unsigned timeoutMs)
{
    const XHWND window = GetHWND();
    m_reports.SendWithin(code, &m_overlay.GetMainBack(), timeoutMs);
    return XfnIsWindow(window);
}

// Answers 0 when the window has gone meanwhile.
int XTQSpaceView::UpdatePicture()
{
    const XHWND window = GetHWND();
    const ScopeFlag updating(window, m_isUpdating);
    m_overlay.UpdateRaised(static_cast<XViewOverlaySteps&>(*this),
                           [window] { return XfnIsWindow(window) != 0; });
    return XfnIsWindow(window);
}

void XTQSpaceView::OnDraw(XDC* dc)
{
    if (GetProgressiveView()) {
        if (dc) ShowPicture(*dc);
    } else if (IsUpdating()) {
        QImage picture = m_frame.GetPicture();
        if (dc) dc->BitBlt(0, 0, picture.width(), picture.height(), XDC(&picture), 0, 0, kXCopy);
    } else if (UpdatePicture()) {
        XfnSwapSurfaces(dc, m_overlay.GetMainBack(), m_overlay.GetTempBack());
    }
}

void XTQSpaceView::paintEvent(QPaintEvent* event)
{
    if (GetProgressiveView()) {
        FollowClientSize();
        XDC dc(&m_frame.GetPicture(m_overlay.GetMainBack().GetImage().size()));
        OnDraw(&dc);
    } else if (IsUpdating()) {
        m_isPaintNested = true;
    } else {
        m_isPaintNested = false;
        FollowClientSize();
        XDC dc(&m_frame.GetNext(m_overlay.GetMainBack().GetImage().size()));
        OnDraw(&dc);
        m_frame.Publish();
        if (m_isPaintNested) {
            update(); // the paint within ended this one for Qt: no painter opens any more
            return;
        }
    }
    const double ratio = devicePixelRatioF();
    const QRectF dirty(event->rect());
    const QRect area = QRectF(dirty.topLeft() * ratio, dirty.size() * ratio).toAlignedRect();
    QPainter painter(this);
    painter.scale(1.0 / ratio, 1.0 / ratio); // from here on a unit is a device pixel
    m_frame.Paint(painter, area, XfnToQRgb(m_objects.m_backColor));
    m_rubberBand.Paint(painter);
}
