#pragma once

#include "foundation/raster/XDrawJob.h"

#include <cstdint>
#include <vector>

/// Turns rows of states into words and puts them on the surface. Allocates only when it is made.
class XDrawRowWriter
{
public:
    /// @param maxWidth  samples in the longest row
    XDrawRowWriter(const tagXDrawJob& job, int maxWidth);

    /// The states of the three channels; null stands for a row without data.
    void Compose(const std::uint16_t* const states[3], int n);
    /// Puts the composed row on the surface; may be called for several rows.
    void Store(int n, std::uint32_t* surface) const;

    std::uint32_t* GetWords() { return m_words.data(); }  ///< for loops that make words themselves
    void StoreWords(int n, std::uint32_t* surface) const; ///< of GetWords, where all of it counts

private:
    const tagXDrawJob& m_job;
    std::vector<std::uint32_t> m_words;
    std::vector<std::uint32_t> m_cover;
    std::vector<std::uint16_t> m_noData;
};
