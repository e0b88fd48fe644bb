#pragma once

#include "foundation/base/XApi.h"

class QLabel;
class QString;
class QWidget;

/// A line that says what is wrong with the field above it; it takes no room while nothing is.
XAPI QLabel* XfnMakeErrorLabel(const QString& objectName, QWidget* parent);
XAPI void XfnShowError(QLabel& label, const QString& error); ///< empty: nothing is wrong
