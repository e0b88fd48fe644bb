#include "foundation/reference/XProjLibrary.h"

#include <cpl_error.h>
#include <proj.h>

#include <string>

XQuietErrors::XQuietErrors()
{
    CPLPushErrorHandler(CPLQuietErrorHandler);
}

XQuietErrors::~XQuietErrors()
{
    CPLErrorReset();
    CPLPopErrorHandler();
}

pj_ctx* XfnProjContext()
{
    struct Holder
    {
        PJ_CONTEXT* context = proj_context_create();
        Holder() { proj_log_level(context, PJ_LOG_NONE); }
        ~Holder() { proj_context_destroy(context); }
    };
    thread_local Holder holder;
    return holder.context;
}

void XProjDestroyer::operator()(PJconsts* object) const
{
    proj_destroy(object);
}

XProjObject XfnProjFromCode(int code, XProjCategory category)
{
    if (code <= 0) return nullptr;
    const std::string text = std::to_string(code);
    return XProjObject(proj_create_from_database(
        XfnProjContext(), "EPSG", text.c_str(),
        category == XProjCategory::System ? PJ_CATEGORY_CRS : PJ_CATEGORY_ELLIPSOID, 0, nullptr));
}
