#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XString.h"

#include <functional>

/// Where something that is derived from a raster file is put.
enum class XSidecarPlace {
    Any,    ///< beside the file, or in the cache where nothing can be written there
    Beside, ///< beside the file or nowhere
    Cache
};

/// The files that keep what was derived from one raster file: its pyramid (".ovr") and its exact
/// statistics (".aux.xml"). The raster file itself is never written.
///
/// Beside the file they have its name with the tail added, which other programs know too. In the
/// cache of the user ($XDG_CACHE_HOME/tql/sidecars, else ~/.cache/tql/sidecars) their name is made of
/// the path, the size and the time of the last change of the raster file: one that was changed since
/// finds nothing there, and what stood for its older state goes when something new is put.
/// Beside the file one counts that is not older than the raster file; one that is made is never older.
/// Of a raster inside another file (NETCDF:"a.nc":b, /vsizip/...) all is kept in the cache.
/// Threads: any. Several programs may work on the same files.
class XAPI XRasterSidecar
{
public:
    /// Looks at the raster file as it is now.
    /// @param path  as it was opened
    explicit XRasterSidecar(const XString& path);

    XString GetBeside(const char* tail) const; ///< empty when nothing can stand beside
    XString GetCached(const char* tail) const; ///< empty when no file is behind the path
    /// The one that exists, the one in the cache first; empty when there is none that counts.
    XString Find(const char* tail) const;
    /// 1 when the one beside the file is older than it.
    int IsOutdated(const char* tail) const;

    /// Puts a new file in the place of the old one, when it is complete.
    /// @param make   writes the file under a temporary name; 0 with a sentence in its `error`, an
    ///               empty one after a stop
    /// @param made   receives the name of the file
    /// @return 0 with a sentence in `error`, an empty one after a stop; nothing was changed then. So
    ///         too when the raster file was changed meanwhile
    int Put(const char* tail, XSidecarPlace place,
            const std::function<int(const XString& name, XString& error)>& make, XString& made,
            XString& error) const;

    /// Keeps the cache within `budgetBytes`: the files that were not used for the longest time go.
    static void TrimCache(long long budgetBytes);

private:
    int PutAt(const XString& target,
              const std::function<int(const XString& name, XString& error)>& make, int& isPlaceBad,
              XString& error) const;

    XString m_path;
    XString m_stem;  // of the names in the cache, for every state of the file
    XString m_state; // size and time
};
