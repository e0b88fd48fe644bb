#include "host/XActionTable.h"
#include "host/XBandLabels.h"
#include "host/XOpenErrors.h"
#include "host/XRasterFilters.h"
#include "host/XRecentFiles.h"
#include "host/XViewHistory.h"
#include "host/XWindowPlacement.h"

#include "foundation/platform/XFileFilter.h"
#include "foundation/platform/XQtText.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(XRecentFilesTest, NewestFirstWithoutRepeatsUpToTheLimit)
{
    XRecentFiles recent(3);
    recent.SetPaths({"/a", "", "/b", "/a", "/c", "/d"});
    EXPECT_EQ(recent.GetPaths(), QStringList({"/a", "/b", "/c"}));
    recent.Add("/b");
    EXPECT_EQ(recent.GetPaths(), QStringList({"/b", "/a", "/c"}));
    recent.Add("/e");
    EXPECT_EQ(recent.GetPaths(), QStringList({"/e", "/b", "/a"}));
    recent.MarkMissing("/b");
    EXPECT_TRUE(recent.IsMissing("/b"));
    recent.MarkMissing("/unknown");
    EXPECT_FALSE(recent.IsMissing("/unknown"));
    recent.Add("/b");
    EXPECT_FALSE(recent.IsMissing("/b")) << "opened again, so it is there";
    EXPECT_EQ(recent.GetMenuText(0), "&1 b - /");
    recent.Add("/x/a&b.tif");
    EXPECT_EQ(recent.GetMenuText(0), "&1 a&&b.tif - /x");
    EXPECT_EQ(recent.GetMenuText(9), "");
    recent.Clear();
    EXPECT_TRUE(recent.GetPaths().isEmpty());
}

TEST(XOpenErrorsTest, OneBoxForOneOrMany)
{
    XOpenErrors errors;
    EXPECT_EQ(errors.GetText(), "");
    errors.Add("/x/a.tif", "The file is empty.\n");
    EXPECT_EQ(errors.GetText(), "\"/x/a.tif\" was not opened.\n\nThe file is empty.");
    errors.Add("/x/b.tif", "Gone.");
    EXPECT_EQ(errors.GetText(), "2 files were not opened:\n\na.tif: The file is empty.\n"
                                "b.tif: Gone.");
    for (int i = 0; i < 40; ++i)
        errors.Add("/c", "No.");
    EXPECT_TRUE(errors.GetText().endsWith("and 30 more."));
    EXPECT_EQ(errors.GetText().count('\n'), 2 + XOpenErrors::kMaxListed);
}

tagXViewState At(double x, double scale = 1)
{
    return {x, -x, scale, scale};
}

TEST(XViewHistoryTest, WalksLikeABrowser)
{
    using Gesture = XViewHistory::Gesture;
    XViewHistory history;
    tagXViewState state = At(77);
    EXPECT_FALSE(history.GoBack(state));
    EXPECT_EQ(state.centreX, 77) << "untouched";
    for (const double x : {1.0, 2.0, 3.0})
        history.Record(At(x), Gesture::Jump, 0);
    history.Record(At(3), Gesture::Jump, 0); // the same place is no step
    ASSERT_TRUE(history.GoBack(state));
    EXPECT_EQ(state.centreX, 2);
    history.Record(At(2), Gesture::Continuous, 0); // the repaint that going back brings
    EXPECT_TRUE(history.CanGoForward());
    ASSERT_TRUE(history.GoForward(state));
    EXPECT_EQ(state.centreX, 3);
    history.GoBack(state);
    history.Record(At(9), Gesture::Jump, 0);
    EXPECT_FALSE(history.CanGoForward()) << "a new place drops what was ahead";
    history.Record({std::numeric_limits<double>::quiet_NaN(), 0, 1, 1}, Gesture::Jump, 0);
    history.Record(At(4, 0), Gesture::Jump, 0);
    ASSERT_TRUE(history.GoBack(state)) << "what is no place was not noted";
    EXPECT_EQ(state.centreX, 2);
    for (int i = 0; i < 300; ++i)
        history.Record(At(i + 10), Gesture::Jump, 0);
    int steps = 0;
    while (history.GoBack(state))
        ++steps;
    EXPECT_EQ(steps, static_cast<int>(XViewHistory::kLimit) - 1);
    EXPECT_EQ(state.centreX, 210);
}

