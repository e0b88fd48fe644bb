#include "foundation/raster/XDMFileMeta.h"

#include "foundation/raster/XDMFileFields.h"
#include "foundation/raster/XDMFileTile.h"

// The ids below are the format: one that was given is never used for anything else.

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileWarp>& warp)
{
    ar.Field(1, warp.terms);
    ar.Field(2, warp.centerX);
    ar.Field(3, warp.centerY);
    ar.Field(4, warp.scaleX);
    ar.Field(5, warp.scaleY);
    ar.Field(6, warp.xCoeff);
    ar.Field(7, warp.yCoeff);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileReference>& reference)
{
    ar.Field(1, reference.coordType);
    ar.Field(2, reference.wkt);
    ar.Field(3, reference.ulX);
    ar.Field(4, reference.ulY);
    ar.Field(5, reference.xPixelSize);
    ar.Field(6, reference.yPixelSize);
    ar.Field(7, reference.normalizedWorld);
    ar.Field(8, reference.useSensorModel);
    ar.Group(9, reference.worldToPixel);
    ar.Group(10, reference.pixelToWorld);
    ar.Field(11, reference.georeferenced);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileStatistics>& statistics)
{
    ar.Field(1, statistics.kind);
    ar.Field(2, statistics.min);
    ar.Field(3, statistics.max);
    ar.Field(4, statistics.mean);
    ar.Field(5, statistics.stdDev);
    ar.Field(6, statistics.pixelCount);
    ar.Field(7, statistics.histogramKind);
    ar.Field(8, statistics.histogramLow);
    ar.Field(9, statistics.histogramHigh);
    ar.Field(10, statistics.histogram);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileClass>& entry)
{
    ar.Field(1, entry.red);
    ar.Field(2, entry.green);
    ar.Field(3, entry.blue);
    ar.Field(4, entry.alpha);
    ar.Field(5, entry.pixelCount);
    ar.Field(6, entry.name);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileAcquisition>& taken)
{
    ar.Field(1, taken.date);
    ar.Field(2, taken.sensor);
    ar.Field(3, taken.sensorName);
    ar.Field(4, taken.centerX);
    ar.Field(5, taken.centerY);
    ar.Field(6, taken.cellSize);
    ar.Field(7, taken.gain);
    ar.Field(8, taken.bias);
    ar.Field(9, taken.sunAzimuth);
    ar.Field(10, taken.sunElevation);
    ar.Field(11, taken.incidenceAngle);
    ar.Field(12, taken.focalLength);
    ar.Field(13, taken.altitude);
    ar.Field(14, taken.sceneOrient);
    ar.Field(15, taken.waveLength);
    ar.Field(16, taken.bandWidth);
    ar.Field(17, taken.originCorner);
    ar.Field(18, taken.offset);
    ar.Field(19, taken.scale);
    ar.Field(20, taken.referencePoint);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileObject>& object)
{
    ar.Field(1, object.className);
    ar.Field(2, object.bytes);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileRadar>& radar)
{
    ar.Field(1, radar.beam);
    ar.Group(2, radar.sarParam);
    ar.Group(3, radar.sarSubset);
    ar.Group(4, radar.orbitInterpolater);
    ar.Group(5, radar.scanSensorParam);
    ar.Field(6, radar.lambda);
    ar.Field(7, radar.prf);
    ar.Field(8, radar.samplingFrequency);
    ar.Field(9, radar.carrierFrequency);
    ar.Field(10, radar.chirpBandWidth);
    ar.Field(11, radar.chirpDuration);
    ar.Field(12, radar.apertureTime);
    ar.Field(13, radar.antennaLength);
    ar.Field(14, radar.squintAngle);
    ar.Field(15, radar.chirpDirection);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileGCP>& point)
{
    ar.Field(1, point.name);
    ar.Field(2, point.imageX);
    ar.Field(3, point.imageY);
    ar.Field(4, point.refX);
    ar.Field(5, point.refY);
    ar.Field(6, point.refZ);
    ar.Field(7, point.use);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileGCPSet>& set)
{
    ar.Field(1, set.name);
    ar.Field(2, set.description);
    ar.Field(3, set.coordType);
    ar.Field(4, set.wkt);
    ar.List(5, set.points);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileSample>& sample)
{
    ar.Field(1, sample.pixelCount);
    ar.Field(2, sample.min);
    ar.Field(3, sample.max);
    ar.Field(4, sample.mean);
    ar.Field(5, sample.squares);
    ar.Field(6, sample.histogramLow);
    ar.Field(7, sample.histogramHigh);
    ar.Field(8, sample.histogram);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileRegion>& region)
{
    ar.Field(1, region.name);
    ar.Field(2, region.comment);
    ar.Field(3, region.type);
    ar.Field(4, region.color);
    ar.Field(5, region.nullValue);
    ar.Field(6, region.vertices);
    ar.Field(7, region.calculated);
    ar.Field(8, region.pixelCount);
    ar.List(9, region.bands);
    ar.Field(10, region.jointCount);
    ar.Field(11, region.jointMeans);
    ar.Field(12, region.coMoments);
}

