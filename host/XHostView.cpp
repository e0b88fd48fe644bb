#include "host/XHostView.h"

#include "foundation/platform/XUserSettings.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/surface/XBackBuffer.h"
#include "view/XViewKeys.h"

#include <QTimer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kMostScreenPixels = 256; // for one of the image
constexpr double kLeastShare = 1.0 / 64;  // of the view for all layers

} // namespace

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

// The world lengths of a screen pixel between which the view stays; false when nothing is shown.
bool XHostView::GetLimits(double& closest, double& farthest)
{
    const XDMCompManager* manager = GetXDMCompManager();
    const XBackBuffer& buffer = *GetBackBuffer();
    double minX = 0, minY = 0, maxX = 0, maxY = 0;
    if (!manager || !manager->IsRangeValid() || buffer.GetWidth() < 1 || buffer.GetHeight() < 1 ||
        !manager->CalcTotalRange(minX, minY, maxX, maxY))
        return false;
    const double whole =
        std::max((maxX - minX) / buffer.GetWidth(), (maxY - minY) / buffer.GetHeight());
    double finest = 0;
    for (int i = 0; i < manager->GetNumberOfXDMComposite(); ++i) {
        const XDMBand* band = manager->GetXDMCompositeAt(i)->GetFirstBand();
        const double length = band ? std::fabs(band->GetXPixelSize()) : 0;
        if (length > 0 && (finest == 0 || length < finest)) finest = length;
    }
    closest = finest / kMostScreenPixels;
    // a single pixel may be seen from as far as a large image may be from near
    farthest = std::max(whole / kLeastShare, finest);
    return finest > 0 && std::isfinite(farthest) && farthest > closest;
}

bool XHostView::CanZoom(bool isIn)
{
    double closest = 0, farthest = 0;
    if (!GetLimits(closest, farthest)) return true;
    const double length = GetMapping()[2];
    return isIn ? length / 2 >= closest * (1 - 1e-9) : length * 2 <= farthest * (1 + 1e-9);
}

void XHostView::ZoomStep(bool isIn)
{
    if (!CanZoom(isIn)) return;
    if (isIn)
        ZoomIn();
    else
        ZoomOut();
}

void XHostView::KeepInLimits()
{
    double closest = 0, farthest = 0;
    Mapping mapping = GetMapping();
    if (!GetLimits(closest, farthest) || !(mapping[2] > 0)) return;
    const double wanted = std::clamp(mapping[2], closest, farthest) / mapping[2];
    if (wanted == 1) return;
    mapping[2] *= wanted;
    mapping[3] *= wanted;
    SetMapping(mapping);
    InvalidateControl(1);
}

int XHostView::OnMouseWheel(unsigned flags, int delta, int screenX, int screenY)
{
    const bool isIn = (delta < 0) != XfnGetInvertMouseWheelZoomDir();
    return CanZoom(isIn) ? XTQSpaceView::OnMouseWheel(flags, delta, screenX, screenY) : 1;
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
