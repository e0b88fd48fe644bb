#pragma once

#include "view/XTQSpaceView.h"

#include <array>
#include <functional>

/// The view of the program: a resize keeps what the user chose to look at.
///
/// The library's view refits the box it last drew to each new size, so it shrinks with every change
/// of shape there and back. This one keeps centre and scale, unless the view still shows a box that
/// it was fitted to: that box is fitted again. The pointer does not take the keyboard away from a
/// text box; a click and the wheel do. User interface thread.
class XHostView : public XTQSpaceView
{
public:
    explicit XHostView(QWidget* parent);
    ~XHostView() override;

    void FitAll(); ///< fits all layers; without any range, one world unit a pixel
    void FitBox(double minX, double minY, double maxX, double maxY);
    /// Whether the view looks where the last fit put it.
    bool IsFitted();
    /// Runs once, when the first picture has come to the screen.
    void SetFirstPaint(std::function<void()> run) { m_firstPaint = std::move(run); }

protected:
    void OnSize(int width, int height) override;
    void paintEvent(QPaintEvent* event) override;

private:
    using Mapping = std::array<double, 4>; // centre x, y, world length of a pixel x, y
    Mapping GetMapping();
    void SetMapping(const Mapping& mapping);

    bool m_hasFit = false;
    std::array<double, 4> m_fitBox{}; // minimum x, y, maximum x, y
    Mapping m_fitMapping{};
    std::function<void()> m_firstPaint;
};
