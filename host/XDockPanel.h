#pragma once

#include <QString>

class QDockWidget;
class QMainWindow;
class QWidget;

/// A panel at the right side of a window around a content, which it takes over and is named after.
QDockWidget* XfnMakeDock(QMainWindow* window, QWidget* content, const QString& title);
