#pragma once

class QString;

/// Pictures of the raster file dialog with the preview of `sample`, and of the worker dialog, in the
/// palette that is set: filedialog.png and so on, with `suffix` before the extension.
/// @return the name of the first that could not be written, or null
const char* XfnSaveFileDialogs(const QString& folder, const char* suffix, const QString& sample);
