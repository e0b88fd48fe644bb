#include "foundation/base/XFileException.h"

#include "foundation/base/XSystem.h"

#include <cerrno>

X_IMPLEMENT_CLASS(XFileException, XException)

namespace {

const char* GetReason(XFileException::Cause cause)
{
    switch (cause) {
    case XFileException::kFileNotFound:
        return "The file was not found";
    case XFileException::kBadPath:
        return "The path is not valid";
    case XFileException::kTooManyOpenFiles:
        return "Too many files are open";
    case XFileException::kAccessDenied:
        return "Access to the file was denied";
    case XFileException::kInvalidFile:
        return "The file is not open for this";
    case XFileException::kBadSeek:
        return "The position in the file is not valid";
    case XFileException::kHardIO:
        return "The disk reported an error";
    case XFileException::kDiskFull:
        return "The disk is full";
    case XFileException::kEndOfFile:
        return "The file ends too early";
    default:
        return "The file operation failed";
    }
}

} // namespace

XFileException::XFileException(Cause cause, int osError, const XString& fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName)
{}

XString XFileException::GetErrorMessage() const
{
    XString text = GetReason(m_cause);
    if (!m_strFileName.IsEmpty()) text += ": " + m_strFileName;
    if (m_cause == kGeneric && m_lOsError != 0) {
        XString name;
        XString reason;
        XfnGetErrorString(m_lOsError, name, reason);
        text += " (" + reason + ")";
    }
    return text + ".";
}

void XFileException::Throw(Cause cause, const XString& fileName)
{
    throw XFileException(cause, 0, fileName);
}

void XFileException::ThrowOsError(int osError, const XString& fileName)
{
    throw XFileException(OsErrorToCause(osError), osError, fileName);
}

XFileException::Cause XFileException::OsErrorToCause(int osError)
{
    switch (osError) {
    case 0:
        return kNone;
    case ENOENT:
        return kFileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
        return kBadPath;
    case EMFILE:
    case ENFILE:
        return kTooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ETXTBSY:
        return kAccessDenied;
    case EBADF:
        return kInvalidFile;
    case ESPIPE:
        return kBadSeek;
    case EIO:
        return kHardIO;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return kDiskFull;
    default:
        return kGeneric;
    }
}
