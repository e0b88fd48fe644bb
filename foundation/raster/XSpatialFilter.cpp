#include "foundation/raster/XSpatialFilter.h"

#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSpatialFilterKernels.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <vector>

namespace {

constexpr int kMinKernel = 3;
constexpr int kMaxKernel = 11;

} // namespace

tagXSpatialFilter XfnMakeSpatialFilter(int type, int kernelSize, double amount)
{
    tagXSpatialFilter filter;
    if (type > kXFilterNone && type <= kXFilterLaplacian) filter.type = type;
    filter.kernelSize = (std::clamp(kernelSize, kMinKernel, kMaxKernel) - 1) / 2 * 2 + 1;
    filter.amount = amount;
    return filter;
}

int XfnGetFilterRadius(const tagXSpatialFilter& filter)
{
    return filter.type == kXFilterNone ? 0 : (filter.kernelSize - 1) / 2;
}

int XfnGetFilteredType(const tagXSpatialFilter& filter, int dataType)
{
    if (!XfnIsRealType(dataType)) return kXTypeNone;
    if (filter.type != kXFilterSobel && filter.type != kXFilterLaplacian) return dataType;
    return dataType == kXUInt32 || dataType == kXInt32 || dataType == kXDouble ? kXDouble : kXFloat;
}

int XfnFilterBlock(const tagXSpatialFilter& filter, int dataType, const void* src, int width,
                   int height, double nullValue, void* dst, double dstNull)
{
    if (width < 1 || height < 1) return 0;
    const std::size_t wide = static_cast<std::size_t>(width) + 2 * XfnGetFilterRadius(filter);
    const std::size_t high = static_cast<std::size_t>(height) + 2 * XfnGetFilterRadius(filter);
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return XfnDispatchRealType<int>(dataType, [&](auto* type) {
        using T = std::remove_cv_t<std::remove_pointer_t<decltype(type)>>;
        using R = std::conditional_t<(sizeof(T) == 4 && !std::is_same_v<T, float>) ||
                                         std::is_same_v<T, double>,
                                     double, float>;
        std::vector<R> reals(wide * high);
        std::vector<R> made(count);
        std::vector<R> scratch;
        XfnLoadReals(static_cast<const T*>(src), reals.size(), nullValue, reals.data());
        const std::size_t origin =
            (wide + 1) * static_cast<std::size_t>(XfnGetFilterRadius(filter));
        XfnFilterReals(filter, reals.data() + origin, static_cast<std::ptrdiff_t>(wide), width,
                       height, made.data(), static_cast<std::ptrdiff_t>(width), scratch);
        if (XfnGetFilteredType(filter, dataType) == dataType)
            XfnStoreReals(made.data(), count, dstNull, static_cast<T*>(dst));
        else
            XfnStoreReals(made.data(), count, dstNull, static_cast<R*>(dst));
        return 1;
    });
}

void XfnRepeatRim(void* block, int sampleSize, int width, int height, int left, int right, int top,
                  int bottom)
{
    const std::size_t size = static_cast<std::size_t>(sampleSize);
    const std::size_t rowBytes = size * static_cast<std::size_t>(width);
    unsigned char* base = static_cast<unsigned char*>(block);
    for (int y = top; y < height - bottom; ++y) {
        unsigned char* row = base + rowBytes * static_cast<std::size_t>(y);
        const unsigned char* first = row + size * static_cast<std::size_t>(left);
        const unsigned char* last = row + size * static_cast<std::size_t>(width - right - 1);
        for (int x = 0; x < left; ++x)
            std::memcpy(row + size * static_cast<std::size_t>(x), first, size);
        for (int x = width - right; x < width; ++x)
            std::memcpy(row + size * static_cast<std::size_t>(x), last, size);
    }
    for (int y = 0; y < top; ++y)
        std::memcpy(base + rowBytes * static_cast<std::size_t>(y),
                    base + rowBytes * static_cast<std::size_t>(top), rowBytes);
    for (int y = height - bottom; y < height; ++y)
        std::memcpy(base + rowBytes * static_cast<std::size_t>(y),
                    base + rowBytes * static_cast<std::size_t>(height - bottom - 1), rowBytes);
}
