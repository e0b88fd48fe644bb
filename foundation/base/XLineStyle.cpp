#include "foundation/base/XLineStyle.h"

namespace {

struct tagEntry
{
    const char* name;
    std::uint16_t pattern;
};

constexpr tagEntry kEntries[tagXLineStyle::kPredefinedCount] = {
    {"Solid", 0xFFFF},         {"Rubber band", 0xF0F0},  {"Selection", 0xCCCC},
    {"Dash", 0xFFF0},          {"Dot", 0x8888},          {"None", 0x0000},
    {"Dash dot", 0xFF18},      {"Dash dot dot", 0xFC92}, {"Long dash", 0xFFFC},
    {"Long dash dot", 0xFFE4}, {"Sparse dot", 0x8080},
};

bool IsPredefined(int index)
{
    return index >= 0 && index < tagXLineStyle::kPredefinedCount;
}

} // namespace

void tagXLineStyle::SetStyle(int index)
{
    style = IsPredefined(index) ? index : kSolid;
    pattern = kEntries[style].pattern;
}

void tagXLineStyle::SetStyle(unsigned short newPattern, int newStyle)
{
    pattern = newPattern;
    style = newStyle;
}

const char* tagXLineStyle::GetName(int index)
{
    return IsPredefined(index) ? kEntries[index].name : nullptr;
}
