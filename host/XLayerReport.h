#pragma once

#include <QString>

#include <utility>
#include <vector>

struct tagXLayer;

/// What the file of a layer is: path, size, bands, type, coordinate system, pixel size, overviews,
/// no-data value, statistics of the shown bands. Statistics that come from a sample say so.
std::vector<std::pair<QString, QString>> XfnLayerReport(const tagXLayer& layer);

/// "349 x 352", sizes in bytes as "798 453 bytes (779 KiB)".
QString XfnByteSizeText(long long bytes);
