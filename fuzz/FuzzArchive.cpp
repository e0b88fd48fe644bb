#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XMemFile.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace {

void Require(bool holds)
{
    if (!holds) std::abort();
}

/// Reads values as the first bytes order, each into its own kind.
void Load(XArchive& archive, std::string_view orders)
{
    for (const char order : orders) {
        std::uint16_t word = 0;
        std::uint32_t number = 0;
        double real = 0.0;
        XString text;
        char bytes[64];
        switch (order & 7) {
        case 0:
            archive >> word;
            break;
        case 1:
            archive >> number;
            break;
        case 2:
            archive >> real;
            break;
        case 3:
            archive >> text;
            break;
        case 4:
            archive.Read(bytes, static_cast<unsigned char>(order) >> 3);
            break;
        case 5:
            archive.FillBuffer(static_cast<unsigned char>(order) >> 4);
            break;
        case 6:
            archive.Flush();
            break;
        case 7:
            number = archive.ReadCount(4);
            if (const auto values = std::make_unique<std::uint32_t[]>(number)) {
                for (std::uint32_t i = 0; i < number; ++i)
                    archive >> values[i];
            }
            break;
        }
        Require(archive.GetFile()->GetPosition() <= archive.GetFile()->GetLength());
    }
}

} // namespace

/// One byte for the buffer size, one for the number of orders, the orders, then the archive.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    if (size < 2) return 0;
    const std::size_t orders = data[1] < size - 2 ? data[1] : size - 2;
    XMemFile file;
    file.Attach(data + 2 + orders, size - 2 - orders);
    try {
        XArchive archive(&file, XArchive::kLoad, data[0]);
        Load(archive, {reinterpret_cast<const char*>(data) + 2, orders});
    } catch (XFileException& e) {
        Require(e.m_cause == XFileException::kEndOfFile);
        e.Delete();
    }
    return 0;
}
