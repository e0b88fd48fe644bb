#pragma once

#include "foundation/base/XString.h"

#include <cstdint>
#include <memory>

class XRSFile;
class XThread;

/// What the raster file dialog knows of files: its filters, its readers and the texts of its preview.
///
/// Threads: any.
class XAPI XFilePreviewModel
{
public:
    /// How much beside the pixels is used of a file that is opened.
    enum XMode : int {
        kPixels = 0,    ///< no reduced levels, no statistics
        kLevels = 1,    ///< the reduced levels stored with it
        kEverything = 2 ///< the statistics stored with it too
    };

    /// The filter of the dialog (XFileFilter): all formats, or the native one and TIFF alone.
    static XString GetFilter(int isFull);

    /// The extension of a path in capitals, without the point; empty when there is none.
    static XString GetExtension(const XString& path);

    /// Opens a raster by the reader of its extension; what that one refuses, and other extensions,
    /// by the content. PBI and PEI are refused.
    /// @param mode    XMode
    /// @param thread  may be null; asked for its stop flag
    /// @return null with a sentence that names the file in `error`, an empty one after a stop
    static std::unique_ptr<XRSFile> Load(const XString& path, int mode, XThread* thread,
                                         XString& error);

    /// 1 when a band holds complex samples.
    static int IsComplex(const XRSFile& file);

    /// The report of a file, in lines that end with CR LF: image, then place.
    /// @param fileBytes  size of the file, below 0 when it is not known
    static XString MakeReport(XRSFile& file, std::int64_t fileBytes);

    /// "12 MB (12582912 bytes)": whole gigabytes from 10 GB on, megabytes from 10 MB on, else
    /// kilobytes, each 1024 of the next smaller, rounded down.
    static XString MakeSizeText(std::int64_t bytes);
};
