#include "foundation/reference/XProjectionMethods.h"

#include "foundation/reference/XLvcParts.h"
#include "foundation/reference/XProjLibrary.h"

#include <proj.h>

#include <array>
#include <cstring>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

struct MethodRow
{
    int code;
    const char* name;
    std::array<int, 7> parameters;
};

// The first 24 are offered to users, the commonest first; the others are read and built as well.
constexpr MethodRow kMethods[] = {
    {9807, "Transverse Mercator", {8801, 8802, 8805, 8806, 8807}},
    {9808, "Transverse Mercator (South Orientated)", {8801, 8802, 8805, 8806, 8807}},
    {9802, "Lambert Conic Conformal (2SP)", {8821, 8822, 8823, 8824, 8826, 8827}},
    {9801, "Lambert Conic Conformal (1SP)", {8801, 8802, 8805, 8806, 8807}},
    {9803, "Lambert Conic Conformal (2SP Belgium)", {8821, 8822, 8823, 8824, 8826, 8827}},
    {1051, "Lambert Conic Conformal (2SP Michigan)", {8821, 8822, 8823, 8824, 8826, 8827, 1038}},
    {9822, "Albers Equal Area", {8821, 8822, 8823, 8824, 8826, 8827}},
    {9804, "Mercator (variant A)", {8801, 8802, 8805, 8806, 8807}},
    {9805, "Mercator (variant B)", {8823, 8802, 8806, 8807}},
    {1024, "Popular Visualisation Pseudo Mercator", {8801, 8802, 8806, 8807}},
    {9812, "Hotine Oblique Mercator (variant A)", {8811, 8812, 8813, 8814, 8815, 8806, 8807}},
    {9815, "Hotine Oblique Mercator (variant B)", {8811, 8812, 8813, 8814, 8815, 8816, 8817}},
    {9809, "Oblique Stereographic", {8801, 8802, 8805, 8806, 8807}},
    {9810, "Polar Stereographic (variant A)", {8801, 8802, 8805, 8806, 8807}},
    {9829, "Polar Stereographic (variant B)", {8832, 8833, 8806, 8807}},
    {9820, "Lambert Azimuthal Equal Area", {8801, 8802, 8806, 8807}},
    {9818, "American Polyconic", {8801, 8802, 8806, 8807}},
    {9806, "Cassini-Soldner", {8801, 8802, 8806, 8807}},
    {9835, "Lambert Cylindrical Equal Area", {8823, 8802, 8806, 8807}},
    {1028, "Equidistant Cylindrical", {8823, 8802, 8806, 8807}},
    {1041, "Krovak (North Orientated)", {8811, 8833, 1036, 8818, 8819, 8806, 8807}},
    {9811, "New Zealand Map Grid", {8801, 8802, 8806, 8807}},
    {1078, "Equal Earth", {8802, 8806, 8807}},
    {1052, "Colombia Urban", {8801, 8802, 8806, 8807, 1039}},
    {1027, "Lambert Azimuthal Equal Area (Spherical)", {8801, 8802, 8806, 8807}},
    {9834, "Lambert Cylindrical Equal Area (Spherical)", {8823, 8802, 8806, 8807}},
    {1029, "Equidistant Cylindrical (Spherical)", {8823, 8802, 8806, 8807}},
    {9828, "Bonne (South Orientated)", {8801, 8802, 8806, 8807}},
};
constexpr int kOffered = kXProjectionTableSize - 1;
static_assert(std::size(kMethods) >= kOffered);

constexpr auto kAngle = XProjectionQuantity::Angle;
constexpr auto kLength = XProjectionQuantity::Length;
constexpr auto kScale = XProjectionQuantity::Scale;

constexpr tagXProjectionParameter kParameters[] = {
    {1036, "Co-latitude of cone axis", kAngle},
    {1038, "Ellipsoid scaling factor", kScale},
    {1039, "Projection plane origin height", kLength},
    {8801, "Latitude of natural origin", kAngle},
    {8802, "Longitude of natural origin", kAngle},
    {8805, "Scale factor at natural origin", kScale},
    {8806, "False easting", kLength},
    {8807, "False northing", kLength},
    {8811, "Latitude of projection centre", kAngle},
    {8812, "Longitude of projection centre", kAngle},
    {8813, "Azimuth of initial line", kAngle},
    {8814, "Angle from Rectified to Skew Grid", kAngle},
    {8815, "Scale factor on initial line", kScale},
    {8816, "Easting at projection centre", kLength},
    {8817, "Northing at projection centre", kLength},
    {8818, "Latitude of pseudo standard parallel", kAngle},
    {8819, "Scale factor on pseudo standard parallel", kScale},
    {8821, "Latitude of false origin", kAngle},
    {8822, "Longitude of false origin", kAngle},
    {8823, "Latitude of 1st standard parallel", kAngle},
    {8824, "Latitude of 2nd standard parallel", kAngle},
    {8826, "Easting at false origin", kLength},
    {8827, "Northing at false origin", kLength},
    {8832, "Latitude of standard parallel", kAngle},
    {8833, "Longitude of origin", kAngle},
};

