#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XString.h"
#include "foundation/vector/XVertexArray.h"

#include <functional>
#include <variant>
#include <vector>

class XvcObj;

/// How a member of an object is typed or chosen.
enum class XFieldKind {
    Text,    ///< a line (XString)
    Lines,   ///< several lines (XString)
    Knots,   ///< numbers that never fall, with blanks between them (XString); may be empty
    Face,    ///< the name of a font (XString)
    Number,  ///< double
    Count,   ///< a whole number (int)
    Length,  ///< double, signed as SetThick takes it: shown as a size above 0 and a unit
    Color,   ///< the three colours of a word; its opacity is a field of its own
    Opacity, ///< 0 to 100 per cent (int)
    Choice,  ///< one of a list (int)
    Flag,    ///< 0 or 1 (int)
    Picture, ///< the file of a picture (XString)
    Info     ///< shown only (XString)
};

/// The page that a field stands on.
enum class XFieldPage { Own, Style, General };

/// What the pictures of a list show.
enum class XChoicePicture {
    None,
    PointShape,
    LineStart,
    LineEnd,
    LineStyle,
    FillStyle,
    Symbol,
    NorthArrow,
    SplineType,
    CloseType,
    TextAlign
};

/// What a number measures. Coordinates and sizes are shown with the digits that mean something in the
/// unit of the object, sizes with the unit's sign behind them.
enum class XFieldMeasure { Other, Coordinate, Size };

/// An entry of a list. The value of own patterns, which no list can hold, is kXOwnPattern.
struct tagXChoice
{
    int value = 0;
    XString name;
};
inline constexpr int kXOwnPattern = -1;

using XFieldValue = std::variant<double, int, tagXColor, XString>;

/// One member of a class of objects: how it is called, read, checked and written.
struct tagXObjectField
{
    XString id;    ///< the object name of its control
    XString label; ///< of its row, with a mnemonic; empty: it stands in the row of the one before
    XString name;  ///< what screen readers and refusals call it
    XFieldKind kind = XFieldKind::Number;
    XFieldPage page = XFieldPage::Own;
    std::function<XFieldValue(const XvcObj&)> get;
    std::function<void(XvcObj&, const XFieldValue&)> set;
    /// Takes the member over from another object of the class; empty: get and set.
    std::function<void(XvcObj& to, const XvcObj& from)> copy{};
    double least = -1.6e308; ///< of numbers and sizes
    double most = 1.6e308;
    bool isNonZero = false; ///< 0 is refused
    double step = 0.0;      ///< of an arrow key; 0: 1 with a unit, else by the extent
    int decimals = -1;      ///< digits shown behind the point; below 0: as many as there are
    int digits = 0;         ///< significant ones shown, of numbers that are computed; 0: all
    XFieldMeasure measure = XFieldMeasure::Other; ///< decides on unit and digits, unless Other
    int places = -1;           ///< of coordinates and sizes: digits behind the point; below 0: all
    const char* unit = "";     ///< may stand behind a typed number
    const char* whenZero = ""; ///< what 0 stands for: shown in place of it, in an empty box
    const char* tip = "";
    XChoicePicture picture = XChoicePicture::None;
    std::function<std::vector<tagXChoice>(const XvcObj&)> choices{};

    void Copy(XvcObj& to, const XvcObj& from) const;
};

/// The vertices of a class of objects.
struct tagXVertexAccess
{
    std::function<XVertexArray(const XvcObj&)> get; ///< empty: the class has no list of them
    std::function<void(XvcObj&, const XVertexArray&)> set;
    const char* noun = "vertex";
    const char* plural = "vertices";
    int least = 0; ///< fewer are refused
};

/// What a dialog edits.
struct tagXObjectForm
{
    XString title; ///< of the window
    XString page;  ///< of the page of its own fields
    std::vector<tagXObjectField> fields;
    tagXVertexAccess vertices;
};
