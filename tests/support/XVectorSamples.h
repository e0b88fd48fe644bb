#pragma once

#include "foundation/base/XSentinels.h"
#include "foundation/vector/XvcObj.h"
#include "tests/support/XArchiveBytes.h"
#include "tests/support/XDrawn.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

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

/// What an object, a layer or a base records; all its places have to be numbers.
template <class Source>
std::shared_ptr<const XVertRecording> RecordObject(Source& source, const XWarp2D* warp = nullptr,
                                                   const tagXDrawAttrs* attrs = nullptr)
{
    const XVertBuffer buffer =
        Recorded([&](XVertBuffer& into) { source.CreateVertexBuffer(&into, warp, attrs); });
    ForEachPrimitive(*buffer.GetRecording(), [](const auto& recording, const auto& command) {
        const double* at = recording.GetVertices(command.first);
        for (std::size_t i = 0; i < 2 * command.count; ++i)
            EXPECT_TRUE(XfnIsSet(at[i]));
    });
    return buffer.GetRecording();
}

/// Draws on a surface (MakeSurface) and tells its pixels as letters, one row a line: those of `key` ("K" at
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