template <class Ar>
void XfnVisit(Ar& ar, typename Ar::template Record<tagXDMFileSignature>& signature)
{
    ar.Field(1, signature.name);
    ar.Field(2, signature.comment);
    ar.Field(3, signature.color);
    ar.Field(4, signature.regions);
    ar.List(5, signature.own);
}

namespace {

template <class Ar>
void VisitBand(Ar& ar, typename Ar::template Record<tagXDMFileBand>& band,
               typename Ar::template Record<tagXDMFileBandLayout>& layout)
{
    ar.Field(1, band.name);
    ar.Field(2, band.description);
    ar.Field(3, band.id);
    ar.Field(4, band.dataType);
    ar.Field(5, band.bandType);
    ar.Field(6, band.colorInterpretation);
    ar.Field(7, band.nullValue);
    ar.Field(8, band.compression);
    ar.Field(9, layout.levels);
    ar.Field(10, layout.fill);
}

template <class Ar>
void VisitBandBlock(Ar& ar, XDMFileBlock type, typename Ar::template Record<tagXDMFileBand>& band)
{
    switch (type) {
    case XDMFileBlock::Reference:
        return XfnVisit(ar, band.reference);
    case XDMFileBlock::Statistics:
        return XfnVisit(ar, band.statistics);
    case XDMFileBlock::Acquisition:
        return XfnVisit(ar, band.acquisition);
    case XDMFileBlock::Radar:
        return XfnVisit(ar, band.radar);
    case XDMFileBlock::Classes:
        ar.List(1, band.classes);
        ar.Field(2, band.isColorTable);
        return;
    default:
        return;
    }
}

template <class Ar>
void VisitFileBlock(Ar& ar, XDMFileBlock type, typename Ar::template Record<tagXDMFileInfo>& info)
{
    switch (type) {
    case XDMFileBlock::File:
        ar.Field(1, info.name);
        ar.Field(2, info.description);
        ar.Field(3, info.version);
        ar.Field(4, info.threshold1);
        ar.Field(5, info.cryptoValidationInfo);
        ar.Field(6, info.headerBands);
        return;
    case XDMFileBlock::GCPSets:
        return ar.List(1, info.gcpSets);
    case XDMFileBlock::Regions:
        return ar.List(1, info.regions);
    case XDMFileBlock::Signatures:
        return ar.List(1, info.signatures);
    case XDMFileBlock::RadarScene:
        return ar.Group(1, info.radarScene);
    case XDMFileBlock::Matrices:
        ar.Field(1, info.correlation);
        ar.Field(2, info.covariance);
        return;
    default:
        return;
    }
}

int IsWithinLimit(const XDMFileFieldWriter& writer, const std::vector<unsigned char>& out)
{
    return !writer.IsTooLong() && out.size() <= kXDMFileMaxBlockBytes;
}

/// Drops the bytes of records that are as constructed. Bytes are compared, not records: -0.0 and
/// NaN must come back as they are.
template <class Visit>
void DropAsConstructed(std::vector<unsigned char>& out, Visit visit)
{
    std::vector<unsigned char> nothing;
    XDMFileFieldWriter writer(nothing);
    visit(writer);
    if (out == nothing) out.clear();
}

} // namespace

