#pragma once

#include <QString>

#include <memory>

class XRSFile;

/// Opens a raster file of any known format.
/// @return null with a sentence that does not repeat the path: what is wrong with it and, where it
///         helps, what to do
std::unique_ptr<XRSFile> XfnOpenRaster(const QString& path, QString& message);
