#pragma once

#include "foundation/base/XFillStyle.h"
#include "foundation/base/XLineStyle.h"
#include "foundation/vector/XvcBoxObj.h"
#include "foundation/vector/XvcFontObj.h"

#include <vector>

/// A row of a legend: a sample of what is drawn, and its name.
struct tagXLegendItem
{
    enum XKind : int {
        kNone,   ///< the name alone, as a heading
        kPatch,  ///< an area: fill style, fore and back colour, outline
        kLine,   ///< a line in the line colour, style and thickness
        kPoint,  ///< a point mark of `shape` (XPointShape)
        kSymbol, ///< a symbol of the library, number `shape`
        kKindCount
    };
    int kind = kPatch;
    XString label{};
    tagXColor lineColor = kXOpaque;
    tagXColor foreColor = kXOpaque | 0xFFFFFFu;
    tagXColor backColor = kXOpaque | 0xFFFFFFu;
    double thick = 0.0; ///< of lines and outlines as XvcObj::SetThick; points fill their cell
    tagXLineStyle lineStyle{};
    tagXFillStyle fillStyle{};
    int shape = 1;
    XString outline{}; ///< of a symbol: drawn (XSymbolOutline) instead of that of the number

    friend bool operator==(const tagXLegendItem&, const tagXLegendItem&) = default;
};

/// A key to what is drawn: a title and rows of samples with their names, in one or more columns.
///
/// Everything lies within the box: letters are as high as asked and made smaller where the rows
/// would not fit. The box is framed and filled as XvcRectangle is; a new legend is black on white.
/// FitBox makes the box as large as its contents.
class XAPI XvcLegend : public XvcFontObj<XvcBoxObj>
{
    X_DECLARE_CLASS(XvcLegend)
public:
    static constexpr int kMaxItems = 10000;
    static constexpr int kMaxColumns = 100;

    XvcLegend();

    const XString& GetTitle() const { return m_title; } ///< empty: there is none
    void SetTitle(const XString& title)
    {
        Touch();
        m_title = title;
    }
    /// @return its index; -1 when there are kMaxItems
    int AddItem(const tagXLegendItem& item);
    /// A row that looks as `object` does: an area, a line, a point or a symbol by its class, the
    /// first of several; a symbol of a table of the host's own takes its outline along. An empty label
    /// takes the object's name.
    int AddItem(const XvcObj& object, const XString& label = "");
    int GetNumOfItems() const { return static_cast<int>(m_items.size()); }
    const tagXLegendItem* GetItemAt(int index) const; ///< null for an index that there is not
    int SetItemAt(int index, const tagXLegendItem& item);
    int RemoveItemAt(int index);
    void RemoveAllItems();

    int GetNumOfColumns() const { return m_columns; }  ///< 1 at first
    void SetNumOfColumns(int count);                   ///< held within 1 and kMaxColumns
    int GetBorderFlag() const { return m_borderFlag; } ///< 1 at first
    void SetBorderFlag(int flag)
    {
        Touch();
        m_borderFlag = flag ? 1 : 0;
    }

    /// Gives the box the size of its contents, its left top staying.
    /// @return 0 when the height of the letters in the world is not known, or the box not set
    int FitBox();

    void CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                            const tagXDrawAttrs* attrs) override;
    /// A font size in world lengths follows the y side of the box.
    void Normalize(double minX, double minY, double maxX, double maxY) override;

protected:
    void StoreOwn(XArchive& archive) const override;
    void LoadOwn(XArchive& archive) override;

private:
    struct tagMeasure;
    tagMeasure Measure() const;

    XString m_title;
    std::vector<tagXLegendItem> m_items;
    int m_columns = 1;
    int m_borderFlag = 1;
};