int XfnEncodeXDMFileBlock(XDMFileBlock type, const tagXDMFileInfo& info,
                          std::vector<unsigned char>& out)
{
    out.clear();
    XDMFileFieldWriter writer(out);
    VisitFileBlock(writer, type, info);
    if (type != XDMFileBlock::File) {
        DropAsConstructed(
            out, [&](XDMFileFieldWriter& ar) { VisitFileBlock(ar, type, tagXDMFileInfo()); });
    }
    return IsWithinLimit(writer, out);
}

int XfnEncodeXDMFileBandBlock(XDMFileBlock type, const tagXDMFileBand& band,
                              std::vector<unsigned char>& out)
{
    out.clear();
    XDMFileFieldWriter writer(out);
    if (type == XDMFileBlock::Band) {
        tagXDMFileBandLayout layout;
        for (const tagXDMFileLevel& level : band.levels) {
            layout.levels.insert(layout.levels.end(),
                                 {level.width, level.height, level.tileWidth, level.tileHeight});
        }
        const auto fill = XfnGetXDMFileFill(band.dataType, band.nullValue);
        layout.fill.assign(fill.begin(), fill.begin() + XfnGetXDMFileSampleSize(band.dataType));
        VisitBand(writer, band, layout);
    } else {
        VisitBandBlock(writer, type, band);
        DropAsConstructed(
            out, [&](XDMFileFieldWriter& ar) { VisitBandBlock(ar, type, tagXDMFileBand()); });
    }
    return IsWithinLimit(writer, out);
}

const char* XfnDecodeXDMFileBlock(XDMFileBlock type, const unsigned char* bytes, std::size_t count,
                                  tagXDMFileInfo& info)
{
    XDMFileFieldReader reader(bytes, count);
    if (!reader.GetFault()) VisitFileBlock(reader, type, info);
    return reader.GetFault();
}

const char* XfnDecodeXDMFileBandBlock(XDMFileBlock type, const unsigned char* bytes,
                                      std::size_t count, tagXDMFileBand& band,
                                      std::array<unsigned char, 16>& fill)
{
    XDMFileFieldReader reader(bytes, count);
    if (reader.GetFault()) return reader.GetFault();
    if (type != XDMFileBlock::Band) {
        VisitBandBlock(reader, type, band);
        return reader.GetFault();
    }
    tagXDMFileBandLayout layout;
    VisitBand(reader, band, layout);
    if (reader.GetFault()) return reader.GetFault();
    const std::size_t sides = layout.levels.size();
    if (sides % 4 != 0 || sides > 4 * static_cast<std::size_t>(kXDMFileMaxLevels)) {
        return "holds a table of levels that is none";
    }
    band.levels.resize(sides / 4);
    for (std::size_t i = 0; i < sides; ++i) {
        const long long side = layout.levels[i];
        if (!std::in_range<int>(side)) return "holds a size that is too large";
        tagXDMFileLevel& level = band.levels[i / 4];
        int* const fields[] = {&level.width, &level.height, &level.tileWidth, &level.tileHeight};
        *fields[i % 4] = static_cast<int>(side);
    }
    if (layout.fill.size() != static_cast<std::size_t>(XfnGetXDMFileSampleSize(band.dataType))) {
        return "holds no proper sample for empty tiles";
    }
    std::copy(layout.fill.begin(), layout.fill.end(), fill.begin());
    return nullptr;
}
