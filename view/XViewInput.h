#pragma once

#include "foundation/base/XApi.h"
#include "foundation/platform/XWindowMessages.h"
#include "view/XWheelSteps.h"

#include <QPoint>

class QKeyEvent;
class QMouseEvent;
class QNativeGestureEvent;
class QSinglePointEvent;
class QWheelEvent;

/// What input needs of its view; a fake of it runs the whole input in a test. Points are device
/// pixels from the upper left corner of the view unless said otherwise.
class XAPI XViewInputTarget
{
public:
    virtual ~XViewInputTarget() = default;

    virtual XHWND GetInputWindow() const = 0;
    virtual double GetPixelRatio() const = 0;   ///< device pixels a Qt unit
    virtual QPoint GetScreenOrigin() const = 0; ///< upper left corner of the view on the screen

    /// The tool's turn, before the handlers below see the same event.
    /// @return non-zero when the handlers must not see it
    virtual int PreTranslateMessage(XHWND window, unsigned message, XWPARAM wParam,
                                    XLPARAM lParam) = 0;

    virtual void OnLButtonDown(unsigned flags, int x, int y) = 0;
    virtual void OnLButtonUp(unsigned flags, int x, int y) = 0;
    virtual void OnLButtonDblClk(unsigned flags, int x, int y) = 0;
    virtual void OnRButtonDown(unsigned flags, int x, int y) = 0;
    virtual void OnRButtonUp(unsigned flags, int x, int y) = 0;
    virtual void OnRButtonDblClk(unsigned flags, int x, int y) = 0;
    virtual void OnMouseMove(unsigned flags, int x, int y) = 0;
    virtual int OnMouseWheel(unsigned flags, int delta, int screenX, int screenY) = 0;
    virtual void OnKeyDown(unsigned character, unsigned repeat, unsigned flags) = 0;
    virtual void OnKeyUp(unsigned character, unsigned repeat, unsigned flags) = 0;

    /// Navigation that no tool sees.
    virtual void PanBy(int dx, int dy) = 0; ///< the content follows by so many pixels
    virtual void PanByPart(int partsX,
                           int partsY) = 0; ///< looks right and down by eighths of the view
    virtual void ZoomByKey(int in) = 0;     ///< one full step about the centre
    virtual void ZoomByPinch(int x, int y, double step) = 0;
    virtual int OnSetCursor() = 0;
};

/// Turns Qt's events into the numbered messages of a view and keeps their order: the tool first,
/// then the On... handler, which reports to the host.
///
/// Gestures of its own, which neither tools nor hosts need to know: dragging with the middle button
/// or with Space and the left one pans; arrow keys pan by an eighth of the view, with Ctrl by a
/// pixel; + and - zoom, with or without Ctrl; two fingers on a touchpad pan, a pinch zooms about
/// the fingers. Angles of a wheel are summed to whole notches, each one message. A pan that loses
/// the focus ends there, but keeps its button: nothing is seen of the pointer until that is up.
///
/// A release that another window swallowed is delivered with the next event of the pointer, where
/// that was last seen.
///
/// A key that repeats is pressed again and again and released once. Tab is the focus's.
///
/// A handler may destroy the view: nothing here touches the object after a handler whose window has
/// gone. Threads: user interface only.
class XAPI XViewInput
{
public:
    explicit XViewInput(XViewInputTarget& target) : m_target(target) {}

    /// Each answers non-zero when the event was used.
    int MousePress(const QMouseEvent& event);
    int MouseRelease(const QMouseEvent& event);
    int MouseDoubleClick(const QMouseEvent& event);
    int MouseMove(const QMouseEvent& event);
    int Wheel(const QWheelEvent& event);
    int Key(const QKeyEvent& event, int isDown);
    int Gesture(const QNativeGestureEvent& event);
    /// Focus or capture went elsewhere: held keys and a drag in progress are forgotten.
    void Forget();

    int IsCtrlDown() const { return m_ctrlDown; }
    int IsSpaceDown() const { return m_spaceDown; }
    int IsEscapeDown() const { return m_escapeDown; }
    int IsPanning() const { return m_pan != Pan::None; }

private:
    enum class Pan { None, Middle, SpaceLeft };
    using Handler = void (XViewInputTarget::*)(unsigned, int, int);

    QPoint Pixel(const QMouseEvent& event) const;
    unsigned Flags(const QSinglePointEvent& event);
    void TrackKey(const QKeyEvent& event, int isDown);
    int PreTranslate(unsigned message, XWPARAM wParam, XLPARAM lParam);
    int Dispatch(unsigned message, unsigned flags, QPoint pixel, Handler handler);
    int ReleaseLost(unsigned flags);
    void StartPan(Pan pan, QPoint pixel);
    void EndPan();
    unsigned GetPanButton() const;
    int Navigate(int key, int isCtrl);

    XViewInputTarget& m_target;
    XWheelSteps m_wheel;
    Pan m_pan = Pan::None;
    QPoint m_panPixel;
    QPoint m_seenPixel;       // of the last event of the pointer
    double m_scrollRestX = 0; // a touchpad moves by parts of a device pixel
    double m_scrollRestY = 0;
    unsigned m_pressed = 0;  // left and right as tools know them
    unsigned m_panAfter = 0; // button of a pan that lost the focus, until it is up
    int m_spaceDown = 0;
    int m_escapeDown = 0;
    int m_ctrlDown = 0;
};
