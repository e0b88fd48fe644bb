#include "foundation/raster/XDMBandComplex.h"

#include "foundation/raster/XComplexPartKernels.h"
#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XRasterTypes.h"

#include <limits>
#include <type_traits>

X_IMPLEMENT_CLASS(XDMBandComplex, XDMBandDerived)

int XDMBandComplex::Create(XDMBand* inner, int part)
{
    if (!inner || !XfnIsComplexType(inner->GetDataType()) || part < kXComplexMagnitude ||
        part > kXComplexLogMagnitude)
        return 0;
    const int of = XfnGetPartType(inner->GetDataType());
    const int type = of == kXUInt32 || of == kXInt32 || of == kXDouble ? kXDouble : kXFloat;
    if (!SetInnerBand(inner, type, 0, 0)) return 0;
    m_part = part;
    SetNullValue(std::numeric_limits<double>::quiet_NaN());
    return 1;
}

std::shared_ptr<const XTile> XDMBandComplex::ReadTile(int level, int tx, int ty,
                                                      const std::atomic<int>* abort,
                                                      XString& message) const
{
    const std::shared_ptr<const XTile> source =
        GetInnerBand()->GetTile(level, tx, ty, abort, message);
    if (!source) return nullptr;
    const auto tile =
        std::make_shared<XTile>(GetDataType(), source->GetWidth(), source->GetHeight());
    const std::size_t count = static_cast<std::size_t>(source->GetWidth()) *
                              static_cast<std::size_t>(source->GetHeight());
    XfnDispatchRealType<int>(XfnGetPartType(source->GetDataType()), [&](auto* type) {
        using T = std::remove_cv_t<std::remove_pointer_t<decltype(type)>>;
        using R = std::conditional_t<(sizeof(T) == 4 && !std::is_same_v<T, float>) ||
                                         std::is_same_v<T, double>,
                                     double, float>;
        bool hasNull = false;
        const T null = XfnNullSample<T>(GetInnerBand()->GetNullValue(), hasNull);
        void* out = tile->GetFillData();
        XfnConvertComplex(m_part, static_cast<const T*>(source->GetData()), count, hasNull, null,
                          static_cast<R*>(out));
        return 1;
    });
    return tile;
}
