#include "foundation/surface/XWaitCursor.h"

#include <QCursor>
#include <QGuiApplication>

XWaitCursor::XWaitCursor()
{
    if (qGuiApp) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

XWaitCursor::~XWaitCursor()
{
    if (qGuiApp) QGuiApplication::restoreOverrideCursor();
}
