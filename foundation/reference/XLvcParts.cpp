#include "foundation/reference/XLvcParts.h"

#include "foundation/reference/XProjLibrary.h"
#include "foundation/reference/XProjectionMethods.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/reference/XSpatialReferenceState.h"

#include <ogr_spatialref.h>
#include <proj.h>
#include <proj_experimental.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

namespace {

constexpr double kDegree = 0.017453292519943295;
constexpr int kUnitDegreeMinuteSecond = 9108;
constexpr int kUnitDegree = 9122;

int ReadEpsgCode(const PJ* object)
{
    const char* authority = proj_get_id_auth_name(object, 0);
    const char* code = proj_get_id_code(object, 0);
    if (!authority || !code || std::strcmp(authority, "EPSG") != 0) return 0;
    return std::atoi(code);
}

// The code an object states, else that of the only or best match in the database.
int FindEpsgCode(const PJ* object)
{
    if (const int stated = ReadEpsgCode(object)) return stated;
    int* confidences = nullptr;
    PJ_OBJ_LIST* list = proj_identify(XfnProjContext(), object, "EPSG", nullptr, &confidences);
    int code = 0;
    constexpr int kSure = 90;
    if (list && proj_list_get_count(list) > 0 && confidences && confidences[0] >= kSure) {
        const XProjObject match(proj_list_get(XfnProjContext(), list, 0));
        if (match) code = ReadEpsgCode(match.get());
    }
    proj_int_list_destroy(confidences);
    proj_list_destroy(list);
    return code;
}

// An ellipsoid has no search of its own: the one of the same size among all of the database.
int FindEllipsoidCode(const PJ* ellipsoid)
{
    if (const int stated = ReadEpsgCode(ellipsoid)) return stated;
    PJ_CONTEXT* context = XfnProjContext();
    constexpr int kDeprecatedToo = 1;
    PROJ_STRING_LIST codes =
        proj_get_codes_from_database(context, "EPSG", PJ_TYPE_ELLIPSOID, kDeprecatedToo);
    int found = 0;
    for (int i = 0; codes && codes[i] && found == 0; ++i) {
        const int code = std::atoi(codes[i]);
        const XProjObject candidate = XfnProjFromCode(code, XProjCategory::Ellipsoid);
        if (candidate && proj_is_equivalent_to(candidate.get(), ellipsoid, PJ_COMP_EQUIVALENT)) {
            found = code;
        }
    }
    proj_string_list_destroy(codes);
    return found;
}

double ToDegrees(double value, double factor)
{
    return std::fabs(factor - kDegree) < 1e-15 ? value : value * factor / kDegree;
}

PJ_CARTESIAN_CS_2D_TYPE AxesOf(const tagXProjectionMethod& method, const double* parameters)
{
    constexpr int kTransverseMercatorSouth = 9808;
    constexpr int kPolarMethods[] = {9810, 9829};          // stereographic, variants A and B
    constexpr int kPolarWhenCentredThere[] = {9820, 1027}; // azimuthal equal area
    const auto isIn = [&method](const auto& codes) {
        return std::find(std::begin(codes), std::end(codes), method.code) != std::end(codes);
    };
    if (method.code == kTransverseMercatorSouth) return PJ_CART2D_WESTING_SOUTHING;
    const double latitude = parameters[0];
    if (isIn(kPolarMethods) || (isIn(kPolarWhenCentredThere) && std::fabs(latitude) == 90.0)) {
        // all directions on the map of a pole lead away from it
        return latitude > 0.0 ? PJ_CART2D_NORTH_POLE_EASTING_SOUTH_NORTHING_SOUTH
                              : PJ_CART2D_SOUTH_POLE_EASTING_NORTH_NORTHING_NORTH;
    }
    return PJ_CART2D_EASTING_NORTHING;
}

XProjObject CreateConversion(const tagXProjectionMethod& method, const double* parameters)
{
    PJ_PARAM_DESCRIPTION list[7] = {};
    std::string codes[7];
    int count = 0;
    for (const auto& parameter : method.parameters) {
        if (parameter.code == 0) break;
        auto& entry = list[count];
        codes[count] = std::to_string(parameter.code);
        entry.name = parameter.label;
        entry.auth_name = "EPSG";
        entry.code = codes[count].c_str();
        entry.value = parameters[count];
        switch (parameter.quantity) {
        case XProjectionQuantity::Angle:
            entry.unit_name = "degree";
            entry.unit_conv_factor = kDegree;
            entry.unit_type = PJ_UT_ANGULAR;
            break;
        case XProjectionQuantity::Length:
            entry.unit_name = "metre";
            entry.unit_conv_factor = 1.0;
            entry.unit_type = PJ_UT_LINEAR;
            break;
        default:
            entry.unit_name = "unity";
            entry.unit_conv_factor = 1.0;
            entry.unit_type = PJ_UT_SCALE;
        }
        ++count;
    }
    const std::string code = std::to_string(method.code);
    return XProjObject(proj_create_conversion(XfnProjContext(), method.name, nullptr, nullptr,
                                              method.name, "EPSG", code.c_str(), count, list));
}

struct Unit
{
    std::string name;
    double factor = 0.0;
};

bool FindUnit(int code, bool wantAngle, Unit& unit)
{
    int isAngle = 0;
    if (!XfnGetUnitFactor(code, unit.factor, &isAngle) || (isAngle != 0) != wantAngle) return false;
    const char* name = nullptr;
    const std::string text = std::to_string(code);
    proj_uom_get_info_from_database(XfnProjContext(), "EPSG", text.c_str(), &name, nullptr,
                                    nullptr);
    unit.name = name ? name : "";
    return true;
}

XProjObject CreateGeographic(int gcsCode, int unitCode)
{
    XProjObject system = XfnProjFromCode(gcsCode, XProjCategory::System);
    Unit unit;
    if (!system || proj_get_type(system.get()) != PJ_TYPE_GEOGRAPHIC_2D_CRS ||
        !FindUnit(unitCode, true, unit)) {
        return nullptr;
    }
    const std::string code = std::to_string(unitCode);
    return XProjObject(proj_crs_alter_cs_angular_unit(
        XfnProjContext(), system.get(), unit.name.c_str(), unit.factor, "EPSG", code.c_str()));
}

XProjObject CreateProjected(int unitCode, int sourceGcs, int methodCode, const double* parameters)
{
    const tagXProjectionMethod* method = XfnFindProjectionMethod(methodCode);
    const XProjObject source = XfnProjFromCode(sourceGcs, XProjCategory::System);
    Unit unit;
    if (!method || !source || proj_get_type(source.get()) != PJ_TYPE_GEOGRAPHIC_2D_CRS ||
        !FindUnit(unitCode, false, unit)) {
        return nullptr;
    }
    PJ_CONTEXT* context = XfnProjContext();
    const XProjObject conversion = CreateConversion(*method, parameters);
    const XProjObject axes(
        proj_create_cartesian_2D_cs(context, AxesOf(*method, parameters), nullptr, 0.0));
    if (!conversion || !axes) return nullptr;
    const std::string name = std::string(proj_get_name(source.get())) + " / " + method->name;
    const XProjObject metric(proj_create_projected_crs(context, name.c_str(), source.get(),
                                                       conversion.get(), axes.get()));
    if (!metric) return nullptr;
    const std::string code = std::to_string(unitCode);
    return XProjObject(proj_crs_alter_cs_linear_unit(context, metric.get(), unit.name.c_str(),
                                                     unit.factor, "EPSG", code.c_str()));
}

// Parameters that the method cannot work with show only when the computation is set up.
bool CanProject(const PJ* system)
{
    PJ_CONTEXT* context = XfnProjContext();
    const XProjObject conversion(proj_crs_get_coordoperation(context, system));
    const char* steps =
        conversion ? proj_as_proj_string(context, conversion.get(), PJ_PROJ_5, nullptr) : nullptr;
    return steps && XProjObject(proj_create(context, steps)) != nullptr;
}

XProjObject ParseSystem(const XSpatialReferenceState& state)
{
    XProjObject system(proj_create(XfnProjContext(), state.GetWkt2().c_str()));
    if (system && proj_get_type(system.get()) == PJ_TYPE_BOUND_CRS) {
        system.reset(proj_get_source_crs(XfnProjContext(), system.get()));
    }
    return system;
}

} // namespace

