#pragma once

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XMemFile.h"
#include "foundation/base/XSentinels.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XvcObj.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

using XSampleBytes = std::vector<unsigned char>;

inline XSampleBytes StoreObject(XvcObj& object)
{
    XMemFile file;
    XArchive archive(&file, XArchive::kStore);
    object.Serialize(archive);
    archive.Close();
    return XSampleBytes(file.GetBuffer(), file.GetBuffer() + file.GetLength());
}

inline bool LoadObject(XvcObj& object, const XSampleBytes& bytes, std::size_t count)
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

inline std::shared_ptr<const XVertRecording> RecordObject(XvcObj& object,
                                                          const XWarp2D* warp = nullptr)
{
    XVertBuffer buffer;
    buffer.Start();
    object.CreateVertexBuffer(&buffer, warp, nullptr);
    buffer.End();
    for (const auto& command : buffer.GetRecording()->GetCommands()) {
        const double* at = buffer.GetRecording()->GetVertices(command.first);
        for (std::size_t i = 0; i < 2 * command.count; ++i)
            EXPECT_TRUE(XfnIsSet(at[i]));
    }
    return buffer.GetRecording();
}

/// Calls visit(recording, command) for each primitive, those of parts included.
template <class Visit>
void ForEachPrimitive(const XVertRecording& recording, const Visit& visit)
{
    for (const auto& command : recording.GetCommands()) {
        if (command.kind == XVertRecording::XKind::Part) {
            ForEachPrimitive(*recording.GetPart(command.extra), visit);
        } else {
            visit(recording, command);
        }
    }
}

/// A black surface of one world unit a pixel, whose lower left corner is (0, 0).
inline XBackBuffer MakeSurface(int width, int height)
{
    XBackBuffer buffer;
    buffer.Create(nullptr, 2);
    buffer.Resize(nullptr, width, height);
    buffer.SetWorldPerPixel(1.0, 1.0);
    buffer.SetWorldToCenter(width / 2.0, height / 2.0);
    return buffer;
}

/// Draws on such a surface and tells its pixels as letters, one row a line: those of `key` ("K" at
/// first for black) by colour 0xRRGGBB, '?' for others.
inline std::string DrawAsText(XvcObj& object, int width, int height,
                              const std::vector<std::pair<std::uint32_t, char>>& key)
{
    XBackBuffer buffer = MakeSurface(width, height);
    object.DrawToBackBuffer(&buffer, 0, nullptr, nullptr);
    std::string text;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint32_t pixel = buffer.GetRow(y)[x] & 0xFFFFFFu;
            char letter = pixel == 0 ? 'K' : '?';
            for (const auto& [colour, name] : key) {
                if (colour == pixel) letter = name;
            }
            text += letter;
        }
        if (y + 1 < height) text += '\n';
    }
    return text;
}
