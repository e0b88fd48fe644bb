#include "view/XViewInput.h"

#include "view/XViewKeys.h"

#include <QInputDevice>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr unsigned kKeyWasDown = 0x4000;
constexpr unsigned kKeyReleased = 0x8000;
constexpr double kUnitsPerAngle = 0.5; // Qt units a touchpad pans when it tells angles only

QPoint ToPixel(const QPointF& position, double ratio)
{
    return {static_cast<int>(std::floor(position.x() * ratio)),
            static_cast<int>(std::floor(position.y() * ratio))};
}

bool IsFingers(const QWheelEvent& event)
{
    const QInputDevice* device = event.device();
    return (device && device->type() == QInputDevice::DeviceType::TouchPad) ||
           (event.phase() != Qt::NoScrollPhase && !event.pixelDelta().isNull());
}

} // namespace

QPoint XViewInput::Pixel(const QMouseEvent& event) const
{
    return ToPixel(event.position(), m_target.GetPixelRatio());
}

// Button and key state of the event; the key tracker learns from the mouse what it missed while the
// focus was elsewhere.
unsigned XViewInput::Flags(const QSinglePointEvent& event)
{
    const Qt::MouseButtons buttons = event.buttons();
    const Qt::KeyboardModifiers keys = event.modifiers();
    unsigned flags = 0;
    if (buttons & Qt::LeftButton) flags |= kFlagLeft;
    if (buttons & Qt::RightButton) flags |= kFlagRight;
    if (buttons & Qt::MiddleButton) flags |= kFlagMiddle;
    if (keys & Qt::ShiftModifier) flags |= kFlagShift;
    if (keys & Qt::ControlModifier) flags |= kFlagCtrl;
    m_ctrlDown = (flags & kFlagCtrl) != 0;
    return flags;
}

// The tool's turn. Answers non-zero when the handler has none: the window has gone, and this object
// with it, or whoever looked at the message wants it to end here.
int XViewInput::PreTranslate(unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    const XHWND window = m_target.GetInputWindow();
    return m_target.PreTranslateMessage(window, message, wParam, lParam) || !XfnIsWindow(window);
}

// The tool, then the handler. Answers 0 when the window has gone, and this object with it.
int XViewInput::Dispatch(unsigned message, unsigned flags, QPoint pixel, Handler handler)
{
    const XHWND window = m_target.GetInputWindow();
    const XLPARAM point = static_cast<XLPARAM>(XfnPackPoint(pixel.x(), pixel.y()));
    if (!PreTranslate(message, flags, point)) (m_target.*handler)(flags, pixel.x(), pixel.y());
    return XfnIsWindow(window);
}

int XViewInput::MousePress(const QMouseEvent& event)
{
    const QPoint pixel = Pixel(event);
    const unsigned flags = Flags(event);
    if (!ReleaseLost(flags)) return 1;
    m_seenPixel = pixel;
    switch (event.button()) {
    case Qt::LeftButton:
        if (m_spaceDown && m_pan == Pan::None && !(m_pressed & kFlagRight)) {
            StartPan(Pan::SpaceLeft, pixel);
            return 1;
        }
        if (m_pan == Pan::SpaceLeft) return 1;
        m_panAfter &= ~kFlagLeft; // the press says that its release was lost
        m_pressed |= kFlagLeft;
        Dispatch(kMsgLButtonDown, flags, pixel, &XViewInputTarget::OnLButtonDown);
        return 1;
    case Qt::RightButton:
        m_pressed |= kFlagRight;
        Dispatch(kMsgRButtonDown, flags, pixel, &XViewInputTarget::OnRButtonDown);
        return 1;
    case Qt::MiddleButton:
        if (m_pan == Pan::None) StartPan(Pan::Middle, pixel);
        return 1;
    default:
        return 0;
    }
}

int XViewInput::MouseDoubleClick(const QMouseEvent& event)
{
    const QPoint pixel = Pixel(event);
    const unsigned flags = Flags(event);
    if (!ReleaseLost(flags)) return 1;
    m_seenPixel = pixel;
    if (event.button() == Qt::LeftButton && !m_spaceDown) {
        m_panAfter &= ~kFlagLeft;
        m_pressed |= kFlagLeft;
        Dispatch(kMsgLButtonDblClk, flags, pixel, &XViewInputTarget::OnLButtonDblClk);
        return 1;
    }
    if (event.button() == Qt::RightButton) {
        m_pressed |= kFlagRight;
        Dispatch(kMsgRButtonDblClk, flags, pixel, &XViewInputTarget::OnRButtonDblClk);
        return 1;
    }
    return MousePress(event);
}

