#include "view/XTQSpaceView.h"

#include "foundation/base/XFileException.h"
#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/surface/XQtColor.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcSymbolTable.h"
#include "view/XCompositeStack.h"
#include "view/XSelectionMarks.h"

#include <QLayout>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

int s_viewCount = 0;

// what the main surface shows of the recordings, from bottom to top
constexpr XViewBuffer kReplayed[] = {XViewBuffer::MainVertex, XViewBuffer::Measure,
                                     XViewBuffer::BookMark};

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

template <class Visit>
void ForEachBase(const XObList& inner, const XObList& external, Visit visit)
{
    for (const XObList* list : {&inner, &external})
        for (__POSITION* pos = list->GetHeadPosition(); pos;)
            if (auto* base = dynamic_cast<XvcBase*>(list->GetNext(pos))) visit(*base);
}

void DestroyAll(XObList& list)
{
    for (__POSITION* pos = list.GetHeadPosition(); pos;)
        delete list.GetNext(pos);
    list.RemoveAll();
}

} // namespace

XTQSpaceView::XTQSpaceView(QWidget* parent)
    : QWidget(parent),
      m_mapping(m_overlay.GetMainBack(), m_overlay.GetTempBack()),
      m_input(static_cast<XViewInputTarget&>(*this)),
      m_dialogs(*this)
{
    ++s_viewCount;
    setAttribute(Qt::WA_OpaquePaintEvent); // the paint fills every pixel, so nothing erases before
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    // the right button drags the picture; its menu belongs to the host, after the release report
    setContextMenuPolicy(Qt::PreventContextMenu);
}

XTQSpaceView::~XTQSpaceView()
{
    OnDestroy();
    m_dialogs.ReleaseAll();
    m_selection.Clear();
    DestroyAll(m_innerBases);
    m_externalBases.RemoveAll();
    DestroyAll(m_symbolTables);
    if (m_compManager) m_compManager->RemoveXDMCompositeAll();
    --s_viewCount;
}

int XTQSpaceView::GetViewCount()
{
    return s_viewCount;
}

int XTQSpaceView::Create(QWidget* parent)
{
    if (m_isCreated) return 1;
    if (parent && parent != parentWidget()) setParent(parent);
    m_isCreated = true;
    if (OnCreate() == -1) {
        m_isCreated = false;
        return 0;
    }
    OnInitialUpdate();
    return 1;
}

void XTQSpaceView::Initialize(XHWND hostWindow, unsigned hostMessage)
{
    m_reports.SetHost(hostWindow, hostMessage);
}

int XTQSpaceView::OnCreate()
{
    const QSize client = m_clientSize = GetClientPixels();
    m_overlay.Create(client.width(), client.height());
    m_mapping.StartAlike(client.width(), client.height());
    m_mapping.SetWorldPerPixelBase(1, 1);
    m_overlay.Raise({XViewBuffer::MainBack, XViewBuffer::TempBack});
    InvalidateControl(1);

    auto base = std::make_unique<XvcBase>();
    auto layer = std::make_unique<XvcLayer>();
    auto table = std::make_unique<XvcSymbolTable>();
    m_editLayer = layer.get();
    base->AddTail(layer.release());
    base->SetSymbolTable(table.get());
    m_innerBases.AddTail(base.release());
    m_symbolTables.AddTail(table.release());

    m_compManager = std::make_unique<XDMCompManager>();
    m_dialogs.CreateButtonPanel();
    return 0;
}

void XTQSpaceView::OnInitialUpdate()
{
    QWidget* frame = parentWidget();
    if (frame && frame->layout()) frame->layout()->activate();
}

void XTQSpaceView::OnSize(int width, int height)
{
    m_clientSize = QSize(width, height);
    if (width < 1 || height < 1) return; // folded away: the picture is kept
    m_mapping.Resize(width, height);
    if (m_mapping.HasVisibleBox()) m_mapping.ZoomFit(m_mapping.GetVisibleBox());
    RaiseMapping();
    if (m_dialogs.GetButtonPanel()) m_dialogs.GetButtonPanel()->OwnerResized();
    Repaint(Reason::Size);
}

