#pragma once

/// Which point of a text's box stands at its position: one of the first three (none: left) and one
/// of the others (none: top). 18 is the upper left corner.
enum XTextAlign : int {
    kXTextRight = 1,
    kXTextLeft = 2,
    kXTextCentre = 4,
    kXTextBottom = 8,
    kXTextTop = 16,
    kXTextMiddle = 32
};
