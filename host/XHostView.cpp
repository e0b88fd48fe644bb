#include "host/XHostView.h"

#include "foundation/raster/XDMCompManager.h"
#include "foundation/surface/XBackBuffer.h"
#include "view/XViewKeys.h"

#include <QTimer>

#include <utility>

XHostView::XHostView(QWidget* parent) : XTQSpaceView(parent)
{
    SetAutoFocus(0);
    setFocusPolicy(Qt::WheelFocus);
}

XHostView::~XHostView()
{
    OnDestroy();
}

XHostView::Mapping XHostView::GetMapping()
{
    Mapping mapping{};
    const XBackBuffer& buffer = *GetBackBuffer();
    buffer.GetWorldToCenter(mapping[0], mapping[1]);
    buffer.GetWorldPerPixel(mapping[2], mapping[3]);
    return mapping;
}

void XHostView::SetMapping(const Mapping& mapping)
{
    SetWorldToCenter(mapping[0], mapping[1]);
    SetWorldPerPixel(mapping[2], mapping[3]);
}

bool XHostView::IsFitted()
{
    return m_hasFit && GetMapping() == m_fitMapping;
}

void XHostView::FitAll()
{
    ZoomFit();
    const XDMCompManager* manager = GetXDMCompManager();
    std::array<double, 4> box{};
    m_hasFit = manager && manager->IsRangeValid() &&
               manager->CalcTotalRange(box[0], box[1], box[2], box[3]);
    m_fitBox = box;
    m_fitMapping = GetMapping();
}

void XHostView::FitBox(double minX, double minY, double maxX, double maxY)
{
    ZoomFitRect(minX, minY, maxX, maxY);
    m_hasFit = true;
    m_fitBox = {minX, minY, maxX, maxY};
    m_fitMapping = GetMapping();
}

void XHostView::HandleMouseMessage(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    if (message == kMsgLButtonDown && wParam == (kFlagLeft | kFlagShift) &&
        GetMode() == XGVMessageManager::kModeNone) {
        ZoomRect();
        m_isShiftZoom = true;
    }
    if (m_isShiftZoom) wParam &= ~static_cast<XWPARAM>(kFlagShift); // the tool knows no Shift
    if (message == kMsgLButtonUp) m_isShiftZoom = false;
    XTQSpaceView::HandleMouseMessage(window, message, wParam, lParam);
}

void XHostView::HandleKeyboardMessage(XHWND window, unsigned message, XWPARAM wParam,
                                      XLPARAM lParam)
{
    m_wasToolAtWork = GetMode() != XGVMessageManager::kModeNone;
    XTQSpaceView::HandleKeyboardMessage(window, message, wParam, lParam);
}

void XHostView::OnSize(int width, int height)
{
    const bool isFitted = IsFitted();
    const Mapping before = GetMapping();
    XTQSpaceView::OnSize(width, height);
    const XDMCompManager* manager = GetXDMCompManager();
    if (width < 1 || height < 1 || !manager || manager->GetNumberOfXDMComposite() == 0) return;
    if (isFitted) {
        // on the surface itself: a fit of the view would report a command that nobody gave
        GetBackBuffer()->ZoomFit(m_fitBox[0], m_fitBox[1], m_fitBox[2], m_fitBox[3]);
        SetMapping(GetMapping());
        m_fitMapping = GetMapping();
    } else {
        SetMapping(before);
    }
    InvalidateControl(1);
}

void XHostView::OnBusyChanged(int isBusy)
{
    if (m_busyChanged) m_busyChanged(isBusy != 0);
}

void XHostView::paintEvent(QPaintEvent* event)
{
    XTQSpaceView::paintEvent(event);
    if (m_afterPaint && !std::exchange(m_isAfterPaintDue, true)) {
        QTimer::singleShot(0, this, [this] {
            m_isAfterPaintDue = false;
            if (m_afterPaint) m_afterPaint();
        });
    }
    if (m_firstPaint) QTimer::singleShot(0, this, std::exchange(m_firstPaint, nullptr));
}
