#include "foundation/raster/XDMFileModel.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XException.h"
#include "foundation/base/XMemFile.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XStoredObject.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

// ---- model to records ----

tagXDMFileWarp ToRecord(const XWarp2D& warp)
{
    const tagXWarpPolynomial& p = warp.GetPolynomial();
    return {p.terms, p.centerX, p.centerY, p.scaleX, p.scaleY, p.xCoeff, p.yCoeff};
}

XString GetWkt(const XSpatialReference& sr)
{
    XString wkt;
    if (!sr.IsEmpty() && !sr.exportToWkt(wkt)) wkt.Empty();
    return wkt;
}

tagXDMFileReference MakeReference(const XDMBand& band)
{
    tagXDMFileReference out;
    const XBandGeometry& geometry = band.GetGeometry();
    out.coordType = band.GetSR()->GetCoordType();
    out.wkt = GetWkt(*band.GetSR());
    out.normalizedWorld = band.IsNormalizedWorld() != 0;
    out.useSensorModel = band.GetUseSensorModel() != 0;
    if (!geometry.IsGeoreferenced()) return out;
    out.georeferenced = 1;
    out.ulX = geometry.GetULX();
    out.ulY = geometry.GetULY();
    out.xPixelSize = geometry.GetXPixelSize();
    out.yPixelSize = geometry.GetYPixelSize();
    if (geometry.IsNorthUp()) return out;
    out.worldToPixel = ToRecord(geometry.GetWorldToPixel());
    out.pixelToWorld = ToRecord(geometry.GetPixelToWorld());
    return out;
}

tagXDMFileStatistics MakeStatistics(const tagXBandStatistics& from)
{
    const auto kindOf = [](int isEstimated) {
        return isEstimated ? XDMFileStatisticsKind::Estimated : XDMFileStatisticsKind::Exact;
    };
    tagXDMFileStatistics out;
    if (from.IsSet()) {
        out.kind = kindOf(from.isEstimated);
        out.min = from.min;
        out.max = from.max;
        out.mean = from.mean;
        out.stdDev = from.stdDev;
    }
    out.pixelCount = std::max(from.count, 0LL);
    if (from.hasHistogram) {
        out.histogramKind = kindOf(from.isHistogramEstimated);
        out.histogramLow = from.min;
        out.histogramHigh = from.max;
        out.histogram.assign(from.histogram.begin(), from.histogram.end());
    }
    return out;
}

tagXDMFileAcquisition MakeAcquisition(const XBandAcquisition& from)
{
    tagXDMFileAcquisition out;
    out.date = from.GetBandDate();
    out.sensor = from.GetBandSensor();
    out.sensorName = from.GetBandSensorName();
    out.centerX = from.GetCenterX();
    out.centerY = from.GetCenterY();
    out.cellSize = from.GetCellSize();
    out.gain = from.GetGain();
    out.bias = from.GetBias();
    out.sunAzimuth = from.GetSunAzimuth();
    out.sunElevation = from.GetSunElevation();
    out.incidenceAngle = from.GetIncidenceAngle();
    out.focalLength = from.GetFocalLength();
    out.altitude = from.GetAltitude();
    out.sceneOrient = from.GetSceneOrient();
    out.waveLength = from.GetWaveLength();
    out.bandWidth = from.GetBandWidth();
    out.originCorner = from.GetOriginCorner();
    out.offset = from.GetOffset();
    out.scale = from.GetScale();
    const tagXVector3& point = from.GetReferencePoint();
    out.referencePoint = {point.x, point.y, point.z};
    return out;
}

int StoreObject(const std::shared_ptr<XObject>& object, tagXDMFileObject& out, XString& reason)
{
    if (!object) return 1;
    const auto* stored = dynamic_cast<const XStoredObject*>(object.get());
    out.className =
        stored ? stored->GetClassName() : XString(object->GetRuntimeClass()->m_lpszClassName);
    XMemFile memory;
    try {
        XArchive archive(&memory, XArchive::kStore);
        object->Serialize(archive);
        archive.Close();
    } catch (XException& e) {
        e.Delete();
        reason = "The record " + out.className + " cannot be stored";
        return 0;
    }
    out.bytes.assign(memory.GetBuffer(), memory.GetBuffer() + memory.GetLength());
    return 1;
}

