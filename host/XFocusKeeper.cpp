#include "host/XFocusKeeper.h"

#include <QApplication>
#include <QDialog>

#include <utility>

XFocusKeeper::XFocusKeeper(QWidget& picture) : m_picture(picture)
{
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* now) { Follow(now); });
}

void XFocusKeeper::Follow(QWidget* now)
{
    if (!now) return;
    QWidget* const window = now->window();
    if (dynamic_cast<QDialog*>(window)) {
        m_dialog = window;
        m_wasInDialog = true;
    } else if (window == m_picture.window() && std::exchange(m_wasInDialog, false)) {
        // who goes over to the window while a dialog stays open chose where
        if (!m_dialog || !m_dialog->isVisible()) m_picture.setFocus();
    }
}
