#include "foundation/base/XNumber.h"

#include <cmath>
#include <cstdlib>
#include <string>

namespace {

void Require(bool holds)
{
    if (!holds) std::abort();
}

} // namespace

/// Reads numbers from any bytes and asks what a reader relies on: nothing behind the length is
/// touched, what is read is finite, its shortest text reads back, and the forms agree.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);

    double bounded = 0.0;
    const int used = XfnReadNumber(reinterpret_cast<const char*>(data), size, bounded);
    Require(used >= 0 && static_cast<std::size_t>(used) <= size && std::isfinite(bounded));
    if (used > 0) {
        double again = 0.0;
        Require(XfnReadNumber(text.data(), static_cast<std::size_t>(used), again) == used);
        Require(again == bounded);
        Require(XfnToDouble(XfnFormatShortest(bounded)) == bounded);
    } else {
        Require(bounded == 0.0);
    }

    double ended = 0.0;
    if (text.find('\0') == std::string::npos) {
        Require(XfnReadNumber(text.c_str(), ended) == used && ended == bounded);
    }
    double box = 0.0;
    XfnReadBoxNumber(text.c_str(), box);
    Require(std::isfinite(box));

    std::int64_t whole = 0;
    const int wholeUsed = XfnReadInteger(text.c_str(), whole);
    if (wholeUsed > 0) Require(XfnToInt(XfnFormat("%d", whole)) == XfnToInt(text.c_str()));

    // any text may reach a format: nothing but the arguments is read
    XfnFormat(text.c_str(), 1, 2.5, "three", bounded);
    return 0;
}
