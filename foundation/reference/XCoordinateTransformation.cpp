#include "foundation/reference/XCoordinateTransformation.h"

#include "foundation/base/XSentinels.h"
#include "foundation/reference/XMgrs.h"
#include "foundation/reference/XProjLibrary.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/reference/XSpatialReferenceState.h"

#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kModePlainZones = 1;
constexpr int kModeStandardZones = 2;

// Points are handed on in blocks, so that a long list needs no second copy of itself.
constexpr int kBlock = 4096;

bool IsUsable(double value)
{
    return std::isfinite(value) && XfnIsSet(value);
}

} // namespace

struct XCoordinateTransformation::Impl
{
    struct Destroyer
    {
        void operator()(OGRCoordinateTransformation* object) const
        {
            OGRCoordinateTransformation::DestroyCT(object);
        }
    };
    std::unique_ptr<OGRCoordinateTransformation, Destroyer> operation;
    double latitudeLimit = 0.0; // in the unit of a geographic source; 0 for none
    std::vector<int> success;   // kept from call to call, as most calls are for one point
    std::vector<char> bad;

    int TransformBlock(int count, double* x, double* y, double* z, int* ok);
};

int XCoordinateTransformation::Impl::TransformBlock(int count, double* x, double* y, double* z,
                                                    int* ok)
{
    success.assign(static_cast<std::size_t>(count), 0);
    // The library may carry what is not a number through unharmed, and a latitude beyond the pole
    // when there is nothing to compute: such points are taken out before and after.
    bad.assign(static_cast<std::size_t>(count), 0);
    for (int i = 0; i < count; ++i) {
        bad[i] = !IsUsable(x[i]) || !IsUsable(y[i]) || (z && !IsUsable(z[i])) ||
                 (latitudeLimit > 0.0 && std::fabs(y[i]) > latitudeLimit);
        if (bad[i]) {
            x[i] = HUGE_VAL;
            y[i] = HUGE_VAL;
        }
    }
    operation->Transform(count, x, y, z, success.data());
    int done = 0;
    for (int i = 0; i < count; ++i) {
        const bool good = !bad[i] && success[i] && IsUsable(x[i]) && IsUsable(y[i]);
        if (!good) {
            x[i] = kXNotSet;
            y[i] = kXNotSet;
            if (z) z[i] = kXNotSet;
        }
        if (ok) ok[i] = good ? 1 : 0;
        done += good ? 1 : 0;
    }
    return done;
}

XCoordinateTransformation::XCoordinateTransformation(const XSpatialReference& from,
                                                     const XSpatialReference& to)
    : m_impl(std::make_unique<Impl>())
{
    const XSpatialReferenceState* source = from.GetState();
    const XSpatialReferenceState* target = to.GetState();
    if (!source || !target) return;
    const XQuietErrors quiet;
    const auto sourceSystem = source->Clone();
    const auto targetSystem = target->Clone();
    if (!sourceSystem || !targetSystem) return;
    m_impl->operation.reset(
        OGRCreateCoordinateTransformation(sourceSystem.get(), targetSystem.get()));
    if (m_impl->operation) m_impl->operation->SetEmitErrors(false);
    if (from.IsGeographic() && from.GetAngularUnits() > 0.0) {
        constexpr double kQuarterTurn = 1.57079632679489662;
        constexpr double kRounding = 1.0 + 1e-12; // units are known to some 15 digits
        m_impl->latitudeLimit = kQuarterTurn / from.GetAngularUnits() * kRounding;
    }
}

XCoordinateTransformation::~XCoordinateTransformation() = default;

int XCoordinateTransformation::IsValid() const
{
    return m_impl->operation ? 1 : 0;
}

int XCoordinateTransformation::Transform(int count, double* x, double* y, double* z, int* ok)
{
    if (count <= 0 || !x || !y) return 0;
    if (!m_impl->operation) {
        std::fill_n(x, count, kXNotSet);
        std::fill_n(y, count, kXNotSet);
        if (ok) std::fill_n(ok, count, 0);
        return 0;
    }
    const XQuietErrors quiet;
    int done = 0;
    for (int first = 0; first < count; first += std::min(kBlock, count - first)) {
        const int size = std::min(kBlock, count - first);
        done += m_impl->TransformBlock(size, x + first, y + first, z ? z + first : nullptr,
                                       ok ? ok + first : nullptr);
    }
    return done > 0 ? 1 : 0;
}

int XCoordinateTransformation::TransformPt(double& x, double& y)
{
    return Transform(1, &x, &y);
}

int XCoordinateTransformation::WGP_TO_MGRS(double lon, double lat, XString& mgrs)
{
    constexpr int kMetreDigits = 5;
    return XfnGeoToMgrs(lon, lat, kMetreDigits, mgrs);
}

int XCoordinateTransformation::MGRS_TO_WGP(const XString& mgrs, double& lon, double& lat)
{
    return XfnMgrsToGeo(mgrs, lon, lat);
}

int XCoordinateTransformation::WGP_TO_UTM(double lon, double lat, int mode, double& easting,
                                          double& northing, int& zone)
{
    easting = kXNotSet;
    northing = kXNotSet;
    zone = 0;
    if (mode != kModePlainZones && mode != kModeStandardZones) return 0;
    tagXUtmPosition position;
    const auto zones = mode == kModePlainZones ? XUtmZones::PlainSixDeg : XUtmZones::Standard;
    if (!XfnGeoToUtm(lon, lat, position, zones) || position.zone == 0) return 0;
    easting = position.easting;
    northing = position.northing;
    zone = position.north ? position.zone : -position.zone;
    return 1;
}

int XCoordinateTransformation::MGRS_TO_UTM(const XString& mgrs, double& easting, double& northing,
                                           int& zone, int& north)
{
    tagXUtmPosition position;
    const int done = XfnMgrsToUtm(mgrs, position);
    easting = done ? position.easting : kXNotSet;
    northing = done ? position.northing : kXNotSet;
    zone = done ? position.zone : 0;
    north = done ? position.north : 0;
    return done;
}

std::unique_ptr<XCoordinateTransformation> XfnCreateCoordTrans(const XSpatialReference* from,
                                                               const XSpatialReference* to)
{
    if (!from || !to) return nullptr;
    auto transformation = std::make_unique<XCoordinateTransformation>(*from, *to);
    if (!transformation->IsValid()) return nullptr;
    return transformation;
}

void XfnCleanupCoord()
{
    // OSRCleanup would free what other threads hold: it is for the end of a program
    XfnDropProjContext();
}