TEST(XViewHistoryTest, ARunOfNotchesIsOneStep)
{
    using Gesture = XViewHistory::Gesture;
    XViewHistory history;
    history.Record(At(0), Gesture::Jump, 0);
    for (int i = 1; i <= 5; ++i)
        history.Record(At(i), Gesture::Continuous, 100 * i);
    history.Record(At(50), Gesture::Continuous, 500 + XViewHistory::kGestureGapMs + 1);
    tagXViewState state;
    history.Amend(At(51)); // a resize is no step
    ASSERT_TRUE(history.GoBack(state));
    EXPECT_EQ(state.centreX, 5);
    ASSERT_TRUE(history.GoBack(state));
    EXPECT_EQ(state.centreX, 0);
    history.GoForward(state);
    ASSERT_TRUE(history.GoForward(state));
    EXPECT_EQ(state.centreX, 51);
}

TEST(XWindowPlacementTest, TheWindowCanAlwaysBeReached)
{
    const QRect left(0, 0, 1920, 1050);
    const QRect right(1920, 100, 1280, 700);
    struct tagXRow
    {
        const char* name;
        QRect saved;
        QList<QRect> screens;
        QRect expected;
    };
    const tagXRow rows[] = {
        {"fits", {100, 50, 800, 600}, {left, right}, {100, 50, 800, 600}},
        {"on the second screen", {2000, 200, 800, 500}, {left, right}, {2000, 200, 800, 500}},
        {"the second screen has gone", {2000, 200, 800, 500}, {left}, {1120, 200, 800, 500}},
        {"larger than the screen", {0, 0, 3000, 2000}, {left}, {0, 0, 1920, 1050}},
        {"title above the screen", {10, -300, 800, 600}, {left}, {10, 0, 800, 600}},
        {"between two, most on the right",
         {1800, 0, 1200, 600},
         {left, right},
         {1920, 100, 1200, 600}},
        {"no screen", {5, 6, 7, 8}, {}, {5, 6, 7, 8}},
    };
    for (const tagXRow& row : rows)
        EXPECT_EQ(XfnPlaceWindow(row.saved, row.screens), row.expected) << row.name;
    const QRect small(0, 0, 1366, 768);
    EXPECT_EQ(XfnPlaceWindow({83, -16, 1200, 800}, {small}, {2, 40, 2, 3}),
              QRect(83, 40, 1200, 725))
        << "with its frame";
}

TEST(XRasterFiltersTest, AllSupportedFirstThenEachThenEveryFile)
{
    const XFileFilter filter(XfnFromQString(XfnRasterFilter()));
    ASSERT_GT(filter.GetCount(), 5);
    EXPECT_STREQ(filter.GetAt(0).label, "All supported rasters");
    EXPECT_STREQ(filter.GetAt(filter.GetCount() - 1).label, "All files (*)");
    std::size_t patterns = 0;
    for (int i = 1; i + 1 < filter.GetCount(); ++i)
        patterns += filter.GetAt(i).patterns.size();
    EXPECT_EQ(filter.GetAt(0).patterns.size(), patterns);
    for (const char* name : {"a.TIF", "b.img", "c.Dt2", "d.xdm", "e.jp2", "f.nc", "g.HDF"}) {
        EXPECT_TRUE(XfnHasRasterSuffix(name)) << name;
        EXPECT_EQ(filter.FindEntry(name), 0) << name;
    }
    for (const char* name : {"a.txt", "tif", "a.tif.aux.xml", ""})
        EXPECT_FALSE(XfnHasRasterSuffix(name)) << name;
}

TEST(XRasterFiltersTest, ADroppedFolderGivesItsRasters)
{
    QTemporaryDir dir;
    QDir(dir.path()).mkpath("full/deep");
    QDir(dir.path()).mkpath("empty");
    for (const char* name : {"full/b.tif", "full/A.IMG", "full/readme.txt", "full/deep/c.tif"})
        ASSERT_TRUE(QFile(dir.filePath(name)).open(QIODevice::WriteOnly));
    const tagXDroppedPaths sorted = XfnSortDroppedPaths(
        {dir.filePath("note.txt"), dir.filePath("full"), dir.filePath("empty")});
    EXPECT_EQ(sorted.files, QStringList{dir.filePath("note.txt")})
        << "told by the reader, not here";
    EXPECT_EQ(sorted.folderFiles,
              QStringList({dir.filePath("full/A.IMG"), dir.filePath("full/b.tif")}));
    EXPECT_EQ(sorted.emptyFolders, QStringList{dir.filePath("empty")});
    const QString question = XfnFolderQuestion(sorted.folderFiles);
    EXPECT_TRUE(question.contains("2 rasters") && question.contains("A.IMG"));
}

