#pragma once

#include "foundation/base/XApi.h"

#include <QWidget>

#include <functional>

class QLabel;
class QSlider;

/// How opaque something is: a slider of 0 to 100 per cent and the number beside it.
class XAPI XOpacityWidget : public QWidget
{
public:
    explicit XOpacityWidget(const QString& name, QWidget* parent = nullptr);

    QSlider& GetSlider() { return *m_slider; }
    void SetHandler(std::function<void(int percent)> handler);
    void ShowOpacity(int percent, bool isMixed);

private:
    QSlider* m_slider;
    QLabel* m_number;
};
