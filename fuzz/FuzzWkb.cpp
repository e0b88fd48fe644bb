#include "foundation/vector/XvcFactory.h"
#include "foundation/vector/XvcObj.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

void Require(bool holds)
{
    if (!holds) std::abort();
}

} // namespace

/// Reads any bytes as the geometry of each class that has one. A refusal leaves a sentence; what was
/// read has a range and a text, and was not longer than the bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // exactly so large, that a byte too many is seen
    const std::unique_ptr<unsigned char[]> bytes(new unsigned char[size]);
    std::copy(data, data + size, bytes.get());
    for (const char* name :
         {"XvcPoint", "XvcMPoint", "XvcPolypoint", "XvcPolyline", "XvcMPolyline", "XvcLine",
          "XvcMLine", "XvcPolygon", "XvcMPolygon", "XvcSymbol", "XvcMSymbol", "XvcMeasureDist",
          "XvcMeasureArea", "XvcGroup", "XvcGroup2", "XvcRectangle", "XvcEllipse"}) {
        const auto object = XfnNewVectorObject(name);
        Require(object != nullptr);
        std::size_t used = size;
        XString error;
        if (!object->ImportFromWkb(bytes.get(), used, error)) {
            Require(!error.IsEmpty() && used == size);
            continue;
        }
        Require(used <= size);
        object->CalcRange();
        object->ExportToWkt();
    }
    return 0;
}
