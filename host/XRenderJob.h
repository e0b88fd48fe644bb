#pragma once

#include <QSize>
#include <QString>

/// One picture asked for on the command line.
struct tagXRenderRequest
{
    QString output;           ///< the picture to write; its suffix chooses the format
    QString file;             ///< the raster to show
    QSize size;               ///< in pixels; empty: the raster's own, at most 1024 a side
    int bands[3] = {0, 0, 0}; ///< red, green, blue, counted from 1; all the same: gray; 0: chosen
    bool hasBands = false;
    double extent[4] = {0, 0, 0, 0}; ///< minimum x, minimum y, maximum x, maximum y in world units
    bool hasExtent = false;
};

/// The largest picture that --render makes, in pixels.
constexpr long long kMaxRenderPixels = 1LL << 28;
constexpr int kMaxRenderSide = 32767;

/// How a rendering ended.
enum class RenderResult {
    Done,
    Failed, ///< a file could not be read or written
    Misused ///< the request makes no sense, whatever the files hold
};

/// Draws one raster into a picture file, without any window.
///
/// The picture is what the window would show after the file was opened: the same bands, the same
/// stretch, the extent centred and never distorted. It is written to a temporary name and renamed,
/// so that a failure leaves an older picture as it was. Any thread.
/// An output that is the raster itself is refused, and so is an extent that does not meet the raster.
/// @return what is not Done comes with a sentence in `message`
RenderResult XfnRenderToFile(const tagXRenderRequest& request, QString& message);
