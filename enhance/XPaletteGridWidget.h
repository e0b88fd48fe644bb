#pragma once

#include "enhance/XPalettePicture.h"

#include <QWidget>

#include <functional>

class XPaletteModel;

/// What a grid or a strip asks for; all must be set before the widget is shown.
struct tagXPaletteGridActions
{
    std::function<void(int entry)> point; ///< the entry becomes the current one
    std::function<void()> pick;           ///< a colour for the current entry
    std::function<void()> toggle;         ///< the anchor of the current entry
};

/// Shows the entries of a table as a grid and takes the pointer and the keys: a click picks a colour,
/// arrows, Home and End move, Return picks, Space switches the anchor. The right button is left to
/// the window. The model outlives it.
class XAPI XPaletteGridWidget : public QWidget
{
public:
    XPaletteGridWidget(const XPaletteModel& model, QWidget* parent);

    void SetActions(tagXPaletteGridActions actions) { m_actions = std::move(actions); }
    void DrawPalette();
    void DrawItem(int column, int row);
    void ReleaseSurface() { m_picture.Release(); }
    QRect GetGridRect() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int GetEntryAt(const QPointF& at) const;
    void DrawIfNeeded();

    const XPaletteModel& m_model;
    tagXPaletteGridActions m_actions;
    XPalettePicture m_picture;
    double m_ratio = 0.0; // of the screen that the picture was drawn for
};
