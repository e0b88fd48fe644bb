#include "foundation/reference/XSpatialReferenceState.h"

#include "foundation/reference/XProjLibrary.h"
#include "foundation/reference/XProjectionMethods.h"

#include <cpl_conv.h>
#include <ogr_spatialref.h>
#include <proj.h>

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

// Below this confidence a match is a guess by name only.
constexpr int kMatchConfidence = 70; // what is found must be equivalent too

int ReadCode(const char* authority, const char* code)
{
    if (!authority || !code || std::strcmp(authority, "EPSG") != 0) return 0;
    int value = 0;
    const char* end = code + std::strlen(code);
    const auto result = std::from_chars(code, end, value);
    return result.ec == std::errc() && result.ptr == end && value > 0 ? value : 0;
}

// The system that has the coordinates: without the shift a bound one carries, without heights.
XProjObject HorizontalPart(XProjObject object)
{
    PJ_CONTEXT* context = XfnProjContext();
    while (object) {
        const PJ_TYPE type = proj_get_type(object.get());
        if (type == PJ_TYPE_BOUND_CRS) {
            object.reset(proj_get_source_crs(context, object.get()));
        } else if (type == PJ_TYPE_COMPOUND_CRS) {
            object.reset(proj_crs_get_sub_crs(context, object.get(), 0));
        } else {
            break;
        }
    }
    return object;
}

XProjObject WithoutShift(XProjObject object)
{
    if (object && proj_get_type(object.get()) == PJ_TYPE_BOUND_CRS) {
        object.reset(proj_get_source_crs(XfnProjContext(), object.get()));
    }
    return object;
}

bool AreEquivalent(const std::string& wkt1, const std::string& wkt2)
{
    PJ_CONTEXT* context = XfnProjContext();
    XProjObject a(proj_create(context, wkt1.c_str()));
    XProjObject b(proj_create(context, wkt2.c_str()));
    if (!a || !b) return false;
    // a shift to WGS 84 counts only when both systems bring one
    const bool bothBound =
        proj_get_type(a.get()) == PJ_TYPE_BOUND_CRS && proj_get_type(b.get()) == PJ_TYPE_BOUND_CRS;
    if (!bothBound) {
        a = WithoutShift(std::move(a));
        b = WithoutShift(std::move(b));
        if (!a || !b) return false;
    }
    // brings northing-easting systems to the order that our coordinates have
    XProjObject orderedA(proj_normalize_for_visualization(context, a.get()));
    XProjObject orderedB(proj_normalize_for_visualization(context, b.get()));
    return proj_is_equivalent_to(orderedA ? orderedA.get() : a.get(),
                                 orderedB ? orderedB.get() : b.get(),
                                 PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS) != 0;
}

XString DatumName(const PJ* system)
{
    XProjObject datum(proj_crs_get_datum_forced(XfnProjContext(), system));
    XString name(datum ? proj_get_name(datum.get()) : "");
    const int tail = name.Find(" ensemble");
    return tail > 0 ? name.Left(tail) : name;
}

int AngularUnitCode(const char* stated, double radians)
{
    if (const int code = stated ? ReadCode("EPSG", stated) : 0) return code;
    constexpr double kTolerance = 1e-11; // the digits that files give a degree differ below this
    if (std::fabs(radians - 0.0174532925199433) < kTolerance) return 9122;
    if (std::fabs(radians - 0.0157079632679490) < kTolerance) return 9105;
    if (std::fabs(radians - 1.0) < kTolerance) return 9101;
    return 0;
}

} // namespace

XSpatialReferenceState::XSpatialReferenceState(std::unique_ptr<OGRSpatialReference> system)
    : m_system(std::move(system))
{}

XSpatialReferenceState::~XSpatialReferenceState() = default;

std::string XSpatialReferenceState::ExportWkt2() const
{
    const XQuietErrors quiet;
    const char* const options[] = {"FORMAT=WKT2_2019", "MULTILINE=NO", nullptr};
    char* text = nullptr;
    std::string wkt;
    if (m_system->exportToWkt(&text, options) == OGRERR_NONE && text) wkt = text;
    CPLFree(text);
    return wkt;
}

std::string XSpatialReferenceState::GetWkt2() const
{
    const std::lock_guard lock(m_lock);
    return ExportWkt2();
}