tagXProjectionMethod Expand(const MethodRow& row)
{
    tagXProjectionMethod method;
    method.code = row.code;
    method.name = row.name;
    for (std::size_t i = 0; i < row.parameters.size(); ++i) {
        for (const auto& parameter : kParameters) {
            if (parameter.code == row.parameters[i]) method.parameters[i] = parameter;
        }
    }
    return method;
}

struct Tables
{
    tagXProjectionMethod offered[kXProjectionTableSize];
    std::vector<tagXProjectionMethod> rarer;

    Tables()
    {
        for (int i = 0; i < kOffered; ++i)
            offered[i] = Expand(kMethods[i]);
        offered[kOffered].name = "Geographic (no projection)";
        for (std::size_t i = kOffered; i < std::size(kMethods); ++i) {
            rarer.push_back(Expand(kMethods[i]));
        }
    }
};

const Tables& GetTables()
{
    static const Tables tables;
    return tables;
}

// Units of angle whose numbers are degrees, minutes and seconds in some packing.
bool IsSexagesimal(int code)
{
    return (code >= 9107 && code <= 9111) || (code >= 9115 && code <= 9121);
}

// Names in common use that the database does not know.
constexpr std::pair<const char*, int> kUnitAliases[] = {
    {"meter", 9001},
    {"meters", 9001},
    {"metres", 9001},
    {"m", 9001},
    {"feet", 9002},
    {"international foot", 9002},
    {"ft", 9002},
    {"foot us", 9003},
    {"us survey feet", 9003},
    {"foot survey us", 9003},
    {"kilometer", 9036},
    {"km", 9036},
    {"cold coast foot", 9094},
};

std::string NormalizeUnitName(std::string_view name)
{
    std::string text(name);
    for (char& ch : text) {
        if (ch == '_') ch = ' ';
        if (ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch - 'A' + 'a');
    }
    return text;
}

std::vector<std::pair<std::string, int>> ReadLengthUnits()
{
    std::vector<std::pair<std::string, int>> units;
    for (const auto& [name, code] : kUnitAliases)
        units.emplace_back(name, code);
    int count = 0;
    PROJ_UNIT_INFO** list =
        proj_get_units_from_database(XfnProjContext(), "EPSG", "linear", 1, &count);
    for (int i = 0; i < count; ++i) {
        units.emplace_back(NormalizeUnitName(list[i]->name), std::stoi(list[i]->code));
    }
    proj_unit_list_destroy(list);
    return units;
}

} // namespace

const tagXProjectionMethod* XfnGetProjectionTable()
{
    return GetTables().offered;
}

const tagXProjectionMethod* XfnFindProjectionMethod(int code)
{
    if (code == 0) return nullptr;
    for (const auto& method : GetTables().offered) {
        if (method.code == code) return &method;
    }
    for (const auto& method : GetTables().rarer) {
        if (method.code == code) return &method;
    }
    return nullptr;
}

int XfnGetProjTRFInfo(int code, double* parameters)
{
    const XProjObject system = XfnProjFromCode(code, XProjCategory::System);
    tagXLvcParts parts;
    if (!XfnReadProjection(system.get(), parts)) return 0;
    if (parameters) std::memcpy(parameters, parts.parameters, sizeof parts.parameters);
    return 1;
}

XString XfnGetPcsEPSGString(int code)
{
    const XProjObject system = XfnProjFromCode(code, XProjCategory::System);
    return XString(system ? proj_get_name(system.get()) : "");
}

int XfnGetLengthUnitCode(const XString& name)
{
    static const std::vector<std::pair<std::string, int>> units = ReadLengthUnits();
    const std::string wanted = NormalizeUnitName(name.View());
    for (const auto& [unit, code] : units) {
        if (unit == wanted) return code;
    }
    return 0;
}

int XfnGetUnitFactor(int code, double& factor, int* isAngle)
{
    if (code <= 0) return 0;
    const std::string text = std::to_string(IsSexagesimal(code) ? 9102 : code);
    const char* category = nullptr;
    double found = 0.0;
    if (!proj_uom_get_info_from_database(XfnProjContext(), "EPSG", text.c_str(), nullptr, &found,
                                         &category)) {
        return 0;
    }
    const bool angle = std::strcmp(category, "angular") == 0;
    if (!(found > 0.0) || (!angle && std::strcmp(category, "linear") != 0)) return 0;
    factor = found;
    if (isAngle) *isAngle = angle ? 1 : 0;
    return 1;
}