const std::vector<tagXBandLabel>& SixBands()
{
    static const std::vector<tagXBandLabel> labels = {
        {"Blue", 485}, {"", 560}, {"", 662.4}, {"nir 830 nm", 830.2}, {"", 1650}, {"", 11450}};
    return labels;
}

TEST(XBandLabelsTest, TextsNameNumberNameAndWavelength)
{
    const char* const expected[] = {"1 - Blue, 485 nm", "2 - 560 nm",  "3 - 662.4 nm",
                                    "4 - nir 830 nm",   "5 - 1650 nm", "6 - 11.45 um"};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(XfnBandLabelText(i, SixBands()[static_cast<std::size_t>(i)]), expected[i]);
    EXPECT_EQ(XfnBandLabelText(11, {}), "12");
}

TEST(XBandLabelsTest, TypedTextFindsTheBand)
{
    struct tagXRow
    {
        const char* text;
        int band;
    };
    const tagXRow rows[] = {
        {"3", 2},
        {" 6 ", 5},
        {"0", -1},
        {"7", -1},
        {"-1", -1},
        {"0.66 um", 2},
        {"0,66 um", 2},
        {"1.6um", 4},
        {"662nm", 2},
        {"99999 nm", 5},
        {"blue", 0},
        {"", -1},
        {"2 - 560 nm", 1},
        {"green", -1},
        {"3 nm x", -1},
        {"1e400 nm", -1},
        {"0.83 \xC2\xB5m", 3},
    };
    for (const tagXRow& row : rows)
        EXPECT_EQ(XfnFindBand(QString::fromUtf8(row.text), SixBands()), row.band) << row.text;
    EXPECT_EQ(XfnFindBand("500 nm", {{"a", 0}, {"b", 0}}), -1) << "no band tells its wavelength";
}

TEST(XBandLabelsTest, PresetsNeedBandsThatAreNear)
{
    int rgb[3] = {9, 9, 9};
    ASSERT_TRUE(XfnPresetBands(BandPreset::Natural, SixBands(), rgb));
    EXPECT_EQ(rgb[0] * 100 + rgb[1] * 10 + rgb[2], 210);
    ASSERT_TRUE(XfnPresetBands(BandPreset::FalseColour, SixBands(), rgb));
    EXPECT_EQ(rgb[0] * 100 + rgb[1] * 10 + rgb[2], 321);
    ASSERT_TRUE(XfnPresetBands(BandPreset::ShortWave, SixBands(), rgb));
    EXPECT_EQ(rgb[0] * 100 + rgb[1] * 10 + rgb[2], 432);
    EXPECT_FALSE(XfnPresetBands(BandPreset::Natural, {{"", 550}, {"", 560}, {"", 570}}, rgb));
    EXPECT_EQ(rgb[0], 4) << "unchanged";
}

TEST(XActionTableTest, EveryCommandCanBeReachedAndNoKeyMeansTwo)
{
    QSet<QString> ids;
    QSet<QString> keys;
    for (const tagXActionRow& row : XfnActionTable()) {
        EXPECT_FALSE(ids.contains(row.id)) << row.id;
        ids.insert(row.id);
        EXPECT_NE(QString(row.tip), "") << row.id;
        for (const auto* list : {&row.keys, &row.imageKeys}) {
            for (const char* key : *list) {
                EXPECT_FALSE(keys.contains(key)) << key;
                keys.insert(key);
            }
        }
    }
    QSet<QString> reached = {"file.clearRecent"}; // stands in the recent menu
    for (const tagXMenuRow& menu : XfnMenuTable()) {
        QSet<QChar> mnemonics;
        for (const char* entry : menu.entries) {
            const QString id(entry);
            if (id == "-" || id.startsWith('@')) continue;
            EXPECT_TRUE(ids.contains(id)) << entry;
            reached.insert(id);
            for (const tagXActionRow& row : XfnActionTable()) {
                if (id != row.id) continue;
                const QString text(row.text);
                const QChar mnemonic = text[text.indexOf('&') + 1].toLower();
                EXPECT_FALSE(mnemonics.contains(mnemonic)) << menu.title << ' ' << row.text;
                mnemonics.insert(mnemonic);
            }
        }
    }
    for (const tagXToolBarRow& bar : XfnToolBarTable())
        for (const char* entry : bar.entries)
            EXPECT_TRUE(QString(entry) == "-" || ids.contains(entry)) << entry;
    EXPECT_EQ(reached, ids);
    const QList<std::pair<QString, QString>> map = XfnKeyMap();
    EXPECT_TRUE(map.contains(std::pair<QString, QString>("Copy Position", "Ctrl+Shift+C")));
}

} // namespace
