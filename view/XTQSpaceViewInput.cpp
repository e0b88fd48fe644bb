#include "foundation/base/XSentinels.h"
#include "foundation/platform/XUserSettings.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/surface/XToolCursor.h"
#include "foundation/vector/XvcTextBox.h"
#include "view/XPosValue.h"
#include "view/XTQSpaceView.h"
#include "view/XTextBoxEditorWidget.h"
#include "view/XViewDialogMessages.h"
#include "view/XViewKeys.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

int XTQSpaceView::PreTranslateMessage(XHWND window, unsigned message, XWPARAM wParam,
                                      XLPARAM lParam)
{
    if (window == 0 || window != GetHWND()) return 0;
    HandleMessage(window, message, wParam, lParam);
    return !XfnIsWindow(window);
}

int XTQSpaceView::HandleMessage(XHWND window, unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    if (m_messages.IsSwallowed(m_input.IsCtrlDown(), wParam)) return 1;
    switch (message) {
    case kMsgMouseMove:
    case kMsgLButtonDblClk:
    case kMsgRButtonDblClk:
    case kMsgMouseWheel:
        HandleMouseMessage(window, message, wParam, lParam);
        return 1;
    case kMsgKeyDown:
        HandleKeyboardMessage(window, message, wParam, lParam);
        return 1;
    case kMsgRButtonDown:
        m_messages.SetRButtonDown(1);
        break;
    case kMsgRButtonUp:
        m_messages.SetRButtonDown(0);
        break;
    case kMsgLButtonDown:
    case kMsgLButtonUp:
        break;
    default:
        return 0;
    }
    HandleMouseMessage(window, message, wParam, lParam);
    return 0;
}

void XTQSpaceView::HandleMouseMessage(XHWND window, unsigned message, XWPARAM wParam,
                                      XLPARAM lParam)
{
    const XHWND self = GetHWND();
    if (message == kMsgLButtonDown) EndTypingBeside();
    const tagXModeRow* row = XfnFindMode(m_messages.GetMode());
    if (row && row->handle) (this->*row->handle)(window, message, wParam, lParam);
    XfnSendMessage(self, kMsgSetCursor, 0, 0);
}

void XTQSpaceView::Report(XViewReport code, const void* parameter)
{
    m_reports.Send(code, parameter);
}

void XTQSpaceView::RubberBandChanged()
{
    const QRegion band = m_rubberBand.GetRegion();
    const double ratio = devicePixelRatioF();
    for (const QRect& side : band.united(std::exchange(m_paintedBand, band)))
        update(
            QRectF(side.x() / ratio, side.y() / ratio, side.width() / ratio, side.height() / ratio)
                .toAlignedRect());
}

XLRESULT XTQSpaceView::OnWindowMessage(unsigned message, XWPARAM wParam, XLPARAM lParam)
{
    switch (message) {
    case kMsgSetCursor:
        return OnSetCursor();
    case kMsgStretchApply:
        return OnStretchApplyMessage(wParam, lParam);
    case kMsgStretchCoverageChange:
        return OnStretchCoverageChangeMessage(wParam, lParam);
    case kMsgStretchClose:
        return OnStretchCloseMessage(wParam, lParam);
    case kMsgPaletteApply:
        return OnPaletteApplyMessage(wParam, lParam);
    case kMsgPaletteClose:
        return OnPaletteCloseMessage(wParam, lParam);
    case kMsgMeasureClose:
        return OnMeasureCloseMessage(wParam, lParam);
    case kMsgThumbViewClose:
        return OnThumbViewCloseMessage(wParam, lParam);
    default:
        if (OnRendererMessage(message)) return 0;
        return XMessageWindow::OnWindowMessage(message, wParam, lParam);
    }
}

XLRESULT XTQSpaceView::OnStretchApplyMessage(XWPARAM, XLPARAM)
{
    m_overlay.Raise({XViewBuffer::MainBack});
    InvalidateControl(1);
    return 0;
}

XLRESULT XTQSpaceView::OnStretchCoverageChangeMessage(XWPARAM wParam, XLPARAM lParam)
{
    return XTQSpaceView::OnStretchApplyMessage(wParam, lParam);
}