void XTQSpaceView::OnDestroy()
{
    m_cancel = 1;
    DestroyHandle();
}

void XTQSpaceView::SetMode(short mode)
{
    m_messages.SetMode(mode);
    if (m_selection.Clear()) m_overlay.Raise({XViewBuffer::TempVertex, XViewBuffer::TempBack});
    m_tool.Restart();
    m_overlay.Raise({XViewBuffer::MainBack});
    Repaint(Reason::SetMode);
}

void XTQSpaceView::SetEditLayer(XvcLayer* layer)
{
    if (m_selection.Clear()) m_overlay.Raise({XViewBuffer::TempVertex, XViewBuffer::TempBack});
    if (layer) m_editLayer = layer;
}

int XTQSpaceView::CalcTotalRange(double& minX, double& minY, double& maxX, double& maxY)
{
    minX = minY = kXNotSet;
    maxX = maxY = kXNoData;
    ForEachBase(m_innerBases, m_externalBases, [&](XvcBase& base) {
        double x0 = 0, y0 = 0, z0 = 0, x1 = 0, y1 = 0, z1 = 0;
        base.CalcRange();
        base.GetRange(x0, y0, z0, x1, y1, z1);
        minX = std::min(minX, x0);
        minY = std::min(minY, y0);
        maxX = std::max(maxX, x1);
        maxY = std::max(maxY, y1);
    });
    return 1;
}

void XTQSpaceView::SetBookMark(double x, double y, tagXColor color)
{
    m_bookMark.Set(x, y, color);
    m_overlay.Raise({XViewBuffer::BookMark, XViewBuffer::MainBack});
    InvalidateControl(1);
}