int XfnReadProjection(const PJconsts* system, tagXLvcParts& parts)
{
    PJ_CONTEXT* context = XfnProjContext();
    if (!system || proj_get_type(system) != PJ_TYPE_PROJECTED_CRS) return 0;
    const XProjObject conversion(proj_crs_get_coordoperation(context, system));
    const char* methodCode = nullptr;
    if (!conversion || !proj_coordoperation_get_method_info(context, conversion.get(), nullptr,
                                                            nullptr, &methodCode)) {
        return 0;
    }
    const tagXProjectionMethod* method =
        methodCode ? XfnFindProjectionMethod(std::atoi(methodCode)) : nullptr;
    if (!method) return 0;
    parts.method = method->code;
    for (double& value : parts.parameters)
        value = 0.0;

    const int count = proj_coordoperation_get_param_count(context, conversion.get());
    for (int i = 0; i < count; ++i) {
        const char* code = nullptr;
        double value = 0.0;
        double factor = 1.0;
        if (!proj_coordoperation_get_param(context, conversion.get(), i, nullptr, nullptr, &code,
                                           &value, nullptr, &factor, nullptr, nullptr, nullptr,
                                           nullptr) ||
            !code) {
            continue;
        }
        for (std::size_t slot = 0; slot < std::size(method->parameters); ++slot) {
            const auto& parameter = method->parameters[slot];
            if (parameter.code == 0 || parameter.code != std::atoi(code)) continue;
            parts.parameters[slot] = parameter.quantity == XProjectionQuantity::Angle
                                         ? ToDegrees(value, factor)
                                         : value * factor;
        }
    }
    return 1;
}

