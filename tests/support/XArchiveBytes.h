#pragma once

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XMemFile.h"
#include "foundation/base/XObject.h"

#include <cstddef>
#include <vector>

using XSampleBytes = std::vector<unsigned char>;

/// What an object stores.
inline XSampleBytes StoreObject(XObject& object)
{
    XMemFile file;
    XArchive archive(&file, XArchive::kStore);
    object.Serialize(archive);
    archive.Close();
    return XSampleBytes(file.GetBuffer(), file.GetBuffer() + file.GetLength());
}

/// Loads an object from the first `count` bytes. @return false when they were refused
inline bool LoadObject(XObject& object, const XSampleBytes& bytes, std::size_t count)
{
    XMemFile file;
    file.Attach(bytes.data(), count);
    XArchive archive(&file, XArchive::kLoad);
    try {
        object.Serialize(archive);
        return true;
    } catch (const XFileException&) {
        return false;
    }
}
