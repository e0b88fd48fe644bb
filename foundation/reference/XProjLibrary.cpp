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

namespace {

struct ContextDestroyer
{
    void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};

std::unique_ptr<PJ_CONTEXT, ContextDestroyer>& ContextOfThread()
{
    thread_local std::unique_ptr<PJ_CONTEXT, ContextDestroyer> context;
    return context;
}

} // namespace

pj_ctx* XfnProjContext()
{
    auto& context = ContextOfThread();
    if (!context) {
        context.reset(proj_context_create());
        proj_log_level(context.get(), PJ_LOG_NONE);
    }
    return context.get();
}

void XfnDropProjContext()
{
    ContextOfThread().reset();
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
