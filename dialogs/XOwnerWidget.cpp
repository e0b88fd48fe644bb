#include "dialogs/XOwnerWidget.h"

#include "foundation/platform/XMessageWindow.h"

#include <QApplication>
#include <QWidget>

QWidget* XfnFindOwnerWidget(XHWND handle)
{
    if (handle == 0) return nullptr;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        const auto* window = dynamic_cast<XMessageWindow*>(widget);
        if (window && window->GetHWND() == handle) return widget;
    }
    return nullptr;
}

XHWND XfnGetOwnerHandle(const QWidget* widget)
{
    for (; widget; widget = widget->parentWidget())
        if (const auto* window = dynamic_cast<const XMessageWindow*>(widget))
            return window->GetHWND();
    return 0;
}
