#include "host/XHostView.h"

#include "foundation/platform/XUserSettings.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcTextBox.h"
#include "view/XViewKeys.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kMostScreenPixels = 256; // for one of the image
constexpr double kLeastShare = 1.0 / 64;  // of the view for all layers
constexpr double kLeastPart = 1e-6;       // of what is open, where there are no pixels
constexpr double kPointShare = 1e-4;      // of its coordinates, to be seen around a point
constexpr int kClickSlackPx = 3;          // a hand is not still
constexpr double kPointPixels = 10;       // of a point drawn with lines given in pixels
constexpr int kRestMs = 40;
constexpr int kFullMarks = 1000; // objects with all their control points
constexpr short kModeSelect = 0, kModeLine = 102, kModeArrow = 115;

} // namespace

XHostView::XHostView(QWidget* parent) : XTQSpaceView(parent)
{
    SetAutoFocus(0);
    SetFullMarkCount(kFullMarks);
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
    double box[4] = {0, 0, 0, 0};
    if (m_extent && m_extent(box)) return FitBox(box[0], box[1], box[2], box[3]);
    ZoomFit();
    m_hasFit = false;
}

void XHostView::RunPropButton(int id)
{
    if (id == kXPropFit)
        FitAll();
    else if (id == kXPropZoomIn || id == kXPropZoomOut)
        ZoomStep(id == kXPropZoomIn);
    else
        XTQSpaceView::RunPropButton(id);
}

void XHostView::ShowObject(double minX, double minY, double maxX, double maxY)
{
    constexpr double kMargin = 0.06; // of each side, so that outline and marks are seen whole
    if (minX == maxX && minY == maxY) {
        SetWorldToCenter(minX, minY);
        InvalidateControl(1);
        return;
    }
    const double x = (maxX - minX) * kMargin, y = (maxY - minY) * kMargin;
    FitBox(minX - x, minY - y, maxX + x, maxY + y);
}

void XHostView::FitBox(double minX, double minY, double maxX, double maxY)
{
    if (minX == maxX && minY == maxY) { // a point has no scale of its own
        const double half = std::max({1e-6, std::fabs(minX), std::fabs(minY)}) * kPointShare;
        minX -= half;
        minY -= half;
        maxX += half;
        maxY += half;
    }
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
    double box[4] = {0, 0, 0, 0};
    if (!manager || buffer.GetWidth() < 1 || buffer.GetHeight() < 1 || !m_extent || !m_extent(box))
        return false;
    const double whole =
        std::max((box[2] - box[0]) / buffer.GetWidth(), (box[3] - box[1]) / buffer.GetHeight());
    double finest = 0;
    for (int i = 0; i < manager->GetNumberOfXDMComposite(); ++i) {
        const XDMBand* band = manager->GetXDMCompositeAt(i)->GetFirstBand();
        const double length = band ? std::fabs(band->GetXPixelSize()) : 0;
        if (length > 0 && (finest == 0 || length < finest)) finest = length;
    }
    closest = finest > 0 ? finest / kMostScreenPixels : whole * kLeastPart;
    // a single pixel may be seen from as far as a large image may be from near
    farthest = std::max(whole / kLeastShare, finest);
    return closest > 0 && std::isfinite(farthest) && farthest > closest;
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
    if (message == kMsgLButtonDblClk && m_beforeDoubleClick)
        m_beforeDoubleClick(XfnPackedX(lParam), XfnPackedY(lParam));
    if (m_isShiftZoom) wParam &= ~static_cast<XWPARAM>(kFlagShift); // the tool knows no Shift
    if (message == kMsgLButtonUp) m_isShiftZoom = false;
    if (message == kMsgLButtonDown || message == kMsgLButtonUp)
        m_isLeftDown = message == kMsgLButtonDown;
    const QPoint pixel(XfnPackedX(lParam), XfnPackedY(lParam));
    if (message != kMsgMouseWheel) m_seen = pixel; // that one tells a place on the screen
    if (HoldRightPress(message, pixel) || GiveUpLine(message, pixel)) {
        OnSetCursor();
        return;
    }
    m_isBoxPress =
        message == kMsgLButtonDown && GetMode() == kModeSelect && (wParam & kFlagShift) != 0;
    if (m_isBoxPress) ShowSelected(nullptr);
    if (GetMode() == kModeBalloon)
        HandleMouseBalloonMessage(window, message, wParam, lParam);
    else
        XTQSpaceView::HandleMouseMessage(window, message, wParam, lParam);
}

