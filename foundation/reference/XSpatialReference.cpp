#include "foundation/reference/XSpatialReference.h"

#include "foundation/reference/XProjLibrary.h"
#include "foundation/reference/XSpatialReferenceState.h"

#include <cpl_conv.h>
#include <ogr_spatialref.h>

#include <string>

namespace {

constexpr int kMapType = 3;
constexpr int kMaxTextBytes = 1 << 20;

// The two old-style codes whose meaning is known.
constexpr int kOldNoProjection = 0;
constexpr int kOldDatumWgs84 = 118;

// Keeps deprecated codes from being replaced by their successors, in this thread only.
class XKeepDeprecated
{
public:
    XKeepDeprecated()
    {
        if (const char* was = CPLGetThreadLocalConfigOption(kOption, nullptr)) {
            m_was = was;
            m_hadOne = true;
        }
        CPLSetThreadLocalConfigOption(kOption, "NO");
    }
    ~XKeepDeprecated()
    {
        CPLSetThreadLocalConfigOption(kOption, m_hadOne ? m_was.c_str() : nullptr);
    }
    XKeepDeprecated(const XKeepDeprecated&) = delete;
    XKeepDeprecated& operator=(const XKeepDeprecated&) = delete;

private:
    static constexpr const char* kOption = "OSR_USE_NON_DEPRECATED";
    std::string m_was;
    bool m_hadOne = false;
};

// Runs one import of the library; null when it fails or gives nothing that has map coordinates.
template <class Import>
std::shared_ptr<const XSpatialReferenceState> Build(const Import& import)
{
    const XQuietErrors quiet;
    auto system = std::make_unique<OGRSpatialReference>();
    system->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (import(*system) != OGRERR_NONE || system->IsEmpty()) return nullptr;
    const bool onlyHeights =
        system->IsVertical() && !system->IsProjected() && !system->IsGeographic();
    if (onlyHeights) return nullptr;
    return std::make_shared<const XSpatialReferenceState>(std::move(system));
}

// Text with zero bytes inside is no system, however well its beginning reads.
bool IsUsableText(const XString& text)
{
    return !text.IsEmpty() && text.GetLength() <= kMaxTextBytes &&
           text.View().find('\0') == std::string_view::npos;
}

} // namespace

XSpatialReference::XSpatialReference() = default;
XSpatialReference::~XSpatialReference() = default;
XSpatialReference::XSpatialReference(const XSpatialReference& other) = default;
XSpatialReference& XSpatialReference::operator=(const XSpatialReference& other) = default;

int XSpatialReference::Take(std::shared_ptr<const XSpatialReferenceState> state)
{
    m_state = std::move(state);
    m_coordType = m_state ? kMapType : 0;
    return m_state ? 1 : 0;
}

void XSpatialReference::Clear()
{
    Take(nullptr);
}

int XSpatialReference::importFromEPSG(int code)
{
    if (code <= 0) return Take(nullptr);
    const XKeepDeprecated keep;
    return Take(Build([code](OGRSpatialReference& system) { return system.importFromEPSG(code); }));
}

int XSpatialReference::importFromWkt(const XString& wkt)
{
    if (!IsUsableText(wkt)) return Take(nullptr);
    const XString text = wkt; // ours while the library reads it
    return Take(Build(
        [&text](OGRSpatialReference& system) { return system.importFromWkt(text.GetString()); }));
}

int XSpatialReference::importFromProj4(const XString& text)
{
    // the library would take the last step of a pipeline for a system
    if (!IsUsableText(text) || text.Find("proj=pipeline") >= 0) return Take(nullptr);
    const XKeepDeprecated keep;
    return Take(Build(
        [&text](OGRSpatialReference& system) { return system.importFromProj4(text.GetString()); }));
}

int XSpatialReference::SetWellKnownGeogCS(const XString& name)
{
    if (!IsUsableText(name)) return Take(nullptr);
    const XKeepDeprecated keep;
    return Take(Build([&name](OGRSpatialReference& system) {
        return system.SetWellKnownGeogCS(name.GetString());
    }));
}

int XSpatialReference::importFromOldLVC(int projection, int datum, int, int, int)
{
    if (projection != kOldNoProjection || datum != kOldDatumWgs84) return Take(nullptr);
    return importFromEPSG(4326);
}

int XSpatialReference::exportToWkt(XString& wkt) const
{
    wkt = XString();
    const auto system = m_state ? m_state->Clone() : nullptr;
    if (!system) return 0;
    const XQuietErrors quiet;
    char* text = nullptr;
    if (system->exportToWkt(&text) == OGRERR_NONE && text) wkt = text;
    CPLFree(text);
    return wkt.IsEmpty() ? 0 : 1;
}

int XSpatialReference::exportToProj4(XString& text) const
{
    text = XString();
    const auto system = m_state ? m_state->Clone() : nullptr;
    if (!system) return 0;
    const XQuietErrors quiet;
    char* result = nullptr;
    if (system->exportToProj4(&result) == OGRERR_NONE && result) text = result;
    CPLFree(result);
    text.Trim();
    return text.IsEmpty() ? 0 : 1;
}

int XSpatialReference::GetRefSysCode(int* code) const
{
    const int found = m_state ? m_state->FindCode() : 0;
    if (code) *code = found;
    return found != 0 ? 1 : 0;
}

int XSpatialReference::GetUnitCode() const
{
    return m_state ? m_state->GetDetails().unitCode : 0;
}

int XSpatialReference::IsProjected() const
{
    return m_state && m_state->GetDetails().isProjected ? 1 : 0;
}

int XSpatialReference::IsGeographic() const
{
    return m_state && m_state->GetDetails().isGeographic ? 1 : 0;
}

int XSpatialReference::IsEmpty() const
{
    return m_state ? 0 : 1;
}

int XSpatialReference::IsSame(const XSpatialReference* other) const
{
    if (!other) return 0;
    if (!m_state || !other->m_state) return m_state == other->m_state ? 1 : 0;
    return m_state->IsSame(*other->m_state);
}

XString XSpatialReference::GetName() const
{
    return m_state ? m_state->GetDetails().name : XString();
}

XString XSpatialReference::GetProjectionName() const
{
    return IsProjected() || IsGeographic() ? m_state->GetDetails().name : XString();
}

XString XSpatialReference::GetMethodName() const
{
    return m_state ? m_state->GetDetails().method : XString();
}

XString XSpatialReference::GetDatumName() const
{
    return m_state ? m_state->GetDetails().datum : XString();
}

XString XSpatialReference::GetUnitName() const
{
    return m_state ? m_state->GetDetails().unit : XString();
}

double XSpatialReference::GetLinearUnits() const
{
    return m_state ? m_state->GetDetails().linearUnits : 0.0;
}

double XSpatialReference::GetAngularUnits() const
{
    return m_state ? m_state->GetDetails().angularUnits : 0.0;
}

double XSpatialReference::GetSemiMajor() const
{
    return m_state ? m_state->GetDetails().semiMajor : 0.0;
}

double XSpatialReference::GetFlattening() const
{
    return m_state ? m_state->GetDetails().flattening : 0.0;
}
