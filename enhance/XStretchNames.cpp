#include "enhance/XStretchNames.h"

#include "foundation/raster/XStretchLUT.h"

namespace {

constexpr tagXStretchName kStretchTypes[] = {
    {kXStretchLinear, "Linear"},
    {kXStretchPiecewise, "Piecewise Linear"},
    {kXStretchInverseSquare, "Inverse Square"},
    {kXStretchLogarithmic, "Logarithmic"},
    {kXStretchEqualization, "Equalization"},
    {kXStretchGaussian, "Gaussian"},
    {kXStretchSquareRoot, "Square Root"},
};
constexpr tagXStretchName kCutTypes[] = {{1, "Min-Max"}, {2, "Gaussian 98%"}, {3, "Gaussian 95%"}};
constexpr tagXStretchName kCoverages[] = {{0, "Band"}, {1, "Visible region"}, {2, "ROI"}};

} // namespace

std::span<const tagXStretchName> XfnGetStretchTypeNames()
{
    return kStretchTypes;
}

std::span<const tagXStretchName> XfnGetCutTypeNames()
{
    return kCutTypes;
}

std::span<const tagXStretchName> XfnGetStretchCoverageNames()
{
    return kCoverages;
}

const char* XfnGetChannelLetter(int mode, int channel)
{
    constexpr const char* kLetters[][3] = {{"G", "", ""}, {"B", "G", "R"}, {"H", "S", "I"}};
    return mode >= 0 && mode <= 2 && channel >= 0 && channel <= 2 ? kLetters[mode][channel] : "";
}