bool XHostView::IsDrawingObject()
{
    const XvcObj* const object = GetObjectManager().m_currentObject;
    return object && (m_isLeftDown || dynamic_cast<const XvcVertexObj*>(object));
}

// Answers true for a press that waits for its release. Where that comes at the same place, the tool
// gets both.
bool XHostView::HoldRightPress(unsigned message, const QPoint& pixel)
{
    switch (message) {
    case kMsgRButtonDown:
        m_isRightHeld = IsDrawingObject();
        m_rightPress = pixel;
        return m_isRightHeld;
    case kMsgMouseMove:
        if ((pixel - m_rightPress).manhattanLength() > kClickSlackPx) m_isRightHeld = false;
        return false;
    case kMsgRButtonUp:
        if (std::exchange(m_isRightHeld, false)) StepBack();
        return false;
    default:
        return false;
    }
}

// A click with the tool of a line would leave a dot that nobody finds again.
bool XHostView::GiveUpLine(unsigned message, const QPoint& pixel)
{
    if (message == kMsgLButtonDown) m_leftPress = pixel;
    const short mode = GetMode();
    if (message != kMsgLButtonUp || (mode != kModeLine && mode != kModeArrow) ||
        !dynamic_cast<XvcLine*>(GetObjectManager().m_currentObject) ||
        (pixel - m_leftPress).manhattanLength() > kClickSlackPx)
        return false;
    GetObjectManager().DestroyCurrent();
    InvalidateControl(1);
    if (m_noLength) m_noLength();
    return true;
}

void XHostView::SendToTool(unsigned message, unsigned flags, const QPoint& pixel)
{
    XTQSpaceView::HandleMouseMessage(GetHWND(), message, flags,
                                     static_cast<XLPARAM>(XfnPackPoint(pixel.x(), pixel.y())));
}

void XHostView::StepBack()
{
    SendToTool(kMsgRButtonDown, kFlagRight, m_seen);
}

void XHostView::FinishObject()
{
    SendToTool(kMsgLButtonDblClk, kFlagLeft, m_seen);
}

int XHostView::ChoosePicture(XvcBitmap& picture)
{
    return m_choosePicture ? m_choosePicture(picture) : XTQSpaceView::ChoosePicture(picture);
}

void XHostView::keyPressEvent(QKeyEvent* event)
{
    const Qt::KeyboardModifiers keys = event->modifiers() & ~Qt::KeypadModifier;
    const int step = keys == Qt::ShiftModifier ? 10 : 1;
    QPoint by;
    switch (event->key()) {
    case Qt::Key_Left:
        by.setX(-step);
        break;
    case Qt::Key_Right:
        by.setX(step);
        break;
    case Qt::Key_Up:
        by.setY(-step);
        break;
    case Qt::Key_Down:
        by.setY(step);
        break;
    default:
        break;
    }
    if (!by.isNull() && !(keys & ~Qt::ShiftModifier) && m_nudge && m_nudge(by.x(), by.y())) return;
    m_isKeyUsed = false;
    XTQSpaceView::keyPressEvent(event);
    if (std::exchange(m_isKeyUsed, false)) event->accept(); // it ends here
}

// Keys of the object that is being drawn go before the shortcuts of the window.
bool XHostView::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && m_drawingKey && IsDrawingObject()) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Backspace) {
            event->accept();
            return true;
        }
    }
    return XTQSpaceView::event(event);
}

void XHostView::ShowSelected(XvcObj* object)
{
    XObList& selection = *GetSelectedObj();
    if (!object && selection.GetCount() == 0) return;
    selection.RemoveAll();
    if (object) selection.AddTail(object);
    ShowSelection();
}

void XHostView::ShowSelection()
{
    GetOverlay().Raise({XViewBuffer::TempVertex, XViewBuffer::TempBack});
    Repaint(Reason::SelectionCleared);
}

