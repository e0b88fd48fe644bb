#pragma once

#include "foundation/raster/XDrawKernels.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

/// The tables of the channels' cuts, kept from one drawing to the next while nothing changed.
///
/// Copies share tables, which are never written again once made. Threads: one thread a cache.
class XDrawTableCache
{
public:
    struct tagTable
    {
        int dataType = 0;
        tagXCut<double> cut{};
        std::vector<std::uint16_t> states; ///< 256 or 65,536 by bit pattern
        int isEveryData = 0;               ///< no pattern is without data or transparent
    };

    /// The table of channel `ch` for a type of 8 or 16 bits; null for any other.
    const tagTable* GetTable(int ch, int dataType, const tagXCut<double>& cut);

    /// The bytes that the levels of the table just given lead to, by bit pattern.
    const std::uint8_t* GetComponents(int ch, const std::array<std::uint8_t, 256>& bytes);

private:
    struct tagComponents
    {
        std::array<std::uint8_t, 256> bytes{};
        std::vector<std::uint8_t> components;
        std::shared_ptr<const tagTable> table;
    };

    std::shared_ptr<const tagTable> m_tables[3];
    std::shared_ptr<const tagComponents> m_components[3];
};