int XViewInput::MouseRelease(const QMouseEvent& event)
{
    const QPoint pixel = m_seenPixel = Pixel(event);
    const unsigned flags = Flags(event);
    switch (event.button()) {
    case Qt::LeftButton:
        if (m_pan == Pan::SpaceLeft) {
            EndPan();
            return 1;
        }
        if (m_panAfter & kFlagLeft) {
            m_panAfter &= ~kFlagLeft;
            return 1;
        }
        m_pressed &= ~kFlagLeft;
        Dispatch(kMsgLButtonUp, flags, pixel, &XViewInputTarget::OnLButtonUp);
        return 1;
    case Qt::RightButton:
        m_pressed &= ~kFlagRight;
        Dispatch(kMsgRButtonUp, flags, pixel, &XViewInputTarget::OnRButtonUp);
        return 1;
    case Qt::MiddleButton:
        if (m_pan == Pan::Middle) EndPan();
        m_panAfter &= ~kFlagMiddle;
        return 1;
    default:
        return 0;
    }
}

// A release that another window swallowed: the press must still find its end, where the pointer was
// last seen with the button down. Answers 0 when the window has gone meanwhile.
int XViewInput::ReleaseLost(unsigned flags)
{
    const QPoint pixel = m_seenPixel;
    if (m_pressed & ~flags & kFlagLeft) {
        m_pressed &= ~kFlagLeft;
        if (!Dispatch(kMsgLButtonUp, flags, pixel, &XViewInputTarget::OnLButtonUp)) return 0;
    }
    if (m_pressed & ~flags & kFlagRight) {
        m_pressed &= ~kFlagRight;
        if (!Dispatch(kMsgRButtonUp, flags, pixel, &XViewInputTarget::OnRButtonUp)) return 0;
    }
    return 1;
}

int XViewInput::MouseMove(const QMouseEvent& event)
{
    const QPoint pixel = Pixel(event);
    unsigned flags = Flags(event);
    if (!ReleaseLost(flags)) return 1;
    m_seenPixel = pixel;
    m_panAfter &= flags;
    if (m_pan != Pan::None && !(flags & GetPanButton())) EndPan();
    if (m_pan == Pan::None) {
        if (m_panAfter) return 1;
        Dispatch(kMsgMouseMove, flags, pixel, &XViewInputTarget::OnMouseMove);
        return 1;
    }
    const QPoint step = pixel - m_panPixel;
    m_panPixel = pixel;
    const XHWND window = m_target.GetInputWindow();
    m_target.PanBy(step.x(), step.y());
    if (!XfnIsWindow(window)) return 1;
    // tools and measurements must not take the pan for a gesture of theirs, hosts still follow it
    m_target.OnMouseMove((flags & ~(kFlagLeft | kFlagRight)) | kFlagMiddle, pixel.x(), pixel.y());
    return 1;
}

int XViewInput::Wheel(const QWheelEvent& event)
{
    const double ratio = m_target.GetPixelRatio();
    const unsigned flags = Flags(event);
    if (IsFingers(event) && !(flags & kFlagCtrl)) {
        const QPointF moved = event.pixelDelta().isNull()
                                  ? QPointF(event.angleDelta()) * kUnitsPerAngle
                                  : QPointF(event.pixelDelta());
        const double x = moved.x() * ratio + m_scrollRestX, y = moved.y() * ratio + m_scrollRestY;
        m_scrollRestX = x - std::trunc(x);
        m_scrollRestY = y - std::trunc(y);
        if (std::trunc(x) != 0 || std::trunc(y) != 0)
            m_target.PanBy(static_cast<int>(x), static_cast<int>(y));
        return 1;
    }
    // with Alt held Qt hands out the angle of the wheel as a sideways one
    const bool isTurned = event.modifiers() & Qt::AltModifier;
    const int notches = m_wheel.Add(isTurned ? event.angleDelta().x() : event.angleDelta().y());
    const QPoint pixel = ToPixel(event.position(), ratio);
    const QPoint screen = pixel + m_target.GetScreenOrigin();
    const int delta = notches < 0 ? -XWheelSteps::kNotch : XWheelSteps::kNotch;
    const XWPARAM wParam = static_cast<XWPARAM>(delta & 0xFFFF) << 16 | flags;
    const XHWND window = m_target.GetInputWindow();
    const XLPARAM point = static_cast<XLPARAM>(XfnPackPoint(screen.x(), screen.y()));
    for (int i = std::abs(notches); i > 0; --i) {
        if (!PreTranslate(kMsgMouseWheel, wParam, point))
            m_target.OnMouseWheel(flags, delta, screen.x(), screen.y());
        if (!XfnIsWindow(window)) return 1;
    }
    return 1;
}

