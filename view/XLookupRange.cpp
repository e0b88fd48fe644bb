#include "view/XLookupRange.h"

void XfnLookupRange(const unsigned char* table, int dataType, double bandMin, double bandMax,
                    double& first, double& last)
{
    int begin = 0;
    while (begin < 255 && table[begin + 1] == table[0])
        ++begin;
    int end = 255;
    while (end > 0 && table[end - 1] == table[255])
        --end;
    if (end != 255) ++end;

    const auto toValue = [=](int index) -> double {
        switch (dataType) {
        case 1:
            return index;
        case 2:
            return index - 127;
        default:
            return bandMin + (bandMax - bandMin) * index / 255.0;
        }
    };
    first = toValue(begin);
    last = toValue(end);
}
