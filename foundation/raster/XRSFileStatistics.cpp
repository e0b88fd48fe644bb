#include "foundation/base/XPath.h"
#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSidecarStatistics.h"

#include <memory>
#include <new>

namespace {

int NumberOf(const XDMBand* band)
{
    const XRSFile* file = band->GetXRSFile();
    for (int i = 0; i < file->GetNumOfBands(); ++i)
        if (file->GetBandAt(i) == band) return i + 1;
    return 0;
}

int Save(const std::vector<const XDMBand*>& bands, XSidecarPlace place, XString& made,
         XString& error)
{
    std::map<int, tagXBandStatistics> exact;
    std::unique_ptr<const XRasterSidecar> sidecar;
    XString path;
    for (const XDMBand* band : bands) {
        if (!band || !band->GetXRSFile()) continue;
        const XString& own = band->GetXRSFile()->GetFilePath();
        if (!path.IsEmpty() && own != path) continue;
        path = own;
        // looked at first, and asked after: what changes later is seen when it is put
        if (!sidecar) sidecar = std::make_unique<const XRasterSidecar>(path);
        // other programs would read theirs, which are of the real parts, or none at all
        if (XfnIsComplexType(band->GetDataType()) || !dynamic_cast<const XDMBandGDAL*>(band))
            place = XSidecarPlace::Cache;
        const auto statistics = band->GetStatistics();
        if (!statistics->IsSet() || statistics->isEstimated) continue;
        if (!band->IsAsInFile(error)) return 0;
        exact[NumberOf(band)] = *statistics;
    }
    if (path.IsEmpty()) {
        error = "An image that is in no file keeps its statistics itself.";
        return 0;
    }
    if (exact.empty()) {
        error = XfnFormat("\"%s\": there are no exact statistics to keep.", path);
        return 0;
    }
    constexpr const char* kTail = ".aux.xml";
    const XString beside = sidecar->GetBeside(kTail);
    const XString cached = sidecar->GetCached(kTail);
    return sidecar->Put(
        kTail, place,
        [&](const XString& name, XString& why) {
            // a name beside ends as the file's own does, one in the cache is made of numbers
            const bool isBeside = XfnGetFileName(name) == XfnGetFileName(beside);
            return XfnWriteSidecarStatistics(isBeside ? beside : cached, name, path, exact, why);
        },
        made, error);
}

} // namespace

int XRSFileIO::SaveStatistics(const std::vector<const XDMBand*>& bands, XSidecarPlace place,
                              XString& made, XString& error)
{
    error.Empty();
    made.Empty();
    try {
        return Save(bands, place, made, error);
    } catch (const std::bad_alloc&) {
        error = "There is not enough memory to keep the statistics.";
        return 0;
    }
}
