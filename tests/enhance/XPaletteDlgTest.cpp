#include "enhance/XPaletteDlg.h"

#include "tests/support/XScriptedPrompts.h"
#include "tests/view/XViewFixture.h"

#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>

namespace {

using Codes = std::vector<unsigned>;

/// The dialog over a window that records, used with mouse and keys.
class XPaletteDlgTest : public ::testing::Test
{
protected:
    XPaletteDlgTest()
    {
        std::array<unsigned char, 256> red{}, green{}, blue{};
        std::array<int, 256> anchors{};
        red.fill(11);
        green.fill(22);
        blue.fill(33);
        dialog->SetXDMComposite(&composite);
        dialog->SetColorTable(red.data(), green.data(), blue.data(), anchors.data());
        dialog->Create(nullptr, owner.GetHWND());
        dialog->Show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(dialog.get()));
        grid = dialog->findChild<QWidget*>("palette.grid");
        strip = dialog->findChild<QWidget*>("palette.strip");
    }

    const tagXPaletteTable& Table() const { return dialog->GetModel().GetTable(); }
    static QPoint Cell(int entry) { return {3 + entry % 16 * 16 + 7, 3 + entry / 16 * 16 + 7}; }
    void Hover(int entry) { QTest::mouseMove(grid, Cell(entry)); }
    void Press(const char* button)
    {
        QTest::mouseClick(dialog->findChild<QPushButton*>(button), Qt::LeftButton);
    }
    void Drag(Qt::MouseButton button, const std::vector<int>& places)
    {
        const auto send = [&](QEvent::Type type, int x, Qt::MouseButtons buttons) {
            const QPointF at(x, 5);
            QMouseEvent event(type, at, strip->mapToGlobal(at),
                              type == QEvent::MouseMove ? Qt::NoButton : button, buttons,
                              Qt::NoModifier);
            QApplication::sendEvent(strip, &event);
        };
        send(QEvent::MouseButtonPress, places.front(), button);
        for (const int x : places)
            send(QEvent::MouseMove, x, button);
        send(QEvent::MouseButtonRelease, places.back(), Qt::NoButton);
    }
    QString Text(const char* name) { return dialog->findChild<QLineEdit*>(name)->text(); }
    int Row() { return dialog->findChild<QListWidget*>("palette.list")->currentRow(); }
    Codes Told()
    {
        Codes codes;
        for (const auto& message : owner.GetMessages())
            codes.push_back(message.message);
        owner.Forget();
        return codes;
    }

    XScriptedPrompts prompts;
    XMessageRecorder owner;
    XDMComposite composite{0};
    std::unique_ptr<XPaletteDlg> dialog = std::make_unique<XPaletteDlg>();
    QWidget *grid = nullptr, *strip = nullptr;
};

TEST_F(XPaletteDlgTest, MouseAndKeysEditTheTable)
{
    EXPECT_EQ(Row(), 1) << "it opens on the grey ramp";
    dialog->SetValueRange(0, 512, 3);
    Hover(37);
    EXPECT_EQ(Text("palette.index") + Text("palette.blue"), "3737");
    EXPECT_EQ(Text("palette.value"), "74 ~ 76");
    prompts.AnswerColor(0x000000FFu);
    QTest::mouseClick(grid, Qt::LeftButton, {}, Cell(38));
    EXPECT_EQ(Table().GetColor(38), 0xFFu);
    EXPECT_EQ(Text("palette.red") + Text("palette.green"), "2550");
    EXPECT_EQ(Row(), 0);
    Hover(39);
    QTest::mouseClick(grid, Qt::RightButton, {},
                      Cell(200)); // of the current entry, not of the place
    EXPECT_TRUE(Table().IsAnchor(39) && !Table().IsAnchor(200));
    QTest::mouseDClick(grid, Qt::RightButton, {}, Cell(39)); // off, on and off again
    EXPECT_FALSE(Table().IsAnchor(39));
    auto* list = dialog->findChild<QListWidget*>("palette.list");
    QTest::mouseClick(list->viewport(), Qt::RightButton, {},
                      list->visualItemRect(list->item(4)).center());
    EXPECT_TRUE(Table().IsAnchor(39)) << "and so over the list";
    EXPECT_EQ(Row(), 0);
    QTest::mouseClick(dialog.get(), Qt::RightButton, {}, QPoint(1, 1));
    EXPECT_FALSE(Table().IsAnchor(39));
    grid->setFocus();
    for (const int key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Space})
        QTest::keyClick(grid, static_cast<Qt::Key>(key));
    EXPECT_TRUE(Table().IsAnchor(56));
    prompts.AnswerColor(0x00010203u);
    QTest::keyClick(grid, Qt::Key_Return);
    EXPECT_EQ(Table().GetColor(56), 0x00010203u);
    QTest::keyClick(grid, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Table().GetColor(56), XfnMakeColor(56, 56, 56));
    EXPECT_TRUE(Told().empty()) << "nothing is applied before Apply";
    Press("palette.apply");
    EXPECT_EQ(Told(), Codes{0x52F});
    EXPECT_EQ(composite.GetCLT(2)[38], 255) << "red is channel 2";
    EXPECT_EQ(composite.GetCLT(0)[38], 0);
}

