#pragma once

#include "foundation/base/XApi.h"

#include <QIcon>
#include <QPainterPath>

#include <functional>

class QPainter;

/// Signs of commands that windows of the library and a host's toolbar share.
enum class XSign { Fit, OneToOne, ZoomIn, ZoomOut, ZoomRect, Enhance, Stretch, Overview };

/// The side of the square on which signs are drawn, and the pen that they are drawn with.
constexpr double kXSignSide = 16.0;
constexpr double kXSignPen = 1.4;

XAPI QPainterPath XfnSignPath(XSign sign);

/// An icon that is painted on demand, on a square of kXSignSide units at whatever size and scale is
/// asked for, so that it follows a change of the palette without being replaced.
XAPI QIcon XfnDrawnIcon(std::function<void(QPainter&, QIcon::Mode)> paint);

/// An icon of lines along a path, in the text colour of buttons of the moment.
XAPI QIcon XfnLineIcon(std::function<QPainterPath()> path);

XAPI QIcon XfnSignIcon(XSign sign);
