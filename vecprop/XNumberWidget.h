#pragma once

#include "foundation/base/XApi.h"

#include <QLineEdit>

#include <functional>

/// A box for a number: typed freely, moved by the arrow keys (Page keys: ten steps) and, while it has
/// the focus, by the wheel. What a number is the handlers know.
class XAPI XNumberWidget : public QLineEdit
{
public:
    explicit XNumberWidget(QWidget* parent = nullptr);

    /// Called with the number of steps asked for.
    void SetStepHandler(std::function<void(double steps)> handler) { m_step = std::move(handler); }
    void SetLeastDigits(int digits); ///< of its width; 11 at first
    /// Keeps the cursor where nothing changed, and makes room for the whole number.
    /// @param whenEmpty  what an empty box says
    void ShowText(const QString& text, bool isMixed, const QString& whenEmpty = {});

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    std::function<void(double)> m_step;
    int m_wheel = 0; // eighths of a degree since the last step
};

/// What stands where several objects have several values.
inline constexpr const char* kXMixedText = "mixed";
