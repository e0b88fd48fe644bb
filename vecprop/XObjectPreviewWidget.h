#pragma once

#include "foundation/base/XApi.h"

#include <QWidget>

class XObjectEditModel;

/// What the edited objects will look like, drawn as a view draws them.
class XAPI XObjectPreviewWidget : public QWidget
{
public:
    explicit XObjectPreviewWidget(const XObjectEditModel& model, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {240, 240}; }
    QSize minimumSizeHint() const override { return {200, 200}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const XObjectEditModel& m_model; // outlives the widget
};
