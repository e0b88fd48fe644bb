#include "foundation/vector/XvcFactory.h"

#include "foundation/vector/XvcArc.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcAxis.h"
#include "foundation/vector/XvcBalloon.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEMF.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcGroup2.h"
#include "foundation/vector/XvcLeaderLine.h"
#include "foundation/vector/XvcLegend.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcMLine.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMPolyline.h"
#include "foundation/vector/XvcMSymbol.h"
#include "foundation/vector/XvcMText.h"
#include "foundation/vector/XvcMeasureAngle.h"
#include "foundation/vector/XvcMeasureArea.h"
#include "foundation/vector/XvcMeasureDist.h"
#include "foundation/vector/XvcMeasurePoint.h"
#include "foundation/vector/XvcMeasureRange.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcRaster.h"
#include "foundation/vector/XvcRectangle.h"
#include "foundation/vector/XvcScaleBar.h"
#include "foundation/vector/XvcSymbolDef.h"
#include "foundation/vector/XvcTextBox.h"

#include <cstring>

namespace {

struct Row
{
    const char* name;
    std::unique_ptr<XvcObj> (*make)();
    std::unique_ptr<XvcObj> (*clone)(const XvcObj& object);
};

template <class Class>
std::unique_ptr<XvcObj> Make()
{
    return std::make_unique<Class>();
}

template <class Class>
std::unique_ptr<XvcObj> Clone(const XvcObj& object)
{
    return std::make_unique<Class>(static_cast<const Class&>(object));
}

// A class that is stored or lies in a group has its row here.
#define X_VECTOR_CLASS(Name)                                                                       \
    {                                                                                              \
#Name, &Make < Name>, &Clone < Name>                                                       \
    }
constexpr Row kRows[] = {
    X_VECTOR_CLASS(XvcPoint),        X_VECTOR_CLASS(XvcMPoint),
    X_VECTOR_CLASS(XvcPolypoint),    X_VECTOR_CLASS(XvcLine),
    X_VECTOR_CLASS(XvcMLine),        X_VECTOR_CLASS(XvcPolyline),
    X_VECTOR_CLASS(XvcMPolyline),    X_VECTOR_CLASS(XvcPolygon),
    X_VECTOR_CLASS(XvcMPolygon),     X_VECTOR_CLASS(XvcBspline),
    X_VECTOR_CLASS(XvcEllipse),      X_VECTOR_CLASS(XvcArc),
    X_VECTOR_CLASS(XvcArcClosed),    X_VECTOR_CLASS(XvcRectangle),
    X_VECTOR_CLASS(XvcGroup),        X_VECTOR_CLASS(XvcGroup2),
    X_VECTOR_CLASS(XvcBitmap),       X_VECTOR_CLASS(XvcRaster),
    X_VECTOR_CLASS(XvcEMF),          X_VECTOR_CLASS(XvcSymbol),
    X_VECTOR_CLASS(XvcMSymbol),      X_VECTOR_CLASS(XvcSymbolDef),
    X_VECTOR_CLASS(XvcMeasurePoint), X_VECTOR_CLASS(XvcMeasureDist),
    X_VECTOR_CLASS(XvcMeasureArea),  X_VECTOR_CLASS(XvcMeasureAngle),
    X_VECTOR_CLASS(XvcMeasureRange), X_VECTOR_CLASS(XvcNorthArrow),
    X_VECTOR_CLASS(XvcScaleBar),     X_VECTOR_CLASS(XvcLeaderLine),
    X_VECTOR_CLASS(XvcLegend),       X_VECTOR_CLASS(XvcAxis),
    X_VECTOR_CLASS(XvcText),         X_VECTOR_CLASS(XvcMText),
    X_VECTOR_CLASS(XvcTextBox),      X_VECTOR_CLASS(XvcBalloon),
};
#undef X_VECTOR_CLASS

const Row* FindRow(const char* className)
{
    if (!className) return nullptr;
    for (const Row& row : kRows) {
        if (std::strcmp(row.name, className) == 0) return &row;
    }
    return nullptr;
}

} // namespace

std::unique_ptr<XvcObj> XfnNewVectorObject(const char* className)
{
    const Row* row = FindRow(className);
    return row ? row->make() : nullptr;
}

std::unique_ptr<XvcObj> XfnCloneVectorObject(const XvcObj* object)
{
    const Row* row = object ? FindRow(object->GetRuntimeClass()->m_lpszClassName) : nullptr;
    return row ? row->clone(*object) : nullptr;
}

std::vector<const char*> XfnGetVectorClassNames()
{
    std::vector<const char*> names;
    for (const Row& row : kRows)
        names.push_back(row.name);
    return names;
}
