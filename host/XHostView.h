#pragma once

#include "view/XTQSpaceView.h"

#include <QPoint>

#include <array>
#include <functional>

/// What Escape found in the view when it went down.
struct tagXEscape
{
    short mode = XGVMessageManager::kModeNone;
    bool isBuilding = false; ///< an object was under construction
    bool isTyping = false;   ///< the selected text box was being edited
    bool isPressed = false;  ///< the left button was down: a gesture was taken back
};

/// The view of the program: a resize keeps what the user chose to look at.
///
/// The library's view refits the box it last drew to each new size, so it shrinks with every change
/// of shape there and back. This one keeps centre and scale, unless the view still shows a box that
/// it was fitted to: that box is fitted again. The pointer does not take the keyboard away from a
/// text box; a click and the wheel do. Dragging with the left button and Shift pulls a zoom rectangle
/// open without a change of mode before.
///
/// While an object is drawn vertex by vertex, a right press is a step back only when it is released
/// where it went down: a drag with that button moves the view and takes nothing away. A line that was
/// clicked, not dragged, is none. While selecting, a press with Shift begins a box wherever it is.
///
/// Without a tool at work a click tells its place, so that the object there can be selected, and what
/// is selected stays so until something else is. Where a click would hit, the cursor is a hand.
/// What is told to be its extent is what it fits and what limits its zoom. User interface thread.
class XHostView : public XTQSpaceView
{
public:
    /// The mode of the balloon tool, for which the library's table has none.
    static constexpr short kModeBalloon = 114;

    explicit XHostView(QWidget* parent);
    ~XHostView() override;

    /// Asked for the box of everything that is open, minimum x, minimum y, maximum x, maximum y.
    void SetExtent(std::function<bool(double (&box)[4])> extent) { m_extent = std::move(extent); }
    /// Told of a click of the left button, in device pixels.
    void SetClicked(std::function<void(int x, int y)> clicked) { m_clicked = std::move(clicked); }
    /// Asked whether a click at a device pixel would hit something, when the pointer rests there.
    void SetIsTarget(std::function<bool(int x, int y)> isTarget)
    {
        m_isTarget = std::move(isTarget);
    }
    /// Asked what a press of the selection tool means; null leaves it to the library.
    using FindObjectFunction =
        std::function<XvcObj*(double worldX, double worldY, double tolerance, tagXHitFlag& hit)>;
    void SetFindObject(FindObjectFunction find) { m_findObject = std::move(find); }
    /// Told of a double click before the tool, with its place in device pixels.
    void SetBeforeDoubleClick(std::function<void(int x, int y)> run)
    {
        m_beforeDoubleClick = std::move(run);
    }
    /// Asked for the next object, or the one before, when Tab or Shift+Tab is pressed; false lets
    /// the keyboard go on to the next control.
    void SetWalk(std::function<bool(bool isForward)> walk) { m_walk = std::move(walk); }
    /// Asked what Enter (13) and Backspace (8) do while an object is being drawn; false leaves the
    /// key to the library.
    void SetDrawingKey(std::function<bool(int key)> run) { m_drawingKey = std::move(run); }
    /// Asked for the picture of what the picture tool is drawing; 0: there is none.
    void SetChoosePicture(std::function<int(XvcBitmap&)> choose)
    {
        m_choosePicture = std::move(choose);
    }
    /// Asked to move what is selected by so many pixels, when an arrow is pressed, with Shift by
    /// ten; false moves the view.
    void SetNudge(std::function<bool(int dx, int dy)> nudge) { m_nudge = std::move(nudge); }
    /// Told that a line without a length was given up.
    void SetNoLength(std::function<void()> run) { m_noLength = std::move(run); }
    /// An object is seen that is not finished: of a drag, or one of vertices.
    bool IsDrawingObject();
    void StepBack();     ///< takes the last vertex away that was set
    void FinishObject(); ///< as a double click does, without a vertex at the pointer
    /// Shows one object with its outline and control points, null for none.
    void ShowSelected(XvcObj* object);
    void ShowSelection(); ///< after a change of the list of what is selected

