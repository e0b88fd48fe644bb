#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"

#include <QPushButton>

#include <functional>

/// A button that shows a colour and asks the prompts service for another.
///
/// What the colour lets through shows as a board of squares behind it.
class XAPI XColorButton : public QPushButton
{
public:
    explicit XColorButton(QWidget* parent = nullptr);

    /// Called with the colour that was chosen; its top byte means nothing.
    void SetHandler(std::function<void(tagXColor)> handler) { m_handler = std::move(handler); }
    void ShowColor(tagXColor color, int opacityPercent, bool isMixed);
    tagXColor GetColor() const { return m_color; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Choose();

    std::function<void(tagXColor)> m_handler;
    tagXColor m_color = 0;
    int m_opacity = 100;
    bool m_isMixed = false;
};
