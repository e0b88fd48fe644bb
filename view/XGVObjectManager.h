#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XFillStyle.h"
#include "foundation/base/XLineStyle.h"
#include "foundation/base/XTextStyle.h"

class XvcObj;

/// The styles and colours that new objects of a view receive, and the object under construction.
///
/// Colours are words with red lowest and 0xFF in the top byte. Threads: user interface only.
class XAPI XGVObjectManager
{
public:
    XGVObjectManager();

    tagXLineStyle& GetLineStyle() { return m_lineStyle; }
    void SetLineStyle(const tagXLineStyle& style); ///< style code and pattern
    tagXFillStyle& GetFillStyle() { return m_fillStyle; }
    void SetFillStyle(const tagXFillStyle& style);
    tagXTextStyle& GetTextStyle() { return m_textStyle; }
    void SetTextStyle(const tagXTextStyle& style); ///< the face is cut to 31 letters

    tagXColor m_foreColor = 0xFF0000FFu;
    tagXColor m_backColor = 0xFF000000u; ///< also the background of the window
    tagXColor m_lineColor = 0xFF00FFFFu;
    tagXColor m_selectionColor = 0xFF00FF00u; ///< outline and control points of selected objects
    double m_thickness = 0.0;                 ///< world units
    /// Owned by the tool that builds it, until it enters a layer.
    XvcObj* m_currentObject = nullptr;

private:
    tagXLineStyle m_lineStyle;
    tagXFillStyle m_fillStyle;
    tagXTextStyle m_textStyle;
};
