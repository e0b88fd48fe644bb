#include "host/XDockPanel.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QScrollArea>
#include <QScrollBar>

QDockWidget* XfnMakeDock(QMainWindow* window, QWidget* content, const QString& title)
{
    auto* dock = new QDockWidget(title, window);
    dock->setObjectName("dock." + content->objectName());
    dock->setAccessibleName(title);
    // on a small screen a panel scrolls rather than making the window higher than the screen
    auto* scroll = new QScrollArea(dock);
    scroll->setObjectName(content->objectName() + ".scroll");
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);
    scroll->setMinimumWidth(content->minimumSizeHint().width() +
                            scroll->verticalScrollBar()->sizeHint().width());
    dock->setWidget(scroll);
    window->addDockWidget(Qt::RightDockWidgetArea, dock);
    return dock;
}