// The library's own tool drops the selection at the slightest move; here it stands until another
// click.
void XHostView::HandleMouseNoneMessage(XHWND, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    const QPoint pixel(XfnPackedX(lParam), XfnPackedY(lParam));
    switch (message) {
    case kMsgLButtonDown:
        m_isPressed = wParam == kFlagLeft;
        m_pressed = pixel;
        break;
    case kMsgMouseMove:
        if (wParam == 0) LookForTarget(pixel.x(), pixel.y());
        if ((pixel - m_pressed).manhattanLength() > kClickSlackPx) m_isPressed = false;
        break;
    case kMsgLButtonUp:
        if (std::exchange(m_isPressed, false) && m_clicked) m_clicked(pixel.x(), pixel.y());
        break;
    default:
        m_isPressed = false;
        break;
    }
}

void XHostView::HandleMousePointMessage(XHWND window, unsigned message, XWPARAM wParam,
                                        XLPARAM lParam)
{
    const XHWND self = GetHWND();
    const double thickness = GetObjectManager().m_thickness;
    if (thickness <= 0) GetObjectManager().m_thickness = std::min(thickness, -kPointPixels);
    XTQSpaceView::HandleMousePointMessage(window, message, wParam, lParam);
    if (XfnIsWindow(self)) GetObjectManager().m_thickness = thickness;
}

// Looked for once the pointer rests for a moment: a move must cost nothing.
void XHostView::LookForTarget(int x, int y)
{
    m_rested = QPoint(x, y);
    if (!m_isTarget || std::exchange(m_isTargetDue, true)) return;
    QTimer::singleShot(kRestMs, this, [this] {
        m_isTargetDue = false;
        const bool isOver = GetMode() == XGVMessageManager::kModeNone && m_isTarget &&
                            m_isTarget(m_rested.x(), m_rested.y());
        if (std::exchange(m_isOverTarget, isOver) != isOver) OnSetCursor();
    });
}

int XHostView::OnSetCursor()
{
    if (GetMode() == kModeBalloon) {
        if (cursor().shape() != Qt::CrossCursor) setCursor(Qt::CrossCursor);
        return 1;
    }
    const bool isMoved = QGuiApplication::mouseButtons() != Qt::NoButton;
    if (!m_isOverTarget || isMoved || GetMode() != XGVMessageManager::kModeNone)
        return XTQSpaceView::OnSetCursor();
    if (cursor().shape() != Qt::PointingHandCursor) setCursor(Qt::PointingHandCursor);
    return 1;
}

void XHostView::HandleKeyboardMessage(XHWND window, unsigned message, XWPARAM wParam,
                                      XLPARAM lParam)
{
    const XObList& selection = *GetSelectedObj();
    const auto* text =
        selection.GetCount() == 1 ? dynamic_cast<const XvcTextBox*>(selection.GetHead()) : nullptr;
    m_beforeKey = {GetMode(), GetObjectManager().m_currentObject != nullptr,
                   text && text->GetEditMode(), m_isLeftDown};
    const bool isDrawingKey = wParam == kKeyReturn || wParam == kKeyBackspace;
    if (isDrawingKey && m_drawingKey && IsDrawingObject()) {
        m_isKeyUsed = m_drawingKey(static_cast<int>(wParam));
        if (m_isKeyUsed) return;
    }
    XTQSpaceView::HandleKeyboardMessage(window, message, wParam, lParam);
}

bool XHostView::focusNextPrevChild(bool isNext)
{
    return (hasFocus() && m_walk && m_walk(isNext)) || XTQSpaceView::focusNextPrevChild(isNext);
}

XvcObj* XHostView::FindObject(double worldX, double worldY, double tolerance, tagXHitFlag& hit)
{
    if (m_isBoxPress) return nullptr;
    XvcObj* const object = m_findObject ? m_findObject(worldX, worldY, tolerance, hit) : nullptr;
    return object ? object : XTQSpaceView::FindObject(worldX, worldY, tolerance, hit);
}

void XHostView::OnSize(int width, int height)
{
    const bool isFitted = IsFitted();
    const Mapping before = GetMapping();
    XTQSpaceView::OnSize(width, height);
    double box[4] = {0, 0, 0, 0};
    if (width < 1 || height < 1 || !m_extent || !m_extent(box)) return;
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
