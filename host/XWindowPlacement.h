#pragma once

#include <QList>
#include <QMargins>
#include <QRect>

/// Where a window that was at `saved` opens now.
///
/// A screen may have gone or shrunk since: the rectangle moves onto the available area that holds
/// most of it (the first when none does) and shrinks to fit there, so that its title bar can always
/// be reached. Without any screen it comes back as it was.
/// @param screens  the available areas, primary first
/// @param frame    what the desktop adds around the rectangle, which has to fit too
QRect XfnPlaceWindow(const QRect& saved, const QList<QRect>& screens,
                     const QMargins& frame = QMargins());
