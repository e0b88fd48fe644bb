#include "foundation/vector/XBmpReader.h"
#include "foundation/vector/XvcDib.h"

#include <cstdint>
#include <cstdlib>

namespace {

void Require(bool holds)
{
    if (!holds) std::abort();
}

} // namespace

/// Reads any bytes as a BMP file. What was read is a picture that can be walked, set and drawn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tagXvcDib dib;
    XString message;
    if (!XfnReadBmp(data, size, dib, message)) {
        Require(!message.IsEmpty() && !dib.bits);
        return 0;
    }
    Require(message.IsEmpty() && dib.bits && dib.GetWidth() > 0 && dib.GetHeight() > 0);
    Require(!dib.hasAlpha || dib.info.bmiHeader.biBitCount == 32);
    unsigned sum = 0;
    for (int row = 0; row < dib.GetHeight(); row += dib.GetHeight() / 64 + 1) {
        const unsigned char* bytes = dib.GetRow(row);
        for (std::size_t i = 0; i < dib.GetRowBytes(); i += dib.GetRowBytes() / 64 + 1)
            sum += bytes[i];
    }
    tagXvcDib again;
    Require(again.SetInfo(dib.info, message) && again.GetBitsBytes() == dib.GetBitsBytes());
    Require(again.GetColourCount() == dib.GetColourCount() && sum <= 255u * 64u * 64u);
    return 0;
}