int MakeRadar(const XBandRadar& from, tagXDMFileRadar& out, XString& reason)
{
    out.beam = from.GetSarBeam();
    out.lambda = from.GetLambda();
    out.prf = from.GetPRF();
    out.samplingFrequency = from.GetSamplingFrequency();
    out.carrierFrequency = from.GetCarrierFrequency();
    out.chirpBandWidth = from.GetChirpBandWidth();
    out.chirpDuration = from.GetChirpDuration();
    out.apertureTime = from.GetApertureTime();
    out.antennaLength = from.GetAntennaLength();
    out.squintAngle = from.GetSquintAngle();
    out.chirpDirection = from.IsUpChirp() ? 1 : from.IsDownChirp() ? -1 : 0;
    return StoreObject(from.GetSarParam(), out.sarParam, reason) &&
           StoreObject(from.GetSarsubset(), out.sarSubset, reason) &&
           StoreObject(from.GetOrbitInterpolater(), out.orbitInterpolater, reason) &&
           StoreObject(from.GetScanSensorParam(), out.scanSensorParam, reason);
}

// ---- records to model ----

int FromRecord(const tagXDMFileWarp& record, XWarp2D& warp)
{
    tagXWarpPolynomial p;
    p.terms = record.terms;
    p.centerX = record.centerX;
    p.centerY = record.centerY;
    p.scaleX = record.scaleX;
    p.scaleY = record.scaleY;
    p.xCoeff = record.xCoeff;
    p.yCoeff = record.yCoeff;
    return warp.SetPolynomial(p);
}

void TakeWkt(const XString& wkt, int coordType, XSpatialReference& sr, XString& notes)
{
    sr = XSpatialReference();
    if (!wkt.IsEmpty() && !sr.importFromWkt(wkt)) {
        sr = XSpatialReference();
        notes += "Its spatial reference is not understood and not used. ";
    }
    sr.SetCoordType(coordType);
}

void TakeReference(const tagXDMFileReference& record, XDMBand& band, XString& notes)
{
    TakeWkt(record.wkt, record.coordType, *band.GetSR(), notes);
    band.SetNormalizedWorld(record.normalizedWorld);
    band.SetUseSensorModel(record.useSensorModel);
    if (!record.georeferenced) return;
    XBandGeometry geometry;
    int isGood = 1;
    if (record.worldToPixel.terms == 0 && record.pixelToWorld.terms == 0) {
        isGood = geometry.SetNorthUp(record.ulX, record.ulY, record.xPixelSize, record.yPixelSize);
    } else {
        XWarp2D worldToPixel, pixelToWorld;
        isGood = FromRecord(record.worldToPixel, worldToPixel) &&
                 FromRecord(record.pixelToWorld, pixelToWorld) &&
                 geometry.SetWarps(worldToPixel, pixelToWorld, record.ulX, record.ulY,
                                   record.xPixelSize, record.yPixelSize);
    }
    if (isGood) {
        band.SetGeometry(geometry);
    } else {
        notes += "Its georeference makes no sense and is not used. ";
        *band.GetSR() = XSpatialReference();
        band.GetSR()->SetCoordType(1);
    }
}

