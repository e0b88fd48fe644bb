#include "foundation/base/XTextStyle.h"

#include "foundation/base/XCodePage.h"

#include <cstring>

void tagXFontRecord::SetFaceName(const char* name)
{
    const int length = name ? static_cast<int>(std::strlen(name)) : 0;
    const int count = XfnFitToCharacter(name, length, static_cast<int>(sizeof faceName) - 1);
    char stored[sizeof faceName] = {};
    if (count > 0) std::memcpy(stored, name, count);
    std::memcpy(faceName, stored, sizeof faceName);
}
