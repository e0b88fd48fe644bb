#include "view/XTQSpaceView.h"

#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcSymbolTable.h"
#include "view/XBaseLists.h"
#include "view/XTextBoxEditor.h"

#include <QLayout>

#include <algorithm>
#include <cmath>

namespace {

int s_viewCount = 0;

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
      m_dialogs(*this),
      m_tools(static_cast<XToolTarget&>(*this))
{
    ++s_viewCount;
    XfnUseTextBoxEditor();
    setAttribute(Qt::WA_OpaquePaintEvent); // the paint fills every pixel, so nothing erases before
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    // the right button drags the picture; its menu belongs to the host, after the release report
    setContextMenuPolicy(Qt::PreventContextMenu);
}

XTQSpaceView::~XTQSpaceView()
{
    OnDestroy();
    --s_viewCount;
    m_dialogs.ReleaseAll();
    m_selection.Clear();
    DestroyAll(m_innerBases);
    m_externalBases.RemoveAll();
    DestroyAll(m_symbolTables);
    if (m_compManager) m_compManager->RemoveXDMCompositeAll();
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
    if (!StartWorker()) return -1;
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
    m_compManager->SetRemoved([this](XDMComposite* gone) { m_dialogs.CompositeRemoved(*gone); });
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
    m_renderer.Stop();
    DestroyHandle();
}

void XTQSpaceView::SetMode(short mode)
{
    m_tools.Cancel();
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
    XfnForEachBase(m_innerBases, m_externalBases, [&](XvcBase& base) {
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
