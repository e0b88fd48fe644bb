#pragma once

#include "foundation/base/XApi.h"

class XArchive;

/// The record of one class: its name and the record of its base class, null for the root.
///
/// Records are constant data; a pointer to one stays good for the life of the process and may be
/// read from any thread.
struct XRuntimeClass
{
    const char* m_lpszClassName;
    const XRuntimeClass* m_pBaseClass;

    /// 1 when this is the record of `base` or of a class derived from it.
    XAPI int IsDerivedFrom(const XRuntimeClass* base) const;
};

/// The root of every class whose type is asked for at run time.
///
/// Two type tests are in use and mean different things: IsKindOf follows inheritance,
/// XfnIsExactly compares the class name and does not.
///
///     class XvcLine : public XvcObj
///     {
///         X_DECLARE_CLASS(XvcLine)      // the class body goes on as private
///     public:
///         ...
///     };
///     X_IMPLEMENT_CLASS(XvcLine, XvcObj)   // in the source file
class XAPI XObject
{
public:
    XObject() = default;
    XObject(const XObject&) = default;
    XObject& operator=(const XObject&) = default;
    virtual ~XObject();

    virtual const XRuntimeClass* GetRuntimeClass() const;

    /// Stores the object in the archive or reads it back, as the archive's direction says.
    /// The root stores nothing. Throws XFileException as the archive does.
    virtual void Serialize(XArchive& archive);

    /// 1 when the object is of the class of the record or of one derived from it.
    int IsKindOf(const XRuntimeClass* runtimeClass) const;

    static const XRuntimeClass* GetRuntimeClassStatic();

protected:
    static const XRuntimeClass s_runtimeClass;
};

/// 1 when `object` is not null and its own class, not a base of it, has exactly this name.
XAPI int XfnIsExactly(const XObject* object, const char* className);

/// Declares a class record; what follows in the class body is private.
#define X_DECLARE_CLASS(Name)                                                                      \
public:                                                                                            \
    const XRuntimeClass* GetRuntimeClass() const override;                                         \
    static const XRuntimeClass* GetRuntimeClassStatic();                                           \
                                                                                                   \
protected:                                                                                         \
    static const XRuntimeClass s_runtimeClass;                                                     \
                                                                                                   \
private:

/// Defines the class record of `Name`, whose direct base is `Base`.
#define X_IMPLEMENT_CLASS(Name, Base)                                                              \
    constinit const XRuntimeClass Name::s_runtimeClass = {#Name, &Base::s_runtimeClass};           \
    const XRuntimeClass* Name::GetRuntimeClass() const                                             \
    {                                                                                              \
        return &Name::s_runtimeClass;                                                              \
    }                                                                                              \
    const XRuntimeClass* Name::GetRuntimeClassStatic()                                             \
    {                                                                                              \
        return &Name::s_runtimeClass;                                                              \
    }
