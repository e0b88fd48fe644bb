#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

#include <QImage>

#include <atomic>
#include <cstdint>

class XRSFile;

/// How much may be decoded for one thumbnail, in bytes of the file's blocks.
constexpr std::int64_t kXThumbnailBytes = std::int64_t(128) << 20;

/// Draws a small picture of a raster from its first bands, magnitudes of complex ones.
///
/// Reads one reduced level of each band; where that would mean to decode more than the budget, as
/// in a large file without overviews, nothing is read. Cut ranges come from the same pixels.
/// The picture is as wide or high as `maxSide` and shows the raster's extent without a margin.
/// Threads: any; the file is used by this thread alone meanwhile.
/// @param abort    polled while reading; may be null
/// @param picture  null when nothing was drawn
/// @param message  why nothing, or not everything, was drawn, as a text for the place of the picture;
///                 empty after an abort
XAPI int XfnDrawThumbnail(XRSFile& file, int maxSide, std::int64_t budgetBytes,
                          std::atomic<int>* abort, QImage& picture, XString& message);
