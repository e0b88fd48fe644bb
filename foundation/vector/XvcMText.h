#pragma once

#include "foundation/vector/XvcMultiObj.h"
#include "foundation/vector/XvcText.h"

/// Many texts as one object. What is set on the whole is passed to each text; the getters tell that
/// of the first, or that of a new text when there is none. Texts know the whole as their parent.
class XAPI XvcMText : public XvcMultiObj
{
    X_DECLARE_CLASS(XvcMText)
public:
    XvcMText() = default;
    XvcMText(const XvcMText& other);
    XvcMText& operator=(const XvcMText& other);

    /// Both return the index of the new text; the object form takes a copy.
    int AddText(const XString& text, double x, double y, double z = 0.0);
    int AddText(const XvcText& text);
    int GetNumOfTexts() const { return GetPartCount(); }
    XvcText* GetTextObjAt(int index) const { return static_cast<XvcText*>(GetPartAt(index)); }

    double GetFontSize() const { return GetFirst().GetFontSize(); }
    void SetFontSize(double height);
    int GetTextAlign() const { return GetFirst().GetTextAlign(); }
    void SetTextAlign(int align);
    const tagXTextStyle& GetTextStyle() const { return GetFirst().GetTextStyle(); }
    void SetTextStyle(const tagXTextStyle& style);
    tagXColor GetTextColor() const { return GetFirst().GetTextColor(); }
    void SetTextColor(tagXColor color);
    int GetDrawBorder() const { return GetFirst().GetDrawBorder(); }
    void SetDrawBorder(int flag);

    void Serialize(XArchive& archive) override;
    /// A point or a multipoint gives the positions of texts that say nothing yet.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< MULTIPOINT, of the positions that are set

protected:
    bool IsPartAllowed(const XvcObj& part) const override;

private:
    const XvcText& GetFirst() const;
    void AdoptTexts();
};
