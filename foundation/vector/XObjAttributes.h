#pragma once

#include "foundation/vector/XvcObj.h"

#include <cstdint>

class XArchive;

/// Reads how every kind of object with geometry begins in an archive: its version and the attributes.
/// @param object  what is being loaded; its warp, which no archive holds, is kept
/// @return the attributes, for the object to take over once its geometry is read too
/// Throws XFileException on another version than `version` or on bytes that make no sense.
XAPI XvcObj XfnLoadAttributes(const XvcObj& object, std::uint8_t version, XArchive& archive);
