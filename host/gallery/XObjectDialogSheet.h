#pragma once

class QString;

/// Pictures of the object dialogs, one a dialog, in the palette that is set: object-point.png and so
/// on, with `suffix` before the extension.
/// @param isAll  otherwise only some that show every kind of control
/// @return the name of the first that could not be written, or null
const char* XfnSaveObjectDialogs(const QString& folder, const char* suffix, bool isAll);