XLRESULT XTQSpaceView::OnStretchCloseMessage(XWPARAM, XLPARAM)
{
    m_dialogs.StretchClosed();
    return 0;
}

XLRESULT XTQSpaceView::OnPaletteApplyMessage(XWPARAM wParam, XLPARAM lParam)
{
    return XTQSpaceView::OnStretchApplyMessage(wParam, lParam);
}

XLRESULT XTQSpaceView::OnPaletteCloseMessage(XWPARAM, XLPARAM)
{
    m_dialogs.PaletteClosed();
    return 0;
}

XLRESULT XTQSpaceView::OnMeasureCloseMessage(XWPARAM, XLPARAM)
{
    m_dialogs.MeasureClosed();
    return 0;
}

XLRESULT XTQSpaceView::OnThumbViewCloseMessage(XWPARAM, XLPARAM)
{
    m_dialogs.ThumbClosed();
    return 0;
}

int XTQSpaceView::OnSetCursor()
{
    constexpr int kArrow = 0, kPan = 1;
    const int mode = m_messages.GetMode();
    const tagXModeRow* row = XfnFindMode(mode);
    const XModeCursor kind = row ? row->cursor : XModeCursor::Arrow;
    const bool isPan =
        m_messages.IsRButtonDragging() || m_input.IsPanning() || m_input.IsSpaceDown();
    int key = kind == XModeCursor::Own ? mode : kArrow;
    if (isPan && mode != XGVMessageManager::kModeZoomRect) {
        key = kPan;
    } else if (kind == XModeCursor::Default) {
        if (testAttribute(Qt::WA_SetCursor)) unsetCursor();
        return 0;
    }
    if (key != m_cursorKey) {
        m_cursorKey = key;
        switch (key) {
        case kArrow:
            m_cursor = XfnGetCursor(XCursorImage::Arrow);
            break;
        case kPan:
            m_cursor = XfnGetCursor(XCursorImage::Pan);
            break;
        case XGVMessageManager::kModeZoomRect:
            m_cursor = XfnGetCursor(XCursorImage::ZoomRect);
            break;
        default:
            m_cursor = XfnGetToolCursor(key);
        }
    }
    // asked at every move: set only what is not shown already
    if (!testAttribute(Qt::WA_SetCursor) || cursor() != m_cursor) setCursor(m_cursor);
    return 1;
}

void XTQSpaceView::ReportMouse(XViewReport code, unsigned flags, int x, int y, int delta)
{
    const tagXMouseReport report = {static_cast<std::int32_t>(flags), delta, x, y};
    m_reports.Send(code, &report);
}

void XTQSpaceView::TakeFocusAt(int x, int y)
{
    const QRect client(0, 0, m_mapping.GetWidth(), m_mapping.GetHeight());
    const auto* typing = dynamic_cast<XTextBoxEditorWidget*>(QGuiApplication::focusObject());
    const bool isTyping = typing && typing->parentWidget() == this;
    if (m_autoFocus && client.contains(x, y) && !hasFocus() && !isTyping) setFocus();
}

void XTQSpaceView::OnLButtonDown(unsigned flags, int x, int y)
{
    TakeFocusAt(x, y);
    if (XViewMeasureDlg* measure = m_dialogs.GetMeasure()) {
        if (!measure->IsUnderMeasuring()) measure->StartMeasure();
        double worldX = x, worldY = y;
        m_mapping.PixelToWorld(worldX, worldY);
        measure->AddMeasurePoint(worldX, worldY, 0);
        measure->AddMeasurePoint(worldX, worldY, 0); // the rubber end
    }
    ReportMouse(XViewReport::LButtonDown, flags, x, y);
}

void XTQSpaceView::OnLButtonUp(unsigned flags, int x, int y)
{
    constexpr int kRange = 3;
    XViewMeasureDlg* measure = m_dialogs.GetMeasure();
    if (measure && measure->IsUnderMeasuring() && measure->GetMeasureType() == kRange) {
        measure->StopMeasure();
        m_overlay.Raise({XViewBuffer::Measure, XViewBuffer::MainBack});
        InvalidateControl(1);
    }
    if (m_dialogs.GetStretch()) PickStretchLimits(x, y);
    ReportMouse(XViewReport::LButtonUp, flags, x, y);
}

