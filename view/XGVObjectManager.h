#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XFillStyle.h"
#include "foundation/base/XLineStyle.h"
#include "foundation/base/XTextStyle.h"

#include <memory>

class XvcObj;

/// The styles and colours that new objects of a view receive, and the object under construction.
///
/// Colours are words with red lowest and 0xFF in the top byte. Threads: user interface only.
class XAPI XGVObjectManager
{
public:
    XGVObjectManager();
    ~XGVObjectManager() { DestroyCurrent(); }
    XGVObjectManager(const XGVObjectManager&) = delete;
    XGVObjectManager& operator=(const XGVObjectManager&) = delete;

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

    /// Owned here until it enters a layer, save while it is lent; null for none.
    XvcObj* m_currentObject = nullptr;
    /// Puts an object in the place of the current one, which is destroyed; null for none.
    void SetCurrent(std::unique_ptr<XvcObj> object);
    void DestroyCurrent() { SetCurrent(nullptr); }
    /// Hands the object over and has none any more. Null while it is lent.
    std::unique_ptr<XvcObj> TakeCurrent();
    /// Hands the object over, but goes on showing it, until it is given back or replaced: so it may
    /// be edited by something modal, in which everything here may happen.
    std::unique_ptr<XvcObj> LendCurrent();
    /// Owns the object again, when it is current still; else destroys it.
    void GiveBack(std::unique_ptr<XvcObj> object);

private:
    bool m_isLent = false;
    tagXLineStyle m_lineStyle;
    tagXFillStyle m_fillStyle;
    tagXTextStyle m_textStyle;
};