bool IsSame(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

void TakeStatistics(const tagXDMFileStatistics& record, XDMBand& band)
{
    tagXBandStatistics out;
    out.count = record.pixelCount;
    if (record.kind != XDMFileStatisticsKind::None) {
        const bool isInOrder = XfnIsSet(record.min) && XfnIsSet(record.max) &&
                               record.min <= record.max && !(record.mean < record.min) &&
                               !(record.mean > record.max && XfnIsSet(record.mean)) &&
                               !(record.stdDev < 0.0);
        if (!isInOrder) return;
        out.min = record.min;
        out.max = record.max;
        out.mean = record.mean;
        out.stdDev = record.stdDev;
        out.isEstimated = record.kind == XDMFileStatisticsKind::Estimated;
    }
    // bins over other limits would have to be counted anew, which the band does when it is asked
    const bool hasBins = record.histogramKind != XDMFileStatisticsKind::None &&
                         record.histogram.size() == out.histogram.size() &&
                         IsSame(record.histogramLow, out.min) &&
                         IsSame(record.histogramHigh, out.max);
    if (hasBins) {
        std::copy(record.histogram.begin(), record.histogram.end(), out.histogram.begin());
        out.hasHistogram = 1;
        out.isHistogramEstimated = record.histogramKind == XDMFileStatisticsKind::Estimated;
        if (!out.IsSet()) out.isEstimated = out.isHistogramEstimated;
    }
    if (hasBins || out.IsSet()) band.SetBandStatistics(out);
}

void TakeAcquisition(const tagXDMFileAcquisition& record, XBandAcquisition& out)
{
    out.SetBandDate(record.date);
    out.SetBandSensor(record.sensor);
    out.SetBandSensorName(record.sensorName);
    out.SetCenterX(record.centerX);
    out.SetCenterY(record.centerY);
    out.SetCellSize(record.cellSize);
    out.SetGain(record.gain);
    out.SetBias(record.bias);
    out.SetSunAzimuth(record.sunAzimuth);
    out.SetSunElevation(record.sunElevation);
    out.SetIncidenceAngle(record.incidenceAngle);
    out.SetFocalLength(record.focalLength);
    out.SetAltitude(record.altitude);
    out.SetSceneOrient(record.sceneOrient);
    out.SetWaveLength(record.waveLength);
    out.SetBandWidth(record.bandWidth);
    out.SetOriginCorner(record.originCorner);
    out.SetOffset(record.offset);
    out.SetScale(record.scale);
    out.SetReferencePoint(
        {record.referencePoint[0], record.referencePoint[1], record.referencePoint[2]});
}

std::shared_ptr<XObject> LoadObject(const tagXDMFileObject& record)
{
    if (record.className.IsEmpty()) return nullptr;
    return std::make_shared<XStoredObject>(record.className, record.bytes);
}

void TakeRadar(const tagXDMFileRadar& record, XBandRadar& out)
{
    out.SetSarBeam(record.beam);
    out.SetLambda(record.lambda);
    out.SetPRF(record.prf);
    out.SetSamplingFrequency(record.samplingFrequency);
    out.SetCarrierFrequency(record.carrierFrequency);
    out.SetChirpBandWidth(record.chirpBandWidth);
    out.SetChirpDuration(record.chirpDuration);
    out.SetApertureTime(record.apertureTime);
    out.SetAntennaLength(record.antennaLength);
    out.SetSquintAngle(record.squintAngle);
    if (record.chirpDirection > 0) out.SetUpChirp();
    if (record.chirpDirection < 0) out.SetDownChirp();
    out.SetSarParam(LoadObject(record.sarParam));
    out.SetSarsubset(LoadObject(record.sarSubset));
    out.SetOrbitInterpolater(LoadObject(record.orbitInterpolater));
    out.SetScanSensorParam(LoadObject(record.scanSensorParam));
}

} // namespace

int XfnDescribeToXDM(const XDMBand& band, tagXDMFileBand& out, XString& reason)
{
    out.name = band.GetBandName();
    out.description = band.GetBandDescription();
    out.id = band.GetID();
    out.dataType = band.GetDataType();
    out.bandType = band.GetBandType();
    out.colorInterpretation = band.GetColorInterpretation();
    out.nullValue = band.GetNullValue();
    out.reference = MakeReference(band);
    out.statistics = MakeStatistics(*band.GetStatistics());
    for (int i = 0; i < band.GetNumOfGIS(); ++i) {
        const tagXRSGIS& c = *band.GetGISAt(i);
        out.classes.push_back({c.red, c.green, c.blue, c.alpha, c.count, c.name});
    }
    out.isColorTable = band.HasColorTable();
    out.acquisition = MakeAcquisition(band);
    return MakeRadar(band, out.radar, reason);
}