// The pixel under the pointer becomes an end of the cut range of each channel that has one there.
void XTQSpaceView::PickStretchLimits(int x, int y)
{
    XViewStretchDlg& dialog = *m_dialogs.GetStretch();
    const int mode = dialog.GetSelectMinMaxMode();
    XDMComposite* composite = dialog.GetCurXDMComposite();
    if (composite && (mode == 0 || mode == 1)) {
        double worldX = x, worldY = y;
        m_mapping.PixelToWorld(worldX, worldY);
        for (int ch = 0; ch < 3; ++ch) {
            const double value = composite->ReadPixel(ch, worldX, worldY);
            if (!XfnIsSet(value)) continue;
            if (mode == 0)
                dialog.SetCutMin(value, ch);
            else
                dialog.SetCutMax(value, ch);
        }
    }
    dialog.UpdateSelectMinMax();
}

void XTQSpaceView::OnLButtonDblClk(unsigned flags, int x, int y)
{
    constexpr int kArea = 2;
    XViewMeasureDlg* measure = m_dialogs.GetMeasure();
    if (measure && measure->IsUnderMeasuring()) {
        double firstX = kXNotSet, firstY = kXNotSet;
        measure->GetFirstMeasurePoint(firstX, firstY);
        if (measure->GetMeasureType() == kArea && firstX != kXNotSet && firstY != kXNotSet)
            measure->AddMeasurePoint(firstX, firstY, 0); // closes the ring
        measure->ShowMeasure();
        measure->StopMeasure();
        m_overlay.Raise({XViewBuffer::Measure, XViewBuffer::MainBack});
        InvalidateControl(1);
    }
    ReportMouse(XViewReport::LButtonDblClk, flags, x, y);
}

void XTQSpaceView::OnRButtonDown(unsigned flags, int x, int y)
{
    m_tool.previous = m_tool.current = m_tool.panReference = QPoint(x, y);
    setFocus();
    const XHWND window = GetHWND();
    ReportMouse(XViewReport::RButtonDown, flags, x, y);
    if (XfnIsWindow(window) && GetProgressiveView()) QueCancel(); // the pan moves what is drawn
}

void XTQSpaceView::OnRButtonUp(unsigned flags, int x, int y)
{
    setFocus();
    const XHWND window = GetHWND();
    ReportMouse(XViewReport::RButtonUp, flags, x, y);
    if (!XfnIsWindow(window) || !GetProgressiveView()) return;
    m_overlay.Raise({XViewBuffer::MainBack, XViewBuffer::TempBack});
    Repaint(Reason::Pan);
}

void XTQSpaceView::OnRButtonDblClk(unsigned flags, int x, int y)
{
    setFocus();
    ReportMouse(XViewReport::RButtonDblClk, flags, x, y);
}

void XTQSpaceView::OnMouseMove(unsigned flags, int x, int y)
{
    TakeFocusAt(x, y);
    if (flags == kFlagRight) {
        m_tool.current = QPoint(x, y);
        const QPoint moved = m_tool.current - m_tool.previous;
        m_mapping.PanPixel(moved.x(), moved.y());
        PlaceTextEditors();
        if (GetProgressiveView()) {
            update(); // the paint moves the last picture; the release asks for another
        } else {
            m_overlay.Raise({XViewBuffer::MainBack, XViewBuffer::TempBack});
            InvalidateControl(1);
        }
        m_tool.previous = m_tool.current;
    }
    XViewMeasureDlg* measure = m_dialogs.GetMeasure();
    if (measure && measure->IsUnderMeasuring()) {
        double worldX = x, worldY = y;
        m_mapping.PixelToWorld(worldX, worldY);
        measure->AddMeasurePoint(worldX, worldY, flags != kFlagLeft);
        measure->ShowMeasure();
        m_overlay.Raise({XViewBuffer::Measure, XViewBuffer::MainBack});
        InvalidateControl(1);
    }
    if (XvcTextBox* const text = GetOnlyTextBox()) {
        if (flags != kFlagLeft && flags != kFlagRight)
            return; // the pointer is in the way of typing
        if (text->GetEditMode()) {
            text->EndEditMode();
            InvalidateControl(1);
        }
    }
    ReportMouse(XViewReport::MouseMove, flags, x, y);
}

