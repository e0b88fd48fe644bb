#pragma once

#include "foundation/base/XSentinels.h"
#include "foundation/vector/XMarkFont.h"

/// The layer over a base of objects, `TBase`, that gives a mark the letters of its texts.
///
/// It is no class of its own at run time: a mark names `TBase` as its base, and stores the font and
/// the length of a pixel itself.
template <class TBase>
class XAPI XvcFontObj : public TBase
{
public:
    double GetFontSize() const { return m_font.size; } ///< world length, or pixels when negative
    void SetFontSize(double height)                    ///< 0 or no number: ignored
    {
        this->Touch();
        m_font.SetSize(height);
    }
    const tagXTextStyle& GetTextStyle() const { return m_font.style; }
    void SetTextStyle(const tagXTextStyle& style)
    {
        this->Touch();
        m_font.style = style;
    }
    tagXColor GetTextColor() const { return m_font.colour; } ///< 0: the line colour
    void SetTextColor(tagXColor color)
    {
        this->Touch();
        m_font.colour = color;
    }
    /// World length of a pixel, 0 (at first) when not known; below 0 or no number: ignored.
    double GetWorldPerPixel() const { return m_worldPerPixel; }
    void SetWorldPerPixel(double length)
    {
        this->Touch();
        if (length >= 0.0 && XfnIsSet(length)) m_worldPerPixel = length;
    }

protected:
    XMarkFont m_font;
    double m_worldPerPixel = 0.0;
};
