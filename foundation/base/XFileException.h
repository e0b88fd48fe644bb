#pragma once

#include "foundation/base/XException.h"

/// Why a file operation failed: a cause, the system's error number and the file's name.
class XAPI XFileException : public XException
{
    X_DECLARE_CLASS(XFileException)
public:
    enum Cause {
        kNone,
        kGeneric,
        kFileNotFound,
        kBadPath,
        kTooManyOpenFiles,
        kAccessDenied,
        kInvalidFile, ///< not open, or not open for this
        kBadSeek,
        kHardIO,
        kDiskFull,
        kEndOfFile,
    };

    /// @param osError  errno of the failed call, 0 when the system took no part
    explicit XFileException(Cause cause = kNone, int osError = 0, const XString& fileName = {});

    /// A sentence with the file's name where there is one.
    XString GetErrorMessage() const override;

    [[noreturn]] static void Throw(Cause cause, const XString& fileName = {});
    [[noreturn]] static void ThrowOsError(int osError, const XString& fileName = {});

    static Cause OsErrorToCause(int osError);

    Cause m_cause;
    int m_lOsError;
    XString m_strFileName;
};
