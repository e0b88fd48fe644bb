#include "dialogs/XFilePreviewModel.h"

#include "foundation/base/XPath.h"
#include "foundation/raster/XDMBandComplex.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/raster/XRasterTypes.h"

#include <cmath>

namespace {

constexpr int kPixelOriented = 1;
constexpr int kUnknownCoordinates = 2;

XString MakeImageLines(const XRSFile& file)
{
    XString text;
    if (const XDMBand* band = file.GetBandAt(0)) {
        text += XfnFormat("Image Size : %d x %d\r\n", band->GetXSize(), band->GetYSize());
        const auto* shown = dynamic_cast<const XDMBandComplex*>(band);
        const XDMBand* typed = shown && shown->GetInnerBand() ? shown->GetInnerBand() : band;
        text += XfnFormat("Data Type : %s", XfnGetDataTypeLabel(typed->GetDataType()));
    }
    text += XfnFormat("# of band(s) : %d\r\n", file.GetNumOfBands());
    text += XfnFormat("# of GCP Set(s) : %d\r\n", file.GetNumOfGCPSet());
    text += XfnFormat("# of ROI(s) : %d\r\n", file.GetNumOfROI());
    text += XfnFormat("# of Class(s) : %d\r\n", file.GetNumOfSIG());
    return text;
}

XString MakeCorner(const XSpatialReference& sr, double x, double y)
{
    if (sr.IsGeographic()) {
        const XString longitude = XfnFormat(x < 0.0 ? "%.8lf W" : "%.8lf E", std::fabs(x));
        return XfnFormat("%s, ", longitude) +
               XfnFormat(y < 0.0 ? "%.8lf S" : "%.8lf N", std::fabs(y));
    }
    return XfnFormat(sr.GetCoordType() == kPixelOriented ? "%.2lf, %.2lf" : "%.4lf, %.4lf", x, y);
}

XString MakePlaceLines(XRSFile& file)
{
    const XSpatialReference& sr = *file.GetSR();
    const int type = sr.GetCoordType();
    XString text = type == kPixelOriented        ? "Coordinate Type : Pixel oriented\r\n"
                   : type == kUnknownCoordinates ? "Coordinate Type : Unknown\r\n"
                                                 : "Coordinate Type : Map oriented\r\n";
    text += XfnFormat("Projection : %s\r\n", sr.GetProjectionName());
    text += XfnFormat("Datum : %s\r\n", sr.GetDatumName());
    double left = 0.0, right = 0.0, bottom = 0.0, top = 0.0;
    file.GetBoundRect(left, right, bottom, top);
    text += XfnFormat("Lower Left : %s\r\n", MakeCorner(sr, left, bottom));
    text += XfnFormat("Upper Right : %s\r\n", MakeCorner(sr, right, top));
    const char* const size = sr.IsGeographic()        ? "%.12lf x %.12lf"
                             : type == kPixelOriented ? "%.2lf x %.2lf"
                                                      : "%.4lf x %.4lf";
    const XString sizes = XfnFormat(size, file.GetXPixelSize(), file.GetYPixelSize());
    return text + XfnFormat("Pixel size : %s\r\n", sizes);
}

} // namespace

XString XFilePreviewModel::GetFilter(int isFull)
{
    static constexpr char kEveryFile[] = "All files(*.*)|*.*||";
    if (!isFull)
        return XString("XDM file(*.xdm)|*.XDM;|"
                       "GeoTIFF/TIFF file(*.tif,*.tiff)|*.tif;*.tiff|") +
               kEveryFile;
    return XString("All Supported Raster files|*.xdm;*.pbi;*.pei;*.bmp;*.jpg;*.tif;*.tiff;*.img;"
                   "*.dt0;*.dt1;*.dt2;|"
                   "XDM files(*.xdm)|*.XDM;|"
                   "BMP files(*.bmp)|*.bmp;|"
                   "JPEG files(*.jpg)|*.jpg;|"
                   "GeoTIFF/TIFF files(*.tif,*.tiff)|*.tif;*.tiff|"
                   "ERDAS IMAGINE img files(*.img)|*.img;|"
                   "DTED files(*.dt0, *.dt1, *.dt2)|*.dt0;*.dt1;*.dt2|") +
           kEveryFile;
}

XString XFilePreviewModel::GetExtension(const XString& path)
{
    return XfnGetFileExt(path).MakeUpper();
}

std::unique_ptr<XRSFile> XFilePreviewModel::Load(const XString& path, int mode, XThread* thread,
                                                 XString& error)
{
    auto file = std::make_unique<XRSFile>();
    if (!XRSFileIO::Open(path, file.get(), error, thread, mode >= kLevels, mode >= kEverything))
        return nullptr;
    return file;
}

int XFilePreviewModel::IsComplex(const XRSFile& file)
{
    for (int i = 0; i < file.GetNumOfBands(); ++i)
        if (XfnIsComplexType(file.GetBandAt(i)->GetDataType())) return 1;
    return 0;
}

XString XFilePreviewModel::MakeReport(XRSFile& file, std::int64_t fileBytes)
{
    XString text = "Image Info.\r\n";
    text += MakeImageLines(file);
    if (fileBytes >= 0) text += XfnFormat("File Size : %s\r\n", MakeSizeText(fileBytes));
    text += "Map Info.\r\n";
    text += MakePlaceLines(file);
    return text;
}

XString XFilePreviewModel::MakeSizeText(std::int64_t bytes)
{
    constexpr std::int64_t kKilo = 1024;
    const std::int64_t megabytes = bytes / (kKilo * kKilo);
    const XString size = megabytes >= 10 * kKilo ? XfnFormat("%I64d GB", megabytes / kKilo)
                         : megabytes >= 10       ? XfnFormat("%I64d MB", megabytes)
                                                 : XfnFormat("%I64d KB", bytes / kKilo);
    return size + XfnFormat(" (%I64d bytes)", bytes);
}
