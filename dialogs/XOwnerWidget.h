#pragma once

#include "foundation/platform/XWindowMessages.h"

class QWidget;

/// The widget that is the window of a handle, null for 0 or a handle of no widget. UI thread only.
XAPI QWidget* XfnFindOwnerWidget(XHWND handle);

/// The handle of a widget, or of the nearest of its parents that has one; 0 when none has.
XAPI XHWND XfnGetOwnerHandle(const QWidget* widget);