    void FitAll(); ///< fits all that is open; without any range, one world unit a pixel
    void FitBox(double minX, double minY, double maxX, double maxY);
    /// Fits a box with some room around it; a point comes to the centre at the scale of the moment.
    void ShowObject(double minX, double minY, double maxX, double maxY);
    /// Zooms by a full step about the centre, unless that leads beyond the limits: an image pixel is
    /// at most 256 screen pixels wide, and all layers together at least a 64th of the view; without
    /// images the view shows at least a millionth of what is open.
    void ZoomStep(bool isIn);
    /// Brings a view that a rectangle or a pinch took beyond the limits back to them.
    void KeepInLimits();
    /// Whether the view looks where the last fit put it.
    bool IsFitted();
    /// Runs once, when the first picture has come to the screen.
    void SetFirstPaint(std::function<void()> run) { m_firstPaint = std::move(run); }
    /// Runs after each picture that came to the screen, in an event of its own.
    void SetAfterPaint(std::function<void()> run) { m_afterPaint = std::move(run); }
    /// Told when the view begins to draw and when it has come to rest.
    void SetBusyChanged(std::function<void(bool)> run) { m_busyChanged = std::move(run); }

    /// What the view was doing when the key that is reported now went down.
    const tagXEscape& GetBeforeKey() const { return m_beforeKey; }

    int OnMouseWheel(unsigned flags, int delta, int screenX, int screenY) override;
    void HandleMouseMessage(XHWND window, unsigned message, XWPARAM wParam,
                            XLPARAM lParam) override;
    void HandleMouseNoneMessage(XHWND window, unsigned message, XWPARAM wParam,
                                XLPARAM lParam) override;
    /// Points that are drawn have a size that can be seen: their thickness is that, too.
    void HandleMousePointMessage(XHWND window, unsigned message, XWPARAM wParam,
                                 XLPARAM lParam) override;
    int OnSetCursor() override;
    void RunPropButton(int id) override; ///< fits and zooms as the program's own commands do
    void HandleKeyboardMessage(XHWND window, unsigned message, XWPARAM wParam,
                               XLPARAM lParam) override;

protected:
    void OnSize(int width, int height) override;
    void OnBusyChanged(int isBusy) override;
    void paintEvent(QPaintEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;
    XvcObj* FindObject(double worldX, double worldY, double tolerance, tagXHitFlag& hit) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    int ChoosePicture(XvcBitmap& picture) override;

private:
    using Mapping = std::array<double, 4>; // centre x, y, world length of a pixel x, y
    Mapping GetMapping();
    void SetMapping(const Mapping& mapping);
    void ZoomByKey(int in) override { ZoomStep(in != 0); }
    void LookForTarget(int x, int y);
    bool HoldRightPress(unsigned message, const QPoint& pixel);
    bool GiveUpLine(unsigned message, const QPoint& pixel);
    void SendToTool(unsigned message, unsigned flags, const QPoint& pixel);
    bool GetLimits(double& closest, double& farthest);
    bool CanZoom(bool isIn);

    bool m_hasFit = false;
    std::array<double, 4> m_fitBox{}; // minimum x, y, maximum x, y
    Mapping m_fitMapping{};
    std::function<bool(double (&)[4])> m_extent;
    std::function<void(int, int)> m_clicked;
    std::function<bool(int, int)> m_isTarget;
    FindObjectFunction m_findObject;
    std::function<void(int, int)> m_beforeDoubleClick;
    std::function<bool(bool)> m_walk;
    std::function<bool(int)> m_drawingKey;
    std::function<void()> m_noLength;
    std::function<int(XvcBitmap&)> m_choosePicture;
    std::function<bool(int, int)> m_nudge;
    QPoint m_seen; // of the last message of the pointer
    QPoint m_leftPress;
    QPoint m_rightPress;
    bool m_isKeyUsed = false;   // by what is being drawn
    bool m_isRightHeld = false; // its press has not reached the tool
    bool m_isBoxPress = false;  // whatever lies there is not hit
    bool m_isPressed = false;   // the left button, where it may become a click
    QPoint m_pressed;
    QPoint m_rested;
    bool m_isTargetDue = false;
    bool m_isOverTarget = false;
    std::function<void()> m_firstPaint;
    std::function<void()> m_afterPaint;
    std::function<void(bool)> m_busyChanged;
    bool m_isAfterPaintDue = false;
    tagXEscape m_beforeKey;
    bool m_isLeftDown = false;
    bool m_isShiftZoom = false; // from the press with Shift to the release
};
