#pragma once

#include "foundation/base/XApi.h"

#include <QByteArray>

/// Settings of the user that the library itself reads. They are kept between sessions, one store a
/// user, whatever the host's name. Any thread.

/// True when turning the wheel forward zooms in; by default it zooms out.
XAPI bool XfnGetInvertMouseWheelZoomDir();
XAPI void XfnSetInvertMouseWheelZoomDir(bool isInverted);

/// True when the properties of an object are asked for as soon as it is drawn.
/// @param ifNotChosen  the answer while the user has not chosen yet
XAPI bool XfnGetAskForNewObject(bool ifNotChosen);
XAPI void XfnSetAskForNewObject(bool isAsked);

/// Size and inner layout of the raster file dialog, as it wrote them; empty at first.
XAPI QByteArray XfnGetFileDialogLayout();
XAPI void XfnSetFileDialogLayout(const QByteArray& layout);
