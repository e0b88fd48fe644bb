#pragma once

#include <QString>

#include <memory>

class XRSFile;

/// Whether a path names a file, not something inside one or elsewhere that only the format library
/// can find, such as "NETCDF:multi.nc:Band3" or "/vsizip/a.zip/b.tif".
bool XfnIsPlainPath(const QString& path);

/// Whether both paths lead to one existing file, whatever links stand between.
bool XfnIsSameFile(const QString& a, const QString& b);

/// Opens a raster file of any known format.
/// @return null with a sentence that does not repeat the path: what is wrong with it and, where it
///         helps, what to do
std::unique_ptr<XRSFile> XfnOpenRaster(const QString& path, QString& message);
