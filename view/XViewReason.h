#pragma once

/// Why a view is drawn again. The number changes nothing; hosts' traces know it.
enum class XViewReason : int {
    ZoomFit = 1,
    ZoomIn = 2,
    ZoomOut = 3,
    ZoomOneToOne = 4,
    ZoomFitRect = 5,
    Size = 6,
    MouseWheel = 7,
    SelectionCleared = 8, ///< by the tool of mode -1
    ZoomRect = 9,
    Polygon = 10,
    Point = 11,
    Arrow = 12,
    ArmyMark = 13,
    IndexMap = 14,
    Pan = 15, ///< the right button came up, or the view was moved in another way
    SetMode = 16,
    Invalidate = 17,
    BackgroundColor = 18,
    Enhance = 19
};
