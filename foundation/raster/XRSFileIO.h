#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

class XRSFile;
class XThread;

/// Format identifiers: 101 to 999 rasters, 1001 to 9999 vectors, 0 unknown.
enum XFormatID : int {
    kXFormatUnknown = 0,
    kXFormatXDM = 101,
    kXFormatPBI = 102,
    kXFormatBMP = 103,
    kXFormatJPG = 104,
    kXFormatTIF = 105,
    kXFormatIMG = 106,
    kXFormatDT0 = 107,
    kXFormatDT1 = 108,
    kXFormatDT2 = 109,
    kXFormatOtherRaster = 110,
    kXFormatXVC = 1001,
    kXFormatDXF = 1002,
    kXFormatSHP = 1003,
    kXFormatDGN = 1004,
    kXFormatOtherVector = 1005
};

/// Opens raster files into an XRSFile.
///
/// Opening reads headers only; pixels are read when tiles are asked for. A load that succeeds
/// replaces what `file` held; one that fails leaves it as it was and `error` holds a sentence that
/// names the file. Nothing is ever written beside the image.
///
/// The two flags of the loaders: `useLevels` 0 ignores reduced-resolution levels stored in the file,
/// `useStatistics` 0 ignores statistics stored with it. `thread` may be null; when its stop flag is
/// up the load fails with an empty `error`.
///
/// 64-bit integer rasters are read as doubles (exact to 2^53), rasters of less than 8 bits as bytes,
/// 8-bit rasters marked as signed as signed bytes.
///
/// Threads: any; one file by one thread at a time.
class XAPI XRSFileIO
{
public:
    /// The format of an extension without its point, in any case: "TIF" is 105. Extensions that no
    /// reader claims are 0.
    static int GetIDFromExt(const XString& extension);

    /// Loads a raster of format `id`; a file of another format is refused.
    static int LoadFileRaster(XRSFile* file, int id, const XString& path, XString& error,
                              int useLevels, int useStatistics, XThread* thread);
    static int LoadFileBMP(XRSFile* file, const XString& path, XString& error, int useLevels,
                           int useStatistics, XThread* thread);
    static int LoadFileJPG(XRSFile* file, const XString& path, XString& error, int useLevels,
                           int useStatistics, XThread* thread);
    static int LoadFileTIF(XRSFile* file, const XString& path, XString& error, int useLevels,
                           int useStatistics, XThread* thread);
    static int LoadFileDTED(XRSFile* file, const XString& path, XString& error, int useLevels,
                            int useStatistics, XThread* thread);
    static int LoadFileHFA(XRSFile* file, const XString& path, XString& error, int useLevels,
                           int useStatistics, XThread* thread);

    /// Chooses the reader itself: by the extension, and when that one refuses, by the content. A file
    /// of the native format is known by its content alone.
    static int Open(const XString& path, XRSFile* file, XString& error, XThread* thread = nullptr);
};

/// 1 when every band of the file has a reduced-resolution level stored in the file, so that a
/// thumbnail need not read full resolution.
XAPI int XfnIsValidXDMLevelData(XRSFile* file);
