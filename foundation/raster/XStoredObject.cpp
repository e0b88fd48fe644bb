#include "foundation/raster/XStoredObject.h"

#include "foundation/base/XArchive.h"

X_IMPLEMENT_CLASS(XStoredObject, XObject)

void XStoredObject::Serialize(XArchive& archive)
{
    if (archive.IsStoring() && !m_bytes.empty()) archive.Write(m_bytes.data(), m_bytes.size());
}
