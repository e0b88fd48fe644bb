#include "foundation/raster/XDrawTables.h"

#include "foundation/raster/XRasterTypes.h"

#include <bit>

namespace {

/// Equal bit for bit: a NaN that stands for "none" equals another one.
int IsSameCut(const tagXCut<double>& a, const tagXCut<double>& b)
{
    const auto bits = [](const tagXCut<double>& cut) {
        return std::array<std::uint64_t, 5>{
            std::bit_cast<std::uint64_t>(cut.low), std::bit_cast<std::uint64_t>(cut.scale),
            std::bit_cast<std::uint64_t>(cut.offset), std::bit_cast<std::uint64_t>(cut.null),
            std::bit_cast<std::uint64_t>(cut.transparent)};
    };
    return bits(a) == bits(b);
}

} // namespace

const XDrawTableCache::tagTable* XDrawTableCache::GetTable(int ch, int dataType,
                                                           const tagXCut<double>& cut)
{
    if (!XfnIsRealType(dataType) || XfnGetDataTypeSize(dataType) > 2) return nullptr;
    std::shared_ptr<const tagTable>& kept = m_tables[ch];
    if (kept && kept->dataType == dataType && IsSameCut(kept->cut, cut)) return kept.get();
    auto table = std::make_shared<tagTable>();
    table->dataType = dataType;
    table->cut = cut;
    table->states.resize(XfnGetDataTypeSize(dataType) == 1 ? 256 : 65536);
    table->isEveryData = XfnFillCutTable(dataType, cut, table->states.data());
    kept = std::move(table);
    return kept.get();
}

const std::uint8_t* XDrawTableCache::GetComponents(int ch,
                                                   const std::array<std::uint8_t, 256>& bytes)
{
    std::shared_ptr<const tagComponents>& kept = m_components[ch];
    if (!m_tables[ch]) return nullptr;
    if (kept && kept->table == m_tables[ch] && kept->bytes == bytes) return kept->components.data();
    auto made = std::make_shared<tagComponents>();
    made->bytes = bytes;
    made->table = m_tables[ch];
    const std::vector<std::uint16_t>& states = made->table->states;
    made->components.resize(states.size());
    XfnFillComponents(states.data(), static_cast<int>(states.size()), bytes.data(),
                      made->components.data());
    kept = std::move(made);
    return kept->components.data();
}
