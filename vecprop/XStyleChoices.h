#pragma once

#include "foundation/base/XLineStyle.h"
#include "vecprop/XObjectField.h"

/// The line styles that a user may choose, "None" at the end. Those that mark what is selected or
/// pulled open are left out.
/// @param current  a style that is in use: listed in any case
XAPI std::vector<tagXChoice> XfnGetLineStyleChoices(int current = tagXLineStyle::kSolid);

/// All fill styles.
XAPI std::vector<tagXChoice> XfnGetFillStyleChoices();
