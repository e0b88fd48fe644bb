#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XTextStyle.h"
#include "foundation/vector/XvcBase.h"

#include <memory>

class QString;
class XvcLayer;
class XvcObj;

/// A place on a sheet, in its world: one unit a pixel, y upwards, the origin in the upper left corner.
struct tagXSheetCell
{
    double left, bottom, width, height;

    double GetRight() const { return left + width; }
    double GetTop() const { return bottom + height; }
    double GetMiddleX() const { return left + width / 2.0; }
    double GetMiddleY() const { return bottom + height / 2.0; }
    double GetX(double share) const { return left + width * share; } ///< 0 left, 1 right
    double GetY(double share) const { return bottom + height * share; }
};

/// A sheet of vector objects, each in a cell with its name below, drawn as a view draws them: base,
/// vertex buffer, back buffer.
class XVectorSheet
{
public:
    explicit XVectorSheet(int widthPx);
    ~XVectorSheet();

    void AddHeading(const char* text); ///< begins a new row of cells
    /// The next place in the row; a new row where there is no room left.
    tagXSheetCell AddCell(double width, double height, const XString& name);
    void Add(std::unique_ptr<XvcObj> object);
    void AddCaption(double x, double y, const XString& text, double height, int align);

    /// Draws what there is and writes a PNG file. @return false when it cannot be written
    bool Save(const QString& path);

    static tagXTextStyle GetTextStyle(int weight = 400);

private:
    int m_width;
    double m_left; // of the next cell
    double m_top;  // of the row
    double m_rowHeight = 0.0;
    XvcBase m_base;
    XvcLayer* m_layer; // of the base
};

/// The sheets of all classes and styles: vector-shapes.png, vector-marks.png, vector-texts.png.
/// @return the name of the first that could not be written, or null
const char* XfnSaveVectorSheets(const QString& folder);

/// What stands on each.
void XfnFillShapeSheet(XVectorSheet& sheet);
void XfnFillMarkSheet(XVectorSheet& sheet);
void XfnFillTextSheet(XVectorSheet& sheet);
