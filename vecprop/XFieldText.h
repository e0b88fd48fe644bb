#pragma once

#include "vecprop/XObjectField.h"

/// What stands in the box of a field. Numbers are written so that they read back the same; one that
/// is not set is empty. Sizes are written without their sign, colours as #RRGGBB.
XAPI XString XfnFieldToText(const tagXObjectField& field, const XFieldValue& value);

/// Reads what was typed.
/// @param isPixels  of a size: the unit beside the box
/// @return 0 with a sentence in `error` that tells what is wrong
XAPI int XfnFieldFromText(const tagXObjectField& field, const XString& text, int isPixels,
                          XFieldValue& value, XString& error);

/// Reads a number that takes up the whole of `text`, but for blanks around it and `unit` behind it;
/// a comma may stand for the point. What a coordinate cannot be is no number.
XAPI int XfnReadWholeNumber(const XString& text, const char* unit, double& value);
