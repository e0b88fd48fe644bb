#pragma once

#include <QLabel>
#include <QTimer>

/// A line over a picture that goes by itself: for a moment when no status bar is to be seen. The
/// pointer goes through it.
class XHintLabel : public QLabel
{
public:
    explicit XHintLabel(QWidget* over);

    void Tell(const QString& text, int ms);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Place();

    QTimer m_timer;
};
