#pragma once

#include <QTimer>
#include <QWidget>

/// A quiet mark that something is being drawn: an open ring in the text colour, and nothing while
/// nothing is. It keeps its place, so nothing jumps, and shows only what lasts long enough to be
/// wondered about. User interface thread.
class XBusyWidget : public QWidget
{
public:
    static constexpr int kDelayMs = 200;

    explicit XBusyWidget(QWidget* parent);

    void SetBusy(bool isBusy);
    bool IsMarked() const { return m_isMarked; } ///< the ring is seen

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Mark(bool isMarked);

    QTimer m_delay;
    bool m_isMarked = false;
};
