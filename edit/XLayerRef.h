#pragma once

#include <cstdint>

class XvcLayer;

/// A layer as a step of undo names it. The layer may have gone, and another may lie at its address:
/// the number (XvcLayer::GetNumber) tells whether it is the same. Compare before it is read.
struct tagXLayerRef
{
    XvcLayer* layer = nullptr;
    std::uint64_t number = 0; ///< 0: not known, the address counts

    friend bool operator==(const tagXLayerRef&, const tagXLayerRef&) = default;
    friend auto operator<=>(const tagXLayerRef&, const tagXLayerRef&) = default;
};