std::unique_ptr<OGRSpatialReference> XSpatialReferenceState::Clone() const
{
    const std::lock_guard lock(m_lock);
    return std::unique_ptr<OGRSpatialReference>(m_system->Clone());
}

const XSpatialReferenceState::Details& XSpatialReferenceState::GetDetails() const
{
    const std::lock_guard lock(m_lock);
    if (!m_details) m_details = std::make_unique<const Details>(ReadDetails());
    return *m_details;
}

XSpatialReferenceState::Details XSpatialReferenceState::ReadDetails() const
{
    const XQuietErrors quiet;
    Details details;
    details.isProjected = m_system->IsProjected() != 0;
    details.isGeographic = m_system->IsGeographic() != 0;
    details.name = m_system->GetName();
    details.statedCode =
        ReadCode(m_system->GetAuthorityName(nullptr), m_system->GetAuthorityCode(nullptr));

    const char* unitName = nullptr;
    if (details.isProjected || details.isGeographic) {
        details.angularUnits = m_system->GetAngularUnits(&unitName);
    }
    if (details.isGeographic) {
        details.unit = unitName;
        details.unitCode =
            AngularUnitCode(m_system->GetAuthorityCode("GEOGCS|UNIT"), details.angularUnits);
    } else if (details.isProjected) {
        details.linearUnits = m_system->GetLinearUnits(&unitName);
        details.unit = unitName;
        const char* stated = m_system->GetAuthorityCode("PROJCS|UNIT");
        details.unitCode = stated ? ReadCode("EPSG", stated) : 0;
        if (details.unitCode == 0) details.unitCode = XfnGetLengthUnitCode(details.unit);
    }

    OGRErr failed = OGRERR_NONE;
    const double semiMajor = m_system->GetSemiMajor(&failed);
    if (failed == OGRERR_NONE) {
        details.semiMajor = semiMajor;
        const double inverse = m_system->GetInvFlattening(&failed);
        if (failed == OGRERR_NONE && inverse != 0.0) details.flattening = 1.0 / inverse;
    }

    const XProjObject system =
        HorizontalPart(XProjObject(proj_create(XfnProjContext(), ExportWkt2().c_str())));
    if (!system) return details;
    if (details.isProjected || details.isGeographic) details.datum = DatumName(system.get());
    if (details.isProjected) {
        XProjObject conversion(proj_crs_get_coordoperation(XfnProjContext(), system.get()));
        const char* method = nullptr;
        if (conversion && proj_coordoperation_get_method_info(XfnProjContext(), conversion.get(),
                                                              &method, nullptr, nullptr)) {
            details.method = method;
        }
    }
    return details;
}

int XSpatialReferenceState::IsSame(const XSpatialReferenceState& other) const
{
    if (this == &other) return 1;
    const std::string mine = GetWkt2();
    const std::string theirs = other.GetWkt2();
    if (mine.empty() || theirs.empty()) return 0;
    return mine == theirs || AreEquivalent(mine, theirs) ? 1 : 0;
}

int XSpatialReferenceState::FindCode() const
{
    if (const int stated = GetDetails().statedCode) return stated;
    const std::lock_guard lock(m_lock);
    if (m_foundCode >= 0) return m_foundCode;
    m_foundCode = 0;
    const XQuietErrors quiet;
    const std::string wkt = ExportWkt2();
    int count = 0;
    int* confidences = nullptr;
    OGRSpatialReferenceH* matches = m_system->FindMatches(nullptr, &count, &confidences);
    for (int i = 0; i < count && m_foundCode == 0; ++i) {
        const auto* match = OGRSpatialReference::FromHandle(matches[i]);
        const int code =
            ReadCode(match->GetAuthorityName(nullptr), match->GetAuthorityCode(nullptr));
        if (code == 0 || confidences[i] < kMatchConfidence) continue;
        const char* const options[] = {"FORMAT=WKT2_2019", nullptr};
        char* text = nullptr;
        if (match->exportToWkt(&text, options) == OGRERR_NONE && text && AreEquivalent(wkt, text)) {
            m_foundCode = code;
        }
        CPLFree(text);
    }
    OSRFreeSRSArray(matches);
    CPLFree(confidences);
    return m_foundCode;
}
