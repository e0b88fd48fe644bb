#pragma once

#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"

/// The root of the exceptions of the file classes and containers.
///
/// They are thrown by value and caught by reference; a handler may end with Delete, which frees
/// what the exception holds and is harmless for one that was thrown by value:
///
///     try { ... } catch (XFileException& e) { e.Delete(); }
///
/// One made with new and thrown as a pointer is freed by Delete when it was made with autoDelete.
class XAPI XException : public XObject
{
    X_DECLARE_CLASS(XException)
public:
    explicit XException(int autoDelete = 0) : m_autoDelete(autoDelete) {}
    XException(const XException& other) : XObject(other) {} ///< a copy is never freed by Delete
    XException& operator=(const XException&) { return *this; }
    ~XException() override;

    /// Ends the use of a caught exception.
    virtual void Delete();

    /// A sentence that says what went wrong.
    virtual XString GetErrorMessage() const;

private:
    int m_autoDelete = 0;
};
