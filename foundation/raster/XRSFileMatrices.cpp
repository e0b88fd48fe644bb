#include "foundation/raster/XJointWalk.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"

#include <new>
#include <utility>

namespace {

/// The bands that take part and their places in the file. Those that have no pixel with a value on
/// the first one's grid would leave no pixel that has a value in every band.
std::vector<int> ListParts(const XRSFile& file)
{
    std::vector<int> parts;
    for (int i = 0; i < file.GetNumOfBands(); ++i) {
        const XDMBand& band = *file.GetBandAt(i);
        if (XfnIsRealType(band.GetDataType()) && XfnIsSet(band.GetBandMin())) parts.push_back(i);
    }
    return parts;
}

} // namespace

int XRSFile::CalcMatrices(int step, XThread* thread, XString& message)
{
    message.Empty();
    try {
        const std::vector<int> parts = ListParts(*this);
        if (parts.empty() || step < 1) {
            message = step < 1 ? "The step between pixels must be 1 or more."
                               : "The file has no band with values of a real type.";
            return 0;
        }
        std::vector<XDMBand*> bands;
        for (const int part : parts)
            bands.push_back(GetBandAt(part));
        const std::vector<std::uint64_t> changes = ListChanges();
        XBlockRun run(thread);
        XJointWalk walk(bands);
        walk.SetStep(step);
        tagXRegionStatistics numbers;
        if (!walk.Run(run, numbers, message)) return 0;
        if (numbers.joint.count < 2 || !numbers.IsConsistent()) {
            message = numbers.joint.count < 2
                          ? "Fewer than two pixels have a value in every band."
                          : "The values of the bands are too large for their variances.";
            return 0;
        }
        const std::size_t all = m_bands.size();
        std::vector<double> covariance(all * all, kXNotSet);
        std::vector<double> correlation(all * all, kXNotSet);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            for (std::size_t j = 0; j < parts.size(); ++j) {
                const std::size_t place =
                    static_cast<std::size_t>(parts[i]) * all + static_cast<std::size_t>(parts[j]);
                const int a = static_cast<int>(i), b = static_cast<int>(j);
                covariance[place] = numbers.joint.GetCovariance(a, b);
                correlation[place] = numbers.joint.GetCorrelation(a, b);
            }
        }
        if (ListChanges() != changes) {
            message = "A band was changed while the matrices were computed.";
            return 0;
        }
        m_covariance = {std::move(covariance), changes};
        m_correlation = {std::move(correlation), changes};
        return 1;
    } catch (const std::bad_alloc&) {
        message = "There is not enough memory for the matrices of the file.";
        return 0;
    }
}
