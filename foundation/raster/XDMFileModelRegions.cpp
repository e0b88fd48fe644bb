#include "foundation/raster/XDMFileModel.h"
#include "foundation/raster/XROI.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSSIG.h"

#include <algorithm>
#include <memory>

// Regions and signatures: the model to records and back.

namespace {

void MakeNumbers(const tagXRegionStatistics& from, tagXDMFileRegion& out)
{
    out.calculated = 1;
    out.pixelCount = from.pointCount;
    for (const tagXRegionBand& band : from.bands) {
        tagXDMFileSample sample;
        if (band.moments.count > 0) {
            sample.pixelCount = band.moments.count;
            sample.min = band.moments.min;
            sample.max = band.moments.max;
            sample.mean = band.moments.mean;
            sample.squares = band.moments.squares;
        }
        sample.histogramLow = band.histogramMin;
        sample.histogramHigh = band.histogramMax;
        if (std::any_of(band.histogram.begin(), band.histogram.end(), [](auto n) { return n; }))
            sample.histogram.assign(band.histogram.begin(), band.histogram.end());
        out.bands.push_back(std::move(sample));
    }
    out.jointCount = from.joint.count;
    out.jointMeans = from.joint.means;
    out.coMoments = from.joint.coMoments;
}

tagXDMFileRegion MakeRegion(const XROI& from)
{
    tagXDMFileRegion out;
    out.name = from.GetName();
    out.comment = from.GetComment();
    out.type = from.GetType();
    out.color = from.GetColor();
    out.nullValue = from.GetNullValue();
    for (int i = 0; i < from.GetSize(); ++i) {
        double x = 0.0, y = 0.0, z = 0.0;
        from.GetAt(i, x, y, z);
        out.vertices.insert(out.vertices.end(), {x, y, z});
    }
    if (from.IsCalculated()) MakeNumbers(*from.GetStatistics(), out);
    return out;
}

tagXDMFileSignature MakeSignature(const XRSSIG& from, const XRSFile& file)
{
    tagXDMFileSignature out;
    out.name = from.GetName();
    out.comment = from.GetComment();
    out.color = from.GetColor();
    for (int i = 0; i < from.GetSize(); ++i) {
        int index = file.GetNumOfROI() - 1;
        while (index >= 0 && file.GetROISetAt(index) != from.GetAt(i))
            --index; // to -1: a region that the file does not list
        out.regions.push_back(index);
        if (index < 0) out.own.push_back(MakeRegion(*from.GetAt(i)));
    }
    return out;
}

std::unique_ptr<XROI> LoadRegion(const tagXDMFileRegion& record, XString& notes)
{
    auto out = std::make_unique<XROI>();
    out->SetType(record.type);
    out->SetName(record.name);
    out->SetComment(record.comment);
    out->SetColor(record.color);
    out->SetNullValue(record.nullValue);
    for (std::size_t i = 0; i + 2 < record.vertices.size(); i += 3)
        out->Add(record.vertices[i], record.vertices[i + 1], record.vertices[i + 2]);
    if (!record.calculated) return out;
    tagXRegionStatistics numbers;
    numbers.pointCount = record.pixelCount;
    for (const tagXDMFileSample& sample : record.bands) {
        tagXRegionBand& band = numbers.bands.emplace_back();
        if (sample.pixelCount > 0)
            band.moments = {sample.pixelCount, sample.min, sample.max, sample.mean, sample.squares};
        band.histogramMin = sample.histogramLow;
        band.histogramMax = sample.histogramHigh;
        if (sample.histogram.size() == band.histogram.size())
            std::copy(sample.histogram.begin(), sample.histogram.end(), band.histogram.begin());
    }
    numbers.joint = {record.jointCount, record.jointMeans, record.coMoments};
    if (!out->SetStatistics(std::move(numbers)))
        notes +=
            XfnFormat("The numbers of region %s make no sense and are not used. ", record.name);
    return out;
}

} // namespace

void XfnDescribeRegionsToXDM(const XRSFile& file, tagXDMFileInfo& out)
{
    for (int i = 0; i < file.GetNumOfROI(); ++i)
        out.regions.push_back(MakeRegion(*file.GetROISetAt(i)));
    for (int i = 0; i < file.GetNumOfSIG(); ++i)
        out.signatures.push_back(MakeSignature(*file.GetSIGSetAt(i), file));
}

XString XfnDescribeRegionsFromXDM(const tagXDMFileInfo& info, XRSFile& file)
{
    XString notes;
    for (const tagXDMFileRegion& record : info.regions)
        file.AddROISet(LoadRegion(record, notes).release());
    for (const tagXDMFileSignature& record : info.signatures) {
        auto signature = std::make_unique<XRSSIG>();
        signature->SetName(record.name);
        signature->SetComment(record.comment);
        signature->SetColor(record.color);
        auto own = record.own.begin(); // as many as there are -1
        for (const long long index : record.regions) {
            if (index < 0)
                signature->AddOwned(LoadRegion(*own++, notes));
            else
                signature->Add(file.GetROISetAt(static_cast<int>(index)));
        }
        file.AddSIGSet(signature.release());
    }
    return notes;
}
