#include "foundation/raster/XDrawRowWriter.h"

#include <algorithm>

XDrawRowWriter::XDrawRowWriter(const tagXDrawJob& job, int maxWidth)
    : m_job(job),
      m_words(static_cast<std::size_t>(maxWidth)),
      m_cover(static_cast<std::size_t>(maxWidth)),
      m_noData(static_cast<std::size_t>(maxWidth), 0)
{}

void XDrawRowWriter::Compose(const std::uint16_t* const states[3], int n)
{
    const std::uint16_t* rows[3];
    for (int ch = 0; ch < 3; ++ch)
        rows[ch] = states[ch] ? states[ch] : m_noData.data();
    const auto compose = m_job.mode == 0   ? XfnComposeGrayRow
                         : m_job.mode == 2 ? XfnComposeHsiRow
                                           : XfnComposeRgbRow;
    compose(rows, n, m_job.compose, m_words.data(), m_cover.data());
}

void XDrawRowWriter::Store(int n, std::uint32_t* surface) const
{
    if (m_job.alpha == 255)
        XfnStoreCoveredRow(m_words.data(), m_cover.data(), n, surface);
    else
        XfnBlendCoveredRow(m_words.data(), m_cover.data(), n, m_job.alpha, surface);
}

void XDrawRowWriter::StoreWords(int n, std::uint32_t* surface) const
{
    if (m_job.alpha == 255)
        std::copy_n(m_words.data(), n, surface);
    else
        XfnBlendRow(m_words.data(), n, m_job.alpha, surface);
}
