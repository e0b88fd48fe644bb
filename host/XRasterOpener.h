#pragma once

#include "foundation/base/XString.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class XRSFile;

/// Whether a path names a file, not something inside one or elsewhere that only the format library
/// can find, such as "NETCDF:multi.nc:Band3" or "/vsizip/a.zip/b.tif".
bool XfnIsPlainPath(const QString& path);

/// Whether both paths lead to one existing file, whatever links stand between.
bool XfnIsSameFile(const QString& a, const QString& b);

/// Reads a raster: null with a sentence that names the file in `error`, an empty one when the user
/// gave up.
using XRasterReader = std::function<std::unique_ptr<XRSFile>(const XString& path, XString& error)>;

/// The paths of a lot in the order of opening: one that has a coordinate system comes first, so that
/// the view gets it. Only the heads of files are read, up to the first that has one.
QStringList XfnPlacedFirst(const QStringList& paths);

/// Opens a raster file of any known format.
/// @param read  null: in the calling thread, without asking anybody
/// @return null with a sentence that does not repeat the path: what is wrong with it and, where it
///         helps, what to do. Empty when the user gave up
std::unique_ptr<XRSFile> XfnOpenRaster(const QString& path, QString& message,
                                       const XRasterReader& read = nullptr);
