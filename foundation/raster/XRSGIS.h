#pragma once

#include "foundation/base/XString.h"

/// One class of a classified band, or one entry of a colour table: the class number is its place in
/// the band's table.
struct tagXRSGIS
{
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;
    unsigned char alpha = 255;
    long long count = 0; ///< pixels of the class; 0 when the file does not tell
    XString name;
};
