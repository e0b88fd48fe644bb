#include "foundation/base/XObject.h"

#include <cstring>

int XRuntimeClass::IsDerivedFrom(const XRuntimeClass* base) const
{
    for (const XRuntimeClass* record = this; record; record = record->m_pBaseClass) {
        if (record == base) return 1;
    }
    return 0;
}

constinit const XRuntimeClass XObject::s_runtimeClass = {"XObject", nullptr};

XObject::~XObject() = default;

const XRuntimeClass* XObject::GetRuntimeClass() const
{
    return &s_runtimeClass;
}

const XRuntimeClass* XObject::GetRuntimeClassStatic()
{
    return &s_runtimeClass;
}

void XObject::Serialize(XArchive&) {}

int XObject::IsKindOf(const XRuntimeClass* runtimeClass) const
{
    return runtimeClass && GetRuntimeClass()->IsDerivedFrom(runtimeClass);
}

int XfnIsExactly(const XObject* object, const char* className)
{
    return object && className &&
           std::strcmp(object->GetRuntimeClass()->m_lpszClassName, className) == 0;
}
