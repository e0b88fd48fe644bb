#include "dialogs/XQtPromptsDialog.h"

#include "foundation/platform/XMessageWindow.h"

#include <QApplication>
#include <QColorDialog>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace {

// A widget that is a window of the message hub too, as hosts have.
class XOwner : public QWidget, public XMessageWindow
{};

class XQtPromptsDialogTest : public ::testing::Test
{
protected:
    XQtPromptsDialogTest()
    {
        prompts.SetNative(false);
        owner.show();
    }

    /// Runs `act` on the box that opens next; a box that does not open fails the test.
    template <class Box>
    void WhenOpen(std::function<void(Box&)> act)
    {
        QTimer::singleShot(0, &owner, [this, act] {
            auto* box = qobject_cast<Box*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            EXPECT_EQ(box->parentWidget(), &owner);
            ++opened;
            act(*box);
        });
    }

    XQtPromptsDialog prompts;
    XOwner owner;
    int opened = 0;
};

TEST_F(XQtPromptsDialogTest, AMessageShowsItsTextAsItIs)
{
    WhenOpen<QMessageBox>([](QMessageBox& box) {
        EXPECT_EQ(box.text(), "<b>a</b>.tif\nis \xC3\xA4 file");
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    prompts.Message(owner.GetHWND(), "<b>a</b>.tif\nis \xC3\xA4 file");
    EXPECT_EQ(opened, 1);
}

TEST_F(XQtPromptsDialogTest, QuestionsAnswerWhatWasPressed)
{
    const auto press = [this](QMessageBox::StandardButton which) {
        WhenOpen<QMessageBox>(
            [which](QMessageBox& box) { QTest::mouseClick(box.button(which), Qt::LeftButton); });
    };
    const auto escape = [this] {
        WhenOpen<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    };
    press(QMessageBox::Yes);
    EXPECT_NE(prompts.AskYesNo(owner.GetHWND(), "Sure?"), 0);
    press(QMessageBox::No);
    EXPECT_EQ(prompts.AskYesNo(owner.GetHWND(), "Sure?"), 0);
    escape();
    EXPECT_EQ(prompts.AskYesNo(owner.GetHWND(), "Sure?"), 0);
    press(QMessageBox::No);
    EXPECT_EQ(prompts.AskYesNoCancel(owner.GetHWND(), "Save?"), XPrompts::XAnswer::No);
    escape();
    EXPECT_EQ(prompts.AskYesNoCancel(owner.GetHWND(), "Save?"), XPrompts::XAnswer::Cancel);
    EXPECT_EQ(opened, 5);
}

TEST_F(XQtPromptsDialogTest, FilesAreChosenByFilterAndTheFolderIsRemembered)
{
    QTemporaryDir dir;
    for (const char* name : {"a.tif", "b.tif", "c.img"})
        ASSERT_TRUE(QFile(dir.filePath(name)).open(QIODevice::WriteOnly));
    tagXFilePrompt prompt;
    prompt.title = "Pick";
    prompt.filter = "TIFF (*.tif)|*.tif|IMG (*.img)|*.img|All (*.*)|*.*||";
    prompt.folder = dir.path().toUtf8().constData();
    prompt.filterIndex = 1;
    WhenOpen<QFileDialog>([](QFileDialog& box) {
        EXPECT_EQ(box.windowTitle(), "Pick");
        EXPECT_EQ(box.nameFilters().size(), 3);
        EXPECT_EQ(box.selectedNameFilter(), box.nameFilters()[1]);
        box.selectNameFilter(box.nameFilters()[0]);
        box.findChild<QLineEdit*>("fileNameEdit")->setText("\"a.tif\" \"b.tif\"");
        static_cast<QDialog&>(box).accept();
    });
    std::vector<XString> paths = {"left over"};
    ASSERT_TRUE(prompts.OpenFiles(owner.GetHWND(), prompt, true, paths));
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_STREQ(paths[1], dir.filePath("b.tif").toUtf8().constData());
    EXPECT_EQ(prompt.filterIndex, 0);

    prompt.folder = "";
    WhenOpen<QFileDialog>([&dir](QFileDialog& box) {
        EXPECT_EQ(box.directory(), QDir(dir.path())) << "where the last one of its kind ended";
        box.reject();
    });
    EXPECT_EQ(prompts.OpenFiles(owner.GetHWND(), prompt, true, paths), 0);
    EXPECT_TRUE(paths.empty());

    prompt.fileName = "new.tif";
    WhenOpen<QFileDialog>([](QFileDialog& box) { static_cast<QDialog&>(box).accept(); });
    XString path;
    ASSERT_TRUE(prompts.SaveFile(owner.GetHWND(), prompt, path));
    EXPECT_STREQ(path, dir.filePath("new.tif").toUtf8().constData());
}

TEST_F(XQtPromptsDialogTest, ColoursKeepTheTopByteAndTheOrderOfTheirParts)
{
    std::uint32_t colour = 0xAB112233; // blue 0x11, green 0x22, red 0x33
    WhenOpen<QColorDialog>([](QColorDialog& box) {
        EXPECT_EQ(box.currentColor(), QColor(0x33, 0x22, 0x11));
        box.setCurrentColor(QColor(1, 2, 3));
        static_cast<QDialog&>(box).accept();
    });
    EXPECT_TRUE(prompts.ChooseColor(owner.GetHWND(), colour));
    EXPECT_EQ(colour, 0xAB030201u);
    WhenOpen<QColorDialog>([](QColorDialog& box) { box.reject(); });
    EXPECT_FALSE(prompts.ChooseColor(owner.GetHWND(), colour));
    EXPECT_EQ(colour, 0xAB030201u);
}

TEST(XQtPromptsLifeTest, ADyingServiceWithdrawsItselfAndNoOther)
{
    XPrompts* before = XPrompts::Set(nullptr);
    {
        XQtPromptsDialog first;
        XPrompts::Set(&first);
    }
    EXPECT_EQ(XPrompts::Set(nullptr), nullptr);
    XQtPromptsDialog stays;
    {
        XQtPromptsDialog other;
        XPrompts::Set(&stays);
    }
    EXPECT_EQ(XPrompts::Get(), &stays);
    XPrompts::Set(before);
}

} // namespace
