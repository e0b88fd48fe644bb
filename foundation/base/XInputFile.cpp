#include "foundation/base/XInputFile.h"

#include "foundation/base/XString.h"
#include "foundation/base/XSystem.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

int XfnCheckInputFile(const XString& path, XString& error)
{
    if (path.IsEmpty()) {
        error = "There is no file name.";
        return 0;
    }
    struct stat status = {};
    if (::stat(path, &status) != 0) {
        const int code = errno;
        XString name, text;
        XfnGetErrorString(code, name, text);
        error = code == ENOENT ? XfnFormat("\"%s\" does not exist.", path)
                               : XfnFormat("\"%s\" cannot be opened: %s.", path, text);
        return 0;
    }
    if (S_ISDIR(status.st_mode)) {
        error = XfnFormat("\"%s\" is a folder, not a file.", path);
        return 0;
    }
    if (!S_ISREG(status.st_mode)) {
        error = XfnFormat("\"%s\" is a device or a pipe, not a file.", path);
        return 0;
    }
    if (status.st_size == 0) {
        error = XfnFormat("\"%s\" is empty.", path);
        return 0;
    }
    if (::faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) != 0) {
        error = XfnFormat("\"%s\" may not be read: permission denied.", path);
        return 0;
    }
    return 1;
}
