#include "foundation/platform/XFileFilter.h"

#include "foundation/platform/XQtText.h"

#include <gmock/gmock.h>

#include <string>

namespace {

std::string Describe(const XFileFilter& filter)
{
    return XfnFromQString(filter.GetNameFilters().join(QStringLiteral(";;"))).GetString();
}

TEST(FileFilter, NameFilters)
{
    const struct
    {
        const char* name;
        const char* text;
        const char* nameFilters;
    } cases[] = {
        {"two entries", "A (*.a;*.b)|*.a;*.b|All files(*.*)|*.*||", "A (*.a *.b);;All files (*)"},
        {"empty pattern and no end", "XDM files(*.xdm)|*.XDM;|", "XDM files (*.XDM)"},
        {"one bar more", "BMP(*.bmp)|*.bmp;|JPEG(*.jpg)|*.jpg;|", "BMP (*.bmp);;JPEG (*.jpg)"},
        {"brackets that are no patterns stay", "Image (raw)|*.raw||", "Image (raw) (*.raw)"},
        {"repetitions and blanks go", "T| *.tif ; *.TIF;*.tiff||", "T (*.tif *.tiff)"},
        {"a label alone takes everything", "Any", "Any (*)"},
        {"only brackets", "(*.x)|*.x||", "(*.x) (*.x)"},
        {"empty", "", ""},
        {"bars only", "||||", ""},
        {"Korean label", "영상(*.img)|*.img||", "영상 (*.img)"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(Describe(XFileFilter(row.text)), row.nameFilters) << row.name;
    }
}

TEST(FileFilter, ExtensionsAndEntries)
{
    const XFileFilter filter("TIFF|*.tif;*.tiff|DTED|*.dt?|Star|*a*b*c|All|*.*||");
    EXPECT_EQ(filter.GetExtension(0), "tif");
    for (const int index : {1, 2, 3, -1, 4})
        EXPECT_EQ(filter.GetExtension(index), "") << index;
    EXPECT_EQ(filter.FindNameFilter(filter.GetNameFilter(2)), 2);
    EXPECT_EQ(filter.FindNameFilter(QStringLiteral("x")), -1);

    const std::pair<const char*, int> cases[] = {
        {"/data/IMAGE.TIFF", 0}, {"n37.dt1", 1}, {"n37.dt", 3},        {"xxabbxc", 2},
        {"/a.tif/plain", 3},     {"", 3},        {"aaaaaaaaaaaab", 3}, {".tif", 0}};
    for (const auto& [path, entry] : cases)
        EXPECT_EQ(filter.FindEntry(path), entry) << path;
    EXPECT_EQ(XFileFilter("TIFF|*.tif||").FindEntry("a.img"), -1);
}

} // namespace
