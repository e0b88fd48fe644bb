#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XString.h"

#include <QImage>

struct tagXvcDib;

/// The image that is drawn of a picture with bits. Its rows stand as in the picture: the lower one
/// is the first when that is stored first.
///
/// It shows the very bytes of the picture and keeps them alive, save for pictures of 4 bits a
/// pixel, and of 32 whose fourth bytes are free and not all 255: those are copied.
XAPI QImage XfnMakeDibImage(const tagXvcDib& dib);

/// The same image with the pixels of one colour (its opacity does not count) see-through. An image
/// of 8 bits a pixel shares its bytes, others are copied.
XAPI QImage XfnMakeSeeThrough(const QImage& image, tagXColor colour);

/// Makes a picture of an image, the lower row first: 8 bits a pixel for a gray one, else 24.
/// @return 0 with a sentence in `reason`
XAPI int XfnFillDib(const QImage& source, tagXvcDib& dib, XString& reason);
