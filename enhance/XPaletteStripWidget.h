#pragma once

#include "foundation/base/XApi.h"

#include <QWidget>

#include <functional>

class XPaletteModel;

/// What the strip asks for; all must be set before it is shown.
struct tagXPaletteStripActions
{
    std::function<void(int x)> start; ///< a button went down
    /// With the left button alone, or the right one alone. True when the table was moved.
    std::function<bool(int x, bool isPush)> drag;
    std::function<void()> end;
    std::function<void()> rightClick; ///< the table was not moved between press and release
    std::function<void()> rightDoubleClick;
};

/// Shows a table as a continuous ramp that is dragged: the left button rotates it, the right one
/// pushes it. A right click asks to toggle the anchor of the current entry, a right drag that moved
/// the table toggles nothing. The model outlives it.
class XAPI XPaletteStripWidget : public QWidget
{
public:
    XPaletteStripWidget(const XPaletteModel& model, QWidget* parent);

    void SetActions(tagXPaletteStripActions actions) { m_actions = std::move(actions); }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    const XPaletteModel& m_model;
    tagXPaletteStripActions m_actions;
    bool m_isRightClick = false;
};
