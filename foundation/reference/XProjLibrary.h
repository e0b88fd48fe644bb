#pragma once

#include <memory>

struct pj_ctx;
struct PJconsts;

/// For the sources of this folder only: the libraries underneath, made silent.

/// Swallows the messages of GDAL in this thread while it lives.
class XQuietErrors
{
public:
    XQuietErrors();
    ~XQuietErrors();
    XQuietErrors(const XQuietErrors&) = delete;
    XQuietErrors& operator=(const XQuietErrors&) = delete;
};

/// The calling thread's own context: it may not be shared, and opening the database is dear.
pj_ctx* XfnProjContext();
/// Gives it up; the next call makes a new one. No object made with it may live.
void XfnDropProjContext();

struct XProjDestroyer
{
    void operator()(PJconsts* object) const;
};
using XProjObject = std::unique_ptr<PJconsts, XProjDestroyer>;

/// The object of an EPSG code, null when there is none of that category.
enum class XProjCategory { System, Ellipsoid };
XProjObject XfnProjFromCode(int code, XProjCategory category);
