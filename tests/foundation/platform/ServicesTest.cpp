#include "foundation/base/XCodePage.h"
#include "foundation/platform/XQtText.h"
#include "foundation/platform/XUserSettings.h"
#include "tests/support/TestSettings.h"
#include "tests/support/XScriptedPrompts.h"

#include <gtest/gtest.h>

namespace {

TEST(QtText, RoundTripsInBothCodePages)
{
    const QString korean = QString::fromUtf8("영상 비교 Ä±");
    EXPECT_EQ(XfnFromQString(korean), "영상 비교 Ä±");
    EXPECT_EQ(XfnToQString(XfnFromQString(korean)), korean);
    EXPECT_EQ(XfnToQString(static_cast<const char*>(nullptr)), QString());
    EXPECT_EQ(XfnToQString("a\377b"), QString::fromUtf8("a\357\277\275b"));
    const XString withZero("a\0b", 3);
    EXPECT_EQ(XfnFromQString(XfnToQString(withZero)), withZero);

    ASSERT_TRUE(XfnSetCodePage(kXCodePageKorean));
    const QString hangul = QString::fromUtf8("뷁 영상");
    const XString narrow = XfnFromQString(hangul);
    EXPECT_EQ(narrow.GetLength(), 7) << "two bytes a syllable";
    EXPECT_EQ(XfnToQString(narrow), hangul);
    EXPECT_EQ(XfnFromQString(QString::fromUtf8("Ä")), "?");
    XfnSetCodePage(kXCodePageUtf8);
}

TEST(Prompts, WithoutAServiceEverythingIsRefused)
{
    ASSERT_EQ(XPrompts::Set(nullptr), nullptr);
    XPrompts* prompts = XPrompts::Get();
    ASSERT_NE(prompts, nullptr);
    prompts->Message(0, "unheard");
    tagXFilePrompt file;
    std::vector<XString> paths{"before"};
    XString path = "before";
    std::uint32_t colour = 7;
    EXPECT_FALSE(prompts->AskYesNo(0, "?"));
    EXPECT_EQ(prompts->AskYesNoCancel(0, "?"), XPrompts::XAnswer::Cancel);
    EXPECT_FALSE(prompts->OpenFiles(0, file, true, paths));
    EXPECT_TRUE(paths.empty());
    EXPECT_FALSE(prompts->OpenFile(0, file, path));
    EXPECT_FALSE(prompts->SaveFile(0, file, path));
    EXPECT_FALSE(prompts->ChooseFolder(0, "folder", path));
    EXPECT_FALSE(prompts->ChooseColor(0, colour));
    EXPECT_EQ(path, "before");
    EXPECT_EQ(colour, 7u);
}

TEST(Prompts, AServiceInForceIsAskedAndRemovedWhenItDies)
{
    {
        XScriptedPrompts script;
        script.AnswerYes();
        script.AnswerPaths({"/a.tif"}, 2);
        script.AnswerColor(0x123456);
        tagXFilePrompt file{.title = "Open", .filter = "All|*.*||"};
        XString path;
        std::uint32_t colour = 0xFF000000u;
        EXPECT_TRUE(XPrompts::Get()->AskYesNo(3, "Go on?"));
        EXPECT_TRUE(XPrompts::Get()->OpenFile(0, file, path));
        EXPECT_TRUE(XPrompts::Get()->ChooseColor(0, colour));
        XPrompts::Get()->Message(0, "Done");
        EXPECT_EQ(path, "/a.tif");
        EXPECT_EQ(file.filterIndex, 2);
        EXPECT_EQ(colour, 0xFF123456u);
        EXPECT_EQ(script.GetQuestions()[0].parent, 3u);
        EXPECT_EQ(script.GetLastMessage(), "Done");
        EXPECT_EQ(script.GetMessages()[0].icon, XPrompts::XIcon::Warning);
    }
    EXPECT_FALSE(XPrompts::Get()->AskYesNo(0, "Anybody?"));
}

TEST(UserSettings, WheelDirectionIsKept)
{
    const XTestSettings settings;
    EXPECT_FALSE(XfnGetInvertMouseWheelZoomDir());
    XfnSetInvertMouseWheelZoomDir(true);
    EXPECT_TRUE(XfnGetInvertMouseWheelZoomDir());
    XfnSetInvertMouseWheelZoomDir(false);
    EXPECT_FALSE(XfnGetInvertMouseWheelZoomDir());
}

} // namespace
