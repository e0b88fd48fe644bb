#pragma once

#include "foundation/platform/XWindowMessages.h"

class XSessionSettings;
class XvcBitmap;

/// Asks for a picture file and puts it into `picture`: BMP, JPEG, PNG and what else the toolkit reads.
/// What a file says to be clear becomes white, save in BMP. The box of the picture becomes the largest
/// one within its own that has the shape of the file's. What cannot be read is told in a box.
/// @return 0 when there is none; the picture is as it was then
int XfnChoosePicture(XHWND owner, XSessionSettings& settings, XvcBitmap& picture);
