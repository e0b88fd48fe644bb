#include "edit/XPixelWarehouse.h"

#include <algorithm>

namespace {

const char kNoHeaderMark = 0;

} // namespace

// An address that no picture has, so that two records without a header are not taken for one.
const void* const XPixelWarehouse::kNoHeader = &kNoHeaderMark;

std::vector<XPixelWarehouse::Record>::iterator XPixelWarehouse::Find(const void* pixels,
                                                                     const void* header)
{
    return std::find_if(m_records.begin(), m_records.end(), [&](const Record& record) {
        return record.pixels == pixels || (header != kNoHeader && record.header == header);
    });
}

void XPixelWarehouse::Add(const void* pixels, const void* header)
{
    const auto found = Find(pixels, header);
    if (found != m_records.end()) {
        ++found->count;
    } else {
        m_records.push_back({pixels, header, 1});
    }
}

int XPixelWarehouse::Release(const void* pixels, const void* header)
{
    const auto found = Find(pixels, header);
    if (found == m_records.end()) return 0;
    const int before = found->count--;
    if (before == 1) m_records.erase(found);
    return before;
}
