#pragma once

#include "foundation/base/XApi.h"

#include <QCursor>

/// Cursors of the editing tools, drawn in black with a white casing so that they are seen on any
/// picture. UI thread only; they need a running QGuiApplication.

enum class XCursorImage { Arrow, Pan, ZoomRect, Draw, Rotate };

XAPI QCursor XfnGetCursor(XCursorImage image);

/// The cursor of a tool that draws: a cross hair with a small picture of what it draws.
/// @param mode  the tool's mode number (101 to 131, 202); an unknown one gives the cross hair alone
XAPI QCursor XfnGetToolCursor(int mode);