TEST_F(XPaletteDlgTest, ADragOverTheStripIsAppliedAtOnce)
{
    dialog->findChild<QListWidget*>("palette.list")->setCurrentRow(12); // black to blue
    Drag(Qt::LeftButton, {20, 90, 91});
    EXPECT_EQ(Told(), (Codes{0x52F, 0x52F})) << "a step a move";
    EXPECT_EQ(composite.GetCLT(0)[102], 100);
    Drag(Qt::RightButton, {50, 20});
    EXPECT_EQ(composite.GetCLT(0)[101], 100);
    EXPECT_EQ(composite.GetCLT(2)[255], 0);
    EXPECT_EQ(Table().anchors, tagXPaletteTable().anchors) << "a drag sets no anchor";
    EXPECT_EQ(Row(), 12);
    Drag(Qt::LeftButton, {20, 20});
    EXPECT_EQ(Told().size(), 1u);
    QTest::keyClick(dialog.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(composite.GetCLT(0)[102], 100) << "an undo of what was applied is applied";
}

TEST_F(XPaletteDlgTest, FilesOfTables)
{
    const QTemporaryDir folder;
    const auto at = [&](const char* name) { return folder.filePath(name).toStdString(); };
    dialog->findChild<QListWidget*>("palette.list")->setCurrentRow(17);
    const tagXPaletteTable saved = Table();
    prompts.AnswerPath(at("warm").c_str());
    Press("palette.save");
    prompts.AnswerPath(at("warm.txt").c_str()); // would go over the file that is there
    prompts.AnswerNo();
    dialog->findChild<QListWidget*>("palette.list")->setCurrentRow(3);
    Press("palette.save");
    for (const char* name : {"warm.txt", "warm.pal"}) {
        prompts.AnswerPath(at(name).c_str());
        Press("palette.load");
    }
    EXPECT_EQ(Table(), saved);
    EXPECT_EQ(Row(), 0);
    prompts.AnswerPath(at("none/warm.pal").c_str());
    Press("palette.save");
    ASSERT_EQ(prompts.GetMessages().size(), 2u);
    EXPECT_EQ(prompts.GetMessages()[0].text, "Not a valid palette file");
    EXPECT_EQ(prompts.GetMessages()[1].text, "Unable to open file for writing");
    EXPECT_EQ(prompts.GetMessages()[1].icon, XPrompts::XIcon::Error);
}

TEST_F(XPaletteDlgTest, ClosesOnceAndShowsItsPaneOnDemand)
{
    const int height = dialog->sizeHint().height();
    Press("palette.edit");
    EXPECT_GT(dialog->sizeHint().height(), height);
    EXPECT_EQ(dialog->focusWidget()->objectName(), "palette.edit");
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    dialog->DestroyWindow();
    EXPECT_EQ(Told(), Codes{0x530});
}

TEST_F(XPaletteDlgTest, MayBeGivenUpWhileItAsks)
{
    XPaletteDlg* asked = dialog.release(); // it destroys itself
    bool isGone = false;
    QObject::connect(asked, &QObject::destroyed, [&] { isGone = true; });
    class XClosing : public XPrompts
    {
    public:
        using XPrompts::Message;
        explicit XClosing(XPaletteDlg& dialog) : m_dialog(dialog), m_before(Set(this)) {}
        ~XClosing() override { Set(m_before); }
        void Message(XHWND, const XString&, XIcon, const XString&) override {}
        int AskYesNo(XHWND, const XString&) override { return 0; }
        XAnswer AskYesNoCancel(XHWND, const XString&) override { return XAnswer::No; }
        int OpenFiles(XHWND, tagXFilePrompt&, bool, std::vector<XString>&) override { return 0; }
        int SaveFile(XHWND, tagXFilePrompt&, XString&) override { return 0; }
        int ChooseFolder(XHWND, const XString&, XString&) override { return 0; }
        int ChooseColor(XHWND, std::uint32_t& color) override
        {
            m_dialog.Release();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            color = 0xABCDEF;
            return 1;
        }

    private:
        XPaletteDlg& m_dialog;
        XPrompts* m_before;
    } closing(*asked);
    QTest::mouseClick(grid, Qt::LeftButton, {}, Cell(5));
    EXPECT_FALSE(isGone) << "not below a question";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(isGone);
    EXPECT_TRUE(Told().empty());
}

/// The dialog as a view opens it.
class XPaletteViewTest : public XViewFixture
{
protected:
    XPaletteViewTest() : picture(41, 21, 0, 20, 1, 1, [](int x, int) { return 5 * x; })
    {
        XViewDialogFactories::Get().palette = [] {
            return XViewWindowPtr<XViewPaletteDlg>(new XPaletteDlg);
        };
    }
    ~XPaletteViewTest() override { XViewDialogFactories::Get() = {}; }
    XPaletteDlg* Find()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return view.findChild<XPaletteDlg*>();
    }

    XMemoryPicture picture;
};

TEST_F(XPaletteViewTest, OpensColoursAndCloses)
{
    XDMComposite* composite = Show(picture);
    view.ZoomFitRect(0, 0, 40, 20);
    const QImage before = Paint();
    view.ShowColorTable(1);
    view.ShowColorTable(1); // a new one takes the place of the old one
    XPaletteDlg* dialog = Find();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(view.findChildren<XPaletteDlg*>().size(), 1);
    dialog->findChild<QListWidget*>()->setCurrentRow(58); // red to blue
    EXPECT_EQ(Paint(), before);
    dialog->OnButtonApply();
    const QImage after = Paint();
    const int level = qGreen(before.pixel(200, 100));
    EXPECT_EQ(after.pixel(200, 100), qRgb(255 - level, 0, level));
    dialog->RotateForward();
    EXPECT_EQ(Paint().pixel(200, 100), qRgb(256 - level, 0, level - 1)) << "live";

    view.GetXDMCompManager()->RemoveXDMComposite(composite);
    delete composite;
    EXPECT_EQ(dialog->GetXDMComposite(), nullptr) << "an image that went is not coloured";
    dialog->OnButtonApply();
    view.ShowColorTable(0); // closes also where no image is left
    EXPECT_EQ(Find(), nullptr);
}

} // namespace
