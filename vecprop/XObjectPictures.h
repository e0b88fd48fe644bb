#pragma once

#include "vecprop/XObjectField.h"

#include <QImage>

#include <memory>

/// Draws objects as a view does, as large as they fit, on one colour; sizes in pixels are those of
/// the picture.
XAPI QImage XfnDrawObjects(const std::vector<std::unique_ptr<XvcObj>>& objects, int widthPx,
                           int heightPx, tagXColor paper);

/// The picture of a list's entry: an object that has it, in one colour on nothing.
/// @param like  what else the entry needs to know, such as the table of symbols; may be null
XAPI QImage XfnDrawChoice(XChoicePicture picture, int value, int widthPx, int heightPx,
                          tagXColor ink, const XvcObj* like);