void XTQSpaceView::ClearBookMark()
{
    m_bookMark.Clear();
    m_overlay.Raise({XViewBuffer::BookMark, XViewBuffer::MainBack});
    InvalidateControl(1);
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

int XTQSpaceView::CanShowStretchDlg() const
{
    return XViewDialogFactories::Get().stretch != nullptr;
}

int XTQSpaceView::CanShowColorTable() const
{
    return XViewDialogFactories::Get().palette != nullptr;
}

int XTQSpaceView::CanShowMeasureDlg() const
{
    return XViewDialogFactories::Get().measure != nullptr;
}

int XTQSpaceView::CanShowThumbView() const
{
    return XViewDialogFactories::Get().thumb != nullptr;
}

int XTQSpaceView::CanShowMapGridProperty() const
{
    return XViewDialogFactories::Get().mapGrid != nullptr;
}

void XTQSpaceView::ShowStretchDlg(int show)
{
    m_dialogs.ShowStretch(show);
}

void XTQSpaceView::ShowColorTable(int show)
{
    m_dialogs.ShowPalette(show);
}

void XTQSpaceView::ShowMeasureDlg(int show)
{
    m_dialogs.ShowMeasure(show);
}

void XTQSpaceView::ShowThumbView(int show)
{
    m_dialogs.ShowThumb(show);
}

void XTQSpaceView::ShowMapGridProperty(QWidget* parent)
{
    m_dialogs.RunMapGridProperty(parent);
}

void XTQSpaceView::ClearMapGrid()
{
    m_dialogs.ClearMapGrid();
}

void XTQSpaceView::AddPropButton(int id)
{
    if (m_dialogs.GetButtonPanel()) m_dialogs.GetButtonPanel()->AddButton(id);
}

void XTQSpaceView::ShowPropButton(int show)
{
    if (m_dialogs.GetButtonPanel()) m_dialogs.GetButtonPanel()->SetVisible(show);
}

void XTQSpaceView::InvalidateControl(int all)
{
    if (all) {
        m_overlay.Raise({XViewBuffer::BookMark, XViewBuffer::MainVertex, XViewBuffer::TempVertex,
                         XViewBuffer::MainBack, XViewBuffer::TempBack});
    }
    Repaint(Reason::Invalidate);
}

void XTQSpaceView::Repaint(Reason)
{
    update();
}

void XTQSpaceView::UpdateVertBuffer()
{
    XVertBuffer& buffer = m_overlay.GetVertex(XViewBuffer::MainVertex);
    buffer.UpdateCompleted();
    buffer.Start();
    ForEachBase(m_innerBases, m_externalBases, [&](XvcBase& base) {
        base.CalcRange();
        base.CreateVertexBuffer(&buffer, nullptr, nullptr);
    });
    buffer.End();
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
    XfnRecordSelection(buffer, *m_selection.GetList(), m_overlay.GetMainBack(),
                       m_objects.m_selectionColor);
    if (m_selection.IsEmpty() && m_objects.m_currentObject)
        m_objects.m_currentObject->CreateVertexBuffer(&buffer, nullptr, nullptr);
    buffer.End();
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
    const ScopeFlag drawing(window, m_isDrawingBack);
    buffer.UpdateCompleted();
    try {
        if (!DrawMainBack() && XfnIsWindow(window)) buffer.SetUpdateNeeded();
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
    buffer.Clear(m_objects.m_backColor);
    if (!m_compManager) return 0;
    const XBufferMapping drawnAt = buffer.GetMapping();
    const tagXWorldBox box = m_mapping.GetBound();
    m_mapping.SetVisibleBox(box);

    const auto stack = XfnListComposites(m_compManager.get());
    XfnDrawCompositeStack(stack, &buffer, box, m_objects.m_backColor, nullptr, &m_cancel);
    const unsigned timeoutMs = stack.size() > 1 ? 1000 : 10;
    if (!ReportPaint(XViewReport::PaintedRasters, timeoutMs)) return 0;
    XViewButtonPanel* panel = m_dialogs.GetButtonPanel();
    if (panel && panel->HasWindow()) panel->Invalidate();
    for (XViewBuffer vertex : kReplayed)
        m_overlay.GetVertex(vertex).Draw(&buffer);
    if (!ReportPaint(XViewReport::PaintedVectors, timeoutMs)) return 0;
    m_dialogs.DrawMapGrid(&buffer);

    // an event loop within a report may have resized or moved what is drawn here
    if (!(buffer.GetMapping() == drawnAt)) buffer.SetUpdateNeeded();
    if (buffer.IsUpdateNeeded()) update();
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
    if (IsDrawing()) {
        QImage picture = m_frame.GetPicture();
        if (dc) dc->BitBlt(0, 0, picture.width(), picture.height(), XDC(&picture), 0, 0, kXCopy);
    } else if (UpdatePicture()) {
        XfnSwapSurfaces(dc, m_overlay.GetMainBack(), m_overlay.GetTempBack());
    }
}

QSize XTQSpaceView::GetClientPixels() const
{
    const double ratio = devicePixelRatioF();
    return {static_cast<int>(std::lround(width() * ratio)),
            static_cast<int>(std::lround(height() * ratio))};
}

// A screen of another scale changes the size in device pixels without a resize.
void XTQSpaceView::FollowClientSize()
{
    const QSize client = GetClientPixels();
    if (client != m_clientSize) OnSize(client.width(), client.height());
}

void XTQSpaceView::paintEvent(QPaintEvent* event)
{
    if (IsDrawing()) {
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
}

void XTQSpaceView::resizeEvent(QResizeEvent*)
{
    if (!m_isCreated) return;
    const QSize client = GetClientPixels();
    OnSize(client.width(), client.height());
}

void XTQSpaceView::showEvent(QShowEvent* event)
{
    Create();
    QWidget::showEvent(event);
}
