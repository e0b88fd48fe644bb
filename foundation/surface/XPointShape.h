#pragma once

/// Shapes of a point mark. Circle, square and triangle are filled; plus and cross are strokes.
enum XPointShape : int {
    kXPointDot = 0, ///< one pixel, whatever the size
    kXPointCircle = 1,
    kXPointSquare = 2,
    kXPointTriangle = 3,
    kXPointPlus = 4,
    kXPointCross = 5
};