void XViewInput::TrackKey(const QKeyEvent& event, int isDown)
{
    m_ctrlDown = (event.modifiers() & Qt::ControlModifier) != 0;
    if (event.isAutoRepeat()) return;
    switch (event.key()) {
    case Qt::Key_Control:
        m_ctrlDown = isDown != 0;
        break;
    case Qt::Key_Escape:
        m_escapeDown = isDown != 0;
        break;
    case Qt::Key_Space:
        m_spaceDown = isDown != 0;
        m_target.OnSetCursor();
        break;
    default:
        break;
    }
}

int XViewInput::Key(const QKeyEvent& event, int isDown)
{
    TrackKey(event, isDown);
    if (!isDown && event.isAutoRepeat()) return 1; // a held key is still down
    const int character = XfnVirtualKey(event.key(), (event.modifiers() & Qt::KeypadModifier) != 0);
    if (character == 0) return 0;

    unsigned flags = isDown ? 0 : kKeyReleased;
    if (!isDown || event.isAutoRepeat()) flags |= kKeyWasDown;
    const XHWND window = m_target.GetInputWindow();
    if (PreTranslate(isDown ? kMsgKeyDown : kMsgKeyUp, static_cast<XWPARAM>(character),
                     static_cast<XLPARAM>(flags) << 16 | 1)) {
        return 1;
    }
    if (!isDown) {
        m_target.OnKeyUp(static_cast<unsigned>(character), 1, flags);
        return 1;
    }
    m_target.OnKeyDown(static_cast<unsigned>(character), 1, flags);
    if (!XfnIsWindow(window)) return 1;
    // Alt and Shift combinations belong to the host
    if (event.modifiers() & Qt::AltModifier) return 0;
    const bool isShifted = event.modifiers() & Qt::ShiftModifier;
    const bool isSign = character == kKeyPlus || character == kKeyMinus;
    if (isShifted && !isSign) return 0;
    return Navigate(character, m_ctrlDown) || character == kKeySpace;
}

int XViewInput::Navigate(int key, int isCtrl)
{
    int dx = 0, dy = 0;
    switch (key) {
    case kKeyLeft:
        dx = -1;
        break;
    case kKeyRight:
        dx = 1;
        break;
    case kKeyUp:
        dy = -1;
        break;
    case kKeyDown:
        dy = 1;
        break;
    case kKeyPlus:
    case kKeyPadPlus:
        m_target.ZoomByKey(1);
        return 1;
    case kKeyMinus:
    case kKeyPadMinus:
        m_target.ZoomByKey(0);
        return 1;
    default:
        return 0;
    }
    if (isCtrl)
        m_target.PanBy(-dx, -dy);
    else
        m_target.PanByPart(dx, dy);
    return 1;
}

int XViewInput::Gesture(const QNativeGestureEvent& event)
{
    switch (event.gestureType()) {
    case Qt::BeginNativeGesture:
    case Qt::EndNativeGesture:
        return 1;
    case Qt::ZoomNativeGesture:
        break;
    default:
        return 0;
    }
    const double factor = 1.0 + event.value();
    if (!(factor > 0.01 && factor < 100.0)) return 1; // no finger moves so far between two events
    const QPoint pixel = ToPixel(event.position(), m_target.GetPixelRatio());
    m_target.ZoomByPinch(pixel.x(), pixel.y(), std::log2(factor));
    return 1;
}

void XViewInput::Forget()
{
    const bool isHand = m_spaceDown || IsPanning();
    m_spaceDown = 0;
    m_ctrlDown = 0;
    m_escapeDown = 0;
    m_wheel.Reset();
    m_panAfter |= GetPanButton();
    m_pan = Pan::None;
    if (isHand) m_target.OnSetCursor();
}

void XViewInput::StartPan(Pan pan, QPoint pixel)
{
    m_pan = pan;
    m_panPixel = pixel;
    m_panAfter = 0;
    m_target.OnSetCursor();
}

void XViewInput::EndPan()
{
    if (m_pan == Pan::None) return;
    m_pan = Pan::None;
    m_target.OnSetCursor();
}

unsigned XViewInput::GetPanButton() const
{
    switch (m_pan) {
    case Pan::Middle:
        return kFlagMiddle;
    case Pan::SpaceLeft:
        return kFlagLeft;
    default:
        return 0;
    }
}