int XTQSpaceView::OnMouseWheel(unsigned flags, int delta, int screenX, int screenY)
{
    // compared before it is converted: only views near the screen's origin take the focus by wheel
    TakeFocusAt(screenX, screenY);
    const QPoint pixel = QPoint(screenX, screenY) - GetScreenOrigin();
    EndTextEdits();
    if (XfnGetInvertMouseWheelZoomDir()) delta = static_cast<short>(-static_cast<short>(delta));
    const double step = flags & kFlagCtrl ? m_fineZoomStep : 1.0;
    m_mapping.ZoomWheel(pixel.x(), pixel.y(), delta < 0 ? step : -step);
    RaiseMapping();
    const XHWND window = GetHWND();
    ReportMouse(XViewReport::MouseWheel, flags, pixel.x(), pixel.y(), delta);
    if (XfnIsWindow(window)) Repaint(Reason::MouseWheel);
    return 1;
}

void XTQSpaceView::OnKeyDown(unsigned character, unsigned repeat, unsigned flags)
{
    const tagXKeyReport report = {static_cast<std::int32_t>(flags),
                                  static_cast<std::int32_t>(character),
                                  static_cast<std::int32_t>(repeat)};
    m_reports.Send(XViewReport::KeyDown, &report);
}

void XTQSpaceView::OnKeyUp(unsigned character, unsigned repeat, unsigned flags)
{
    const tagXKeyReport report = {static_cast<std::int32_t>(flags),
                                  static_cast<std::int32_t>(character),
                                  static_cast<std::int32_t>(repeat)};
    m_reports.Send(XViewReport::KeyUp, &report);
}

int XTQSpaceView::ShowPosValue(int x, int y, double* values, const XDMComposite* composite)
{
    if (GetProgressiveView() && IsDrawing()) return 0;
    double worldX = x, worldY = y;
    m_mapping.PixelToWorld(worldX, worldY);
    const XPosWay way = GetProgressiveView() ? XPosWay::Direct : XPosWay::Composite;
    double read[3] = {};
    const XPosRead result = composite
                                ? XfnReadPosValue(*composite, worldX, worldY, way, read)
                                : XfnReadPosValue(m_compManager.get(), worldX, worldY, way, read);
    std::copy(std::begin(read), std::end(read), values);
    return result != XPosRead::Outside;
}

QPoint XTQSpaceView::GetScreenOrigin() const
{
    const double ratio = devicePixelRatioF();
    const QPointF origin = mapToGlobal(QPointF(0, 0)) * ratio;
    return {static_cast<int>(std::floor(origin.x())), static_cast<int>(std::floor(origin.y()))};
}

void XTQSpaceView::mousePressEvent(QMouseEvent* event)
{
    event->setAccepted(m_input.MousePress(*event));
}

void XTQSpaceView::mouseReleaseEvent(QMouseEvent* event)
{
    event->setAccepted(m_input.MouseRelease(*event));
}

void XTQSpaceView::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->setAccepted(m_input.MouseDoubleClick(*event));
}

void XTQSpaceView::mouseMoveEvent(QMouseEvent* event)
{
    event->setAccepted(m_input.MouseMove(*event));
}

void XTQSpaceView::wheelEvent(QWheelEvent* event)
{
    event->setAccepted(m_input.Wheel(*event));
}

void XTQSpaceView::keyPressEvent(QKeyEvent* event)
{
    event->setAccepted(m_input.Key(*event, 1));
}

void XTQSpaceView::keyReleaseEvent(QKeyEvent* event)
{
    event->setAccepted(m_input.Key(*event, 0));
}

void XTQSpaceView::focusOutEvent(QFocusEvent* event)
{
    m_input.Forget();
    QWidget::focusOutEvent(event);
}

bool XTQSpaceView::event(QEvent* event)
{
    if (event->type() == QEvent::NativeGesture &&
        m_input.Gesture(static_cast<const QNativeGestureEvent&>(*event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}
