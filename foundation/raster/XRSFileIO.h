#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"
#include "foundation/raster/XRasterSidecar.h"

#include <vector>

class XDMBand;
class XRSFile;
class XSpatialReference;
class XThread;
struct tagXSaveControl;

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
/// names the file. Opening writes nothing.
///
/// The two flags of the loaders: `useLevels` 0 ignores reduced-resolution levels stored in the file,
/// `useStatistics` 0 ignores statistics stored with it. `thread` may be null; when its stop flag is
/// up the load fails with an empty `error`.
///
/// 64-bit integer rasters are read as doubles (exact to 2^53), rasters of less than 8 bits as bytes,
/// 8-bit rasters marked as signed as signed bytes.
///
/// A pyramid or exact statistics that were made before are used (XRasterSidecar.h tells where they
/// are), unless the flags say otherwise. Those beside the file that are older than it are not, and a
/// note of the file says so.
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

    /// Always 0 with a sentence: the layout of these files was never published.
    static int LoadFilePBI(XRSFile* file, const XString& path, XString& error, XThread* thread);

    /// Loads a vector file of format `id` (1001 to 1005; XVectorIO.h) as a vand that owns its base, the
    /// only one of `file`.
    /// @param reference  of the vand when the file tells none; may be null
    static int LoadFileVector(XRSFile* file, int id, const XString& path,
                              const XSpatialReference* reference, XString& error, XThread* thread);

    /// Chooses the reader itself: by the extension, and when that one refuses, by the content. A file
    /// of the native format is known by its content alone.
    static int Open(const XString& path, XRSFile* file, XString& error, XThread* thread = nullptr,
                    int useLevels = 1, int useStatistics = 1);

    /// A raster inside a container file.
    struct tagPart
    {
        XString name; ///< opens it
        XString text; ///< what it is
    };
    /// The rasters inside a file that holds several, which Open refuses; none for any other file.
    static std::vector<tagPart> GetParts(const XString& path);
    /// What GDAL's raster drivers claim, as they write it: without the dot, in any case and order, some
    /// twice.
    static std::vector<XString> GetRasterExtensions();
    /// 0 for the name of something that only GDAL can find: `/vsizip/a.zip/b.tif`,
    /// `NETCDF:"a.nc":b`. A file that exists under such a name is plain.
    static int IsPlainPath(const XString& path);

    // ---- pyramids ----

    /// 1 when a pyramid can be made and is worth it: a level of 4096 pixels a side or more
    /// is virtual and the next one too, as in every image of 8192 pixels a side without overviews, and
    /// all bands have one data type.
    static int NeedsLevels(const XRSFile* file);
    /// Makes the pyramid of a raster file: every level down to 256 pixels, as GDAL's external
    /// overviews (tiled TIFF, compressed without loss). Continuous samples are averaged without those
    /// of no data, of classes and colour numbers the most frequent counts, the magnitude of complex
    /// samples is averaged; signed bytes, and classes beside continuous bands, are picked.
    /// An open file of this path takes the levels up with TakeUpLevels.
    /// Runs in the calling thread for as long as it takes; memory: GDAL's block cache and some rows.
    /// @param made  receives the name of the file
    /// @return 0 with a sentence in `error`, an empty one after a stop; nothing is left behind then
    static int BuildLevels(const XString& path, XSidecarPlace place, const tagXSaveControl& control,
                           XString& made, XString& error);
    /// Makes an open file show the pyramid that was made since it was opened. Sizes of levels and
    /// tiles stay as they are, so other threads may read meanwhile; cached tiles of the levels go.
    /// @return 0 when there is no pyramid that fits, or the path names another file by now
    static int TakeUpLevels(XRSFile* file);

    // ---- statistics ----

    /// Keeps statistics with a file, for the next time it is opened: in the ".aux.xml" that GDAL and
    /// others read, or in the cache. What else stands in the ".aux.xml" is kept. Of complex bands and
    /// of native files they are kept in the cache alone.
    /// @param bands  some of one file; of each its current statistics are taken unless estimated
    /// @return 0 with a sentence in `error`; so too when the file was changed or replaced since it was
    ///         opened, or a band has another null value than the file
    static int SaveStatistics(const std::vector<const XDMBand*>& bands, XSidecarPlace place,
                              XString& made, XString& error);
};

/// 1 when every band of the file has a reduced-resolution level stored in the file, so that a
/// thumbnail need not read full resolution.
XAPI int XfnIsValidXDMLevelData(XRSFile* file);
