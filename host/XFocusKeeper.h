#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

/// Gives the keyboard to one widget of a window, the picture, whenever a dialog over the window has
/// been closed: its plain keys work again at once.
class XFocusKeeper : public QObject
{
public:
    explicit XFocusKeeper(QWidget& picture);

private:
    void Follow(QWidget* now);

    QWidget& m_picture;
    QPointer<QWidget> m_dialog; // that had the keyboard last
    bool m_wasInDialog = false;
};
