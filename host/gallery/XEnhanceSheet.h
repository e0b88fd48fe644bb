#pragma once

#include <QString>

/// Writes contact sheets of a raster under each stretch type and each preset.
/// @return the name of the picture that could not be made; null when all were
const char* XfnSaveEnhanceSheets(const QString& folder, const QString& sample);
