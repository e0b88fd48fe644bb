#pragma once

#include <QString>

#include <atomic>
#include <functional>

/// One conversion asked for on the command line.
struct tagXConvertRequest
{
    QString input;  ///< a raster of any format that opens
    QString output; ///< its suffix chooses the format
};

/// Writes one raster as a file of another format, without any window: .xdm with all levels, other
/// suffixes through GDAL. The output takes its place only when it is complete; a failure leaves an
/// older one as it was and nothing else. Any thread.
/// @param progress  gets rising percents from 0 to 100, from any thread but one at a time
/// @param abort     ends the job when it rises; may be null
/// @return false with a sentence in `message`
bool XfnConvertFile(const tagXConvertRequest& request, const std::function<void(int)>& progress,
                    const std::atomic<int>* abort, QString& message);