int XfnDescribeToXDM(XRSFile& file, tagXDMFileInfo& out, XString& reason)
{
    const auto take = [&](const double* matrix, std::vector<double>& values) {
        const std::size_t n = static_cast<std::size_t>(file.GetNumOfBands());
        if (matrix) values.assign(matrix, matrix + n * n);
    };
    out.name = file.GetName();
    out.description = file.GetDescription();
    out.version = file.GetVersion();
    out.threshold1 = file.GetThreshold1();
    out.cryptoValidationInfo = file.GetCryptoVaildationInfo();
    take(file.GetCorrelationMatrix(), out.correlation);
    take(file.GetCovarianceMatrix(), out.covariance);
    int rgb[3];
    if (file.GetHeaderBands(rgb)) out.headerBands.assign(rgb, rgb + 3);
    for (int i = 0; i < file.GetNumOfGCPSet(); ++i) {
        const tagGCPSets& from = *file.GetGCPSetAt(i);
        tagXDMFileGCPSet set;
        set.name = from.name;
        set.description = from.description;
        set.coordType = from.sr.GetCoordType();
        set.wkt = GetWkt(from.sr);
        for (const tagXGCP& p : from.points)
            set.points.push_back({p.id, p.pixelX, p.pixelY, p.worldX, p.worldY, p.worldZ, p.use});
        out.gcpSets.push_back(std::move(set));
    }
    XfnDescribeRegionsToXDM(file, out);
    return StoreObject(file.GetRadarScene(), out.radarScene, reason);
}

XString XfnDescribeFromXDM(const tagXDMFileBand& record, int useStatistics, XDMBand& band)
{
    XString notes;
    band.SetBandName(record.name);
    band.SetBandDescription(record.description);
    band.SetID(record.id);
    band.SetBandType(record.bandType);
    band.SetColorInterpretation(record.colorInterpretation);
    band.SetNullValue(record.nullValue);
    band.SetCompressionInfo(record.compression != 0);
    TakeReference(record.reference, band, notes);
    std::vector<tagXRSGIS> classes;
    for (const tagXDMFileClass& c : record.classes)
        classes.push_back({c.red, c.green, c.blue, c.alpha, c.pixelCount, c.name});
    if (!classes.empty()) band.SetGISTable(std::move(classes), record.isColorTable);
    TakeAcquisition(record.acquisition, band);
    TakeRadar(record.radar, band);
    if (useStatistics) TakeStatistics(record.statistics, band);
    return notes.Trim();
}

void XfnDescribeFromXDM(const tagXDMFileInfo& info, XRSFile& file)
{
    file.SetName(info.name);
    file.SetDescription(info.description);
    file.SetVersion(info.version);
    file.SetThreshold1(info.threshold1);
    file.SetCryptoVaildationInfo(info.cryptoValidationInfo);
    if (!info.correlation.empty()) file.SetCorrelationMatrix(info.correlation.data());
    if (!info.covariance.empty()) file.SetCovarianceMatrix(info.covariance.data());
    if (info.headerBands.size() == 3) {
        int rgb[3];
        std::copy(info.headerBands.begin(), info.headerBands.end(), rgb); // within the bands
        file.SetHeaderBands(rgb);
    }
    for (const tagXDMFileGCPSet& record : info.gcpSets) {
        auto set = std::make_unique<tagGCPSets>();
        XString notes;
        set->name = record.name;
        set->description = record.description;
        TakeWkt(record.wkt, record.coordType, set->sr, notes);
        for (const tagXDMFileGCP& p : record.points)
            set->points.push_back({p.name, p.imageX, p.imageY, p.refX, p.refY, p.refZ, p.use != 0});
        file.AddGCPSet(set.release());
        if (!notes.IsEmpty())
            file.AddNote(XfnFormat("\"%s\": control points %s: %s", file.GetFilePath(), record.name,
                                   notes.Trim()));
    }
    XString notes = XfnDescribeRegionsFromXDM(info, file);
    if (!notes.IsEmpty()) file.AddNote(XfnFormat("\"%s\": %s", file.GetFilePath(), notes.Trim()));
    file.SetRadarScene(LoadObject(info.radarScene));
}
