#pragma once

#include "foundation/base/XApi.h"

/// Binds the windows of the library that a view opens: from then on a new view has its panel of
/// buttons, and the questions before a window (CanShow... of XTQSpaceView) answer with 1 for those
/// that there are.
///
/// A host calls it once, before its first view. It may replace single factories afterwards
/// (XViewDialogFactories), to open windows of its own. User interface thread.
XAPI void XfnBindViewDialogs();