int XfnReadGeography(const PJconsts* system, tagXLvcParts& parts)
{
    if (!system) return 0;
    PJ_CONTEXT* context = XfnProjContext();
    const XProjObject geodetic(proj_crs_get_geodetic_crs(context, system));
    if (!geodetic) return 0;
    parts.gcsCode = FindEpsgCode(geodetic.get());
    const XProjObject ellipsoid(proj_get_ellipsoid(context, geodetic.get()));
    parts.ellipsoidCode = ellipsoid ? FindEllipsoidCode(ellipsoid.get()) : 0;
    return 1;
}

int XSpatialReference::importFromLVC(int gcsCode, int unitCode, int sourceGcs, int method,
                                     double p1, double p2, double p3, double p4, double p5,
                                     double p6, double p7)
{
    const double parameters[7] = {p1, p2, p3, p4, p5, p6, p7};
    for (const double value : parameters) {
        if (!std::isfinite(value)) return Take(nullptr);
    }
    XProjObject system = gcsCode != 0 ? CreateGeographic(gcsCode, unitCode)
                                      : CreateProjected(unitCode, sourceGcs, method, parameters);
    if (!system || (gcsCode == 0 && !CanProject(system.get()))) return Take(nullptr);
    const char* const options[] = {"MULTILINE=NO", nullptr};
    const char* wkt = proj_as_wkt(XfnProjContext(), system.get(), PJ_WKT2_2019, options);
    return wkt ? importFromWkt(XString(wkt)) : Take(nullptr);
}

int XSpatialReference::exportToGcsLVC(int* gcsCode, int* unitCode, int* ellipsoidCode) const
{
    if (!IsGeographic()) return 0;
    tagXLvcParts parts;
    if (!XfnReadGeography(ParseSystem(*m_state).get(), parts)) return 0;
    if (gcsCode) *gcsCode = parts.gcsCode;
    if (unitCode) *unitCode = GetUnitCode();
    if (ellipsoidCode) *ellipsoidCode = parts.ellipsoidCode;
    return 1;
}

int XSpatialReference::exportToPcsLVC(int* unitCode, int* sourceGcs, int* method,
                                      int* ellipsoidCode, double* parameters) const
{
    if (!IsProjected()) return 0;
    const XProjObject system = ParseSystem(*m_state);
    tagXLvcParts parts;
    if (!XfnReadProjection(system.get(), parts) || !XfnReadGeography(system.get(), parts)) return 0;
    if (unitCode) *unitCode = GetUnitCode();
    if (sourceGcs) *sourceGcs = parts.gcsCode;
    if (method) *method = parts.method;
    if (ellipsoidCode) *ellipsoidCode = parts.ellipsoidCode;
    if (parameters) std::memcpy(parameters, parts.parameters, sizeof parts.parameters);
    return 1;
}
