#pragma once

#include "vecprop/XObjectField.h"
#include "view/XObjectDialogs.h"

/// The members that a dialog shows, in the order of its pages. Objects handed to the functions of
/// a form must be of the dialog's class.
XAPI tagXObjectForm XfnGetObjectForm(XObjectDialog dialog);
