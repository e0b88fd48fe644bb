#include "foundation/vector/XObjAttributes.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"

XvcObj XfnLoadAttributes(const XvcObj& object, std::uint8_t version, XArchive& archive)
{
    std::uint8_t stored = 0;
    archive >> stored;
    if (stored != version) throw XFileException(XFileException::kInvalidFile);
    XvcObj attributes;
    attributes.SetWarpCoeff(object.GetWarpCeoff());
    attributes.Serialize(archive);
    return attributes;
}
