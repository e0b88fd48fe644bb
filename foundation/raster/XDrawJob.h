#pragma once

#include "foundation/base/XString.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/raster/XDrawKernels.h"
#include "foundation/raster/XDrawMapping.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

class XDMBand;
class XDrawHelpers;

/// Which loop leads straight from samples to words, when every sample of every channel has data.
enum class XDrawShortcut { None, Gray8, Rgb8, Gray16, Rgb16 };

/// One channel of a drawing: what to read and how to cut it.
struct tagXDrawChannel
{
    XDMBand* band = nullptr;         ///< null: the channel shows its default value
    std::shared_ptr<XDMBand> keeper; ///< of a band made for the drawing; null: it is lent
    int dataType = 0;
    int level = 0;
    int levelWidth = 0;
    int levelHeight = 0;
    XDrawMapping mapping; ///< surface to this level
    tagXDrawCut cut;
    int isEveryData = 0; ///< no sample can be without data or transparent
    double skip;         ///< value left out of bilinear means; NaN: none
};

/// Everything one drawing needs; all choices are made before it starts. Pointers are lent.
struct tagXDrawJob
{
    std::uint32_t* bits = nullptr;      ///< top row of the surface
    std::size_t stride = 0;             ///< words from row to row
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0; ///< part of the surface to draw, half open
    int mode = 0;                       ///< 0 gray, 1 RGB, 2 HSI
    unsigned alpha = 255;
    tagXDrawChannel channels[3];
    tagXCompose compose;
    XDrawShortcut shortcut = XDrawShortcut::None;
    const std::uint32_t* words8[3] = {};      ///< for 8 bits: pattern to word
    const std::uint8_t* components16[3] = {}; ///< for 16 bits: pattern to component, or to level
    const std::atomic<int>* abort = nullptr;
    XDrawHelpers* helpers = nullptr; ///< decode ahead and may outlive the drawing; null: its own
    XString* message = nullptr;      ///< receives why the first tile that failed did

    int IsAborted() const { return abort && abort->load(std::memory_order_relaxed); }
};

/// Draws with one raster pixel under each screen pixel's centre. All mappings are separable.
/// @return non-zero when everything was drawn
int XfnDrawCells(const tagXDrawJob& job);

/// Draws through any mapping, bilinear when asked. Slower: a row of every channel is gathered
/// first.
int XfnDrawRows(const tagXDrawJob& job, int isBilinear);
