#pragma once

#include "vecprop/XObjectField.h"

/// A number with at most `places` digits behind the point, without the zeros at its end; one that is
/// too small for them, or too large to be a coordinate, with six significant digits.
/// @param places  below 0: the shortest text that reads back as exactly `value`
XAPI XString XfnFormatPlaces(double value, int places);

/// What stands in the box of a field. Coordinates and sizes have the field's places, other numbers
/// are written so that they read back the same; one that is not set is empty, and so is a 0 that
/// stands for something else (whenZero). Sizes are written without their sign, colours as #RRGGBB.
XAPI XString XfnFieldToText(const tagXObjectField& field, const XFieldValue& value);

/// Reads what was typed.
/// @param isPixels  of a size: the unit beside the box
/// @return 0 with a sentence in `error` that tells what is wrong
XAPI int XfnFieldFromText(const tagXObjectField& field, const XString& text, int isPixels,
                          XFieldValue& value, XString& error);

/// Reads a number that takes up the whole of `text`, but for blanks around it and `unit` behind it;
/// a comma may stand for the point. What a coordinate cannot be is no number.
XAPI int XfnReadWholeNumber(const XString& text, const char* unit, double& value);
