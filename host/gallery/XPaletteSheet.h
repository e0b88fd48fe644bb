#pragma once

class QString;

/// Pictures of the colour table in the palette that is set: the dialog over an image with
/// its pane of values (palette-edit), collapsed (palette), and all ramps of the catalogue with
/// their numbers and names (palettes, not where the screen is scaled), each with `suffix` before
/// the extension.
/// @param sample  a raster, one band of which is coloured
/// @return the name of the first that could not be written, or null
const char* XfnSavePaletteSheets(const QString& folder, const char* suffix, const QString& sample);
