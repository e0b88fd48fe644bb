#include "vecprop/XObjectDraft.h"

#include "foundation/vector/XvcArc.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcRaster.h"
#include "foundation/vector/XvcRectangle.h"
#include "foundation/vector/XvcSymbol.h"
#include "foundation/vector/XvcText.h"

namespace {

struct Row
{
    XObjectDialog dialog;
    const XRuntimeClass* (*getClass)();
    std::unique_ptr<XvcObj> (*copy)(const XvcObj& object);
};

template <class Class>
constexpr Row MakeRow(XObjectDialog dialog)
{
    return {dialog, &Class::GetRuntimeClassStatic,
            [](const XvcObj& object) -> std::unique_ptr<XvcObj> {
                return std::make_unique<Class>(static_cast<const Class&>(object));
            }};
}

constexpr Row kRows[] = {
    MakeRow<XvcPoint>(XObjectDialog::Point),
    MakeRow<XvcLine>(XObjectDialog::Line),
    MakeRow<XvcPolyline>(XObjectDialog::Polyline),
    MakeRow<XvcPolygon>(XObjectDialog::Polygon),
    MakeRow<XvcPolypoint>(XObjectDialog::Polypoint),
    MakeRow<XvcEllipse>(XObjectDialog::Ellipse),
    MakeRow<XvcBitmap>(XObjectDialog::Bitmap),
    MakeRow<XvcText>(XObjectDialog::Text),
    MakeRow<XvcBspline>(XObjectDialog::Bspline),
    MakeRow<XvcSymbol>(XObjectDialog::Symbol),
    MakeRow<XvcArc>(XObjectDialog::Arc),
    MakeRow<XvcRectangle>(XObjectDialog::Rect),
    MakeRow<XvcArcClosed>(XObjectDialog::ArcClosed),
    MakeRow<XvcRaster>(XObjectDialog::Raster),
    MakeRow<XvcNorthArrow>(XObjectDialog::NorthArrow),
    MakeRow<XvcObj>(XObjectDialog::Object),
    MakeRow<XvcObj>(XObjectDialog::Group),
};

const Row& FindRow(XObjectDialog dialog)
{
    for (const Row& row : kRows)
        if (row.dialog == dialog) return row;
    return kRows[std::size(kRows) - 1];
}

} // namespace

int XfnIsObjectFor(XObjectDialog dialog, const XvcObj& object)
{
    return object.IsKindOf(FindRow(dialog).getClass());
}

std::unique_ptr<XvcObj> XfnMakeDraft(XObjectDialog dialog, const XvcObj& object)
{
    std::unique_ptr<XvcObj> draft = XfnCloneVectorObject(&object);
    // a class of the host's own is edited as the class of ours that it derives from
    return draft ? std::move(draft) : FindRow(dialog).copy(object);
}
