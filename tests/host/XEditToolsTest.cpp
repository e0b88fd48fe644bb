#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcText.h"
#include "foundation/vector/XvcTextBox.h"
#include "host/XLayerTree.h"
#include "tests/host/XEditFixture.h"
#include "tests/view/XToolGesture.h"

#include <QComboBox>
#include <QDialog>
#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTableView>
#include <QTextEdit>
#include <QToolButton>
#include <QTreeView>

#include <map>
#include <set>

namespace {

class XEditToolsTest : public XEditFixture
{
protected:
    /// The words of XGesture, as events of the window.
    void Play(const std::string& gesture)
    {
        XGesture().Play(
            gesture,
            [this](unsigned message, unsigned flags, int x, int y) {
                static constexpr QEvent::Type kTypes[] = {
                    QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                    QEvent::MouseButtonDblClick};
                const bool isRight = message > 515;
                const Qt::MouseButton button = message == 512 ? Qt::NoButton
                                               : isRight      ? Qt::RightButton
                                                              : Qt::LeftButton;
                Mouse(kTypes[(message - 512) - (isRight ? 3 : 0)], {x, y}, button,
                      flags & kFlagLeft ? Qt::LeftButton : Qt::NoButton,
                      flags & kFlagCtrl ? Qt::ControlModifier : Qt::NoModifier);
            },
            [](const std::string&) { return false; });
        Settle();
    }
    QTextEdit* Editor() { return window->GetView().findChild<QTextEdit*>(); }
    /// Into the open text editor, which Escape then closes.
    void Type(const char* text)
    {
        ASSERT_NE(Editor(), nullptr);
        QTest::keyClicks(Editor(), text);
        QTest::keyClick(Editor(), Qt::Key_Escape);
        Settle();
    }
    std::string Text(const XObject* object)
    {
        if (const auto* text = dynamic_cast<const XvcText*>(object))
            return text->GetText().GetString();
        const auto* box = dynamic_cast<const XvcTextBox*>(object);
        return box ? box->GetText().GetString() : "";
    }
    /// From the menu on an object.
    void ChooseAt(QPoint at, const char* id)
    {
        Drag(at, at, Qt::RightButton);
        auto* menu = Find<QMenu>("view.menu");
        ASSERT_TRUE(menu->isVisible());
        menu->setActiveAction(Action(id));
        QTest::keyClick(menu, Qt::Key_Return);
        Settle();
    }
    QString ReadOut(const char* label) { return XEditFixture::Text(label); }
    std::string Status() { return window->statusBar()->currentMessage().toStdString(); }

    XFakeObjectDialogs dialogs;
};

TEST_F(XEditToolsTest, ToolsOfTextAndPicturesMakeTheirObjectInOneStep)
{
    QImage dot(4, 3, QImage::Format_RGB32);
    dot.fill(Qt::red);
    ASSERT_TRUE(dot.save(Path("dot.bmp"), "BMP"));
    dialogs.text = "Harbour";
    const struct
    {
        Qt::Key key;
        const char* typed; // in place
        const char* className;
        const char* text;
        const char* step;
    } rows[] = {
        {Qt::Key_X, nullptr, "XvcText", "Harbour", "&Undo Add Text"},
        {Qt::Key_B, "two", "XvcTextBox", "two", "&Undo Add Text Box"},
        {Qt::Key_K, "three", "XvcBalloon", "three", "&Undo Add Balloon"},
        {Qt::Key_I, nullptr, "XvcBitmap", "", "&Undo Add Picture"},
    };
    for (const auto& row : rows) {
        if (row.key == Qt::Key_I) prompts.AnswerPath(Path("dot.bmp").toUtf8().constData());
        const int before = std::max(CountObjects(), 0);
        Key(row.key);
        Play("down 100,100 move 260,170 up");
        if (row.typed) Type(row.typed);
        ASSERT_EQ(CountObjects(), before + 1) << row.className;
        EXPECT_EQ(Undo(), row.step);
        Key(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(CountObjects(), before) << row.className << ": one step";
        Key(Qt::Key_Y, Qt::ControlModifier);
        ASSERT_EQ(CountObjects(), before + 1);
        EXPECT_TRUE(XfnIsExactly(Layer().GetTail(), row.className));
        EXPECT_EQ(Text(Layer().GetTail()), row.text);
    }
}

TEST_F(XEditToolsTest, WhatIsTypedIsAStepBetweenOthers)
{
    Key(Qt::Key_B);
    Play("down 100,100 move 260,170 up");
    Type("one");
    Drag({180, 160}, {200, 160});
    DoubleClick({200, 160});
    Type(" two");
    EXPECT_EQ(Undo(), "&Undo Change Text Box");
    Drag({200, 160}, {220, 160});
    DoubleClick({220, 160});
    QTest::keyClicks(Editor(), " three");
    window->GetView().Undo(); // while it is typed
    Settle();
    EXPECT_EQ(Editor(), nullptr);
    for (const char* text : {"one two", "one two", "one", "one"}) {
        EXPECT_EQ(Text(Layer().GetTail()), text);
        Key(Qt::Key_Z, Qt::ControlModifier);
    }
    EXPECT_EQ(CountObjects(), 0);
    for (int i = 0; i < 5; ++i)
        Key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(Text(Layer().GetTail()), "one two three");
    DoubleClick({220, 160});
    Type("");
    EXPECT_EQ(window->GetView().GetUnDoStack()->GetSize(), 5) << "nothing was typed";
}

TEST_F(XEditToolsTest, PropertiesOpenInThreeWays)
{
    DrawLine({100, 100}, {300, 200});
    const std::function<void()> ways[] = {[this] {
                                              DoubleClick({200, 150});
                                          },
                                          [this] { Key(Qt::Key_Return); },
                                          [this] {
                                              ChooseAt({200, 150}, "edit.properties");
                                          }};
    for (const auto& open : ways) {
        dialogs.asked.clear();
        open();
        EXPECT_EQ(dialogs.asked, std::vector{XObjectDialog::Line});
        EXPECT_EQ(Undo(), "&Undo Change Line");
        Key(Qt::Key_Z, Qt::ControlModifier);
    }
    dialogs.result = 2;
    DoubleClick({200, 150});
    EXPECT_EQ(Undo(), "&Undo Add Line") << "cancelled";
    dialogs.result = 1;
    DrawLine({100, 300}, {300, 400});
    ChooseAt({200, 350}, "edit.back");
    EXPECT_EQ(Undo(), "&Undo Reorder Line");
    EXPECT_EQ(Layer().GetHead(), Selected());
    ChooseAt({200, 150}, "edit.backward"); // it takes the object under it
    EXPECT_EQ(Layer().GetHead(), Selected());
}

TEST_F(XEditToolsTest, ClicksAtOnePlaceTakeOneObjectAfterTheOther)
{
    DrawLine({100, 100}, {300, 300});
    DrawLine({100, 300}, {300, 100});
    const XObject* lower = Layer().GetHead();
    const XObject* upper = Layer().GetTail();
    Key(Qt::Key_Escape);
    const QPoint cross(200, 200);
    for (const XObject* object : {upper, lower, upper}) {
        Click(cross);
        EXPECT_EQ(Selected(), object);
    }
    dialogs.asked.clear();
    DoubleClick(cross); // its first click takes the lower one
    EXPECT_EQ(dialogs.asked.size(), 1u);
    EXPECT_EQ(Selected(), upper);
    Click({150, 150});
    Click({151, 150});
    EXPECT_EQ(Selected(), lower) << "alone there";
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
    ASSERT_EQ(window->GetView().GetMode(), -1);
    for (const XObject* object : {upper, lower, upper}) { // looking, too
        Click(cross);
        EXPECT_EQ(Selected(), object);
    }

    // the current layer goes before one that lies in front of it
    Run("layer.lock");
    DrawLine({190, 100}, {210, 300});
    ASSERT_EQ(window->GetVectors().GetCount(), 2);
    XLayerTree& tree = window->GetTree();
    tree.SetCurrent(tree.GetNode(1));
    Click({150, 150});
    EXPECT_EQ(CountSelected(), 0);
    EXPECT_NE(Status().find("Drawing is locked"), std::string::npos) << Status();
    Run("layer.lock");
    Key(Qt::Key_Escape);
    tree.SetCurrent(tree.GetNode(1));
    Click(cross);
    EXPECT_EQ(Selected(), Layer(1).GetTail());
    tree.SetCurrent(tree.GetNode(0));
    Click({400, 400});
    Click(cross);
    EXPECT_EQ(Selected(), Layer(0).GetTail());
}

TEST_F(XEditToolsTest, TabWalksThroughTheLayerWhileSelecting)
{
    for (int i = 0; i < 3; ++i)
        DrawLine({100, 100 + 50 * i}, {300, 100 + 50 * i});
    Key(Qt::Key_Escape);
    EXPECT_EQ(CountSelected(), 0);
    const auto at = [this] { return XCommandManager::GetIndexOfList(&Layer(), Selected()); };
    for (const int index : {0, 1, 2, 0}) {
        Key(Qt::Key_Tab);
        EXPECT_EQ(at(), index);
    }
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(at(), 2);
    window->GetView().SetWorldToCenter(1e6, 1e6);
    Key(Qt::Key_Tab);
    EXPECT_LT(Look().x, 1e5) << "it comes into view";
    Key(Qt::Key_Escape);
    Key(Qt::Key_Escape);
    Key(Qt::Key_Tab);
    EXPECT_EQ(CountSelected(), 0);
    EXPECT_FALSE(window->GetView().hasFocus()) << "looking, Tab goes on to the next control";
}

TEST_F(XEditToolsTest, ThePictureHasTheKeyboardWhenItIsOfUse)
{
    XHostView& view = window->GetView();
    auto* list = Find<QTreeView>("layers.list");
    list->setFocus();
    ASSERT_EQ(Open({MakeRaster("a.dat", 20, 10, 1)}), 1);
    EXPECT_TRUE(view.hasFocus()) << "a file was opened";
    DrawLine({100, 100}, {300, 200});
    const QRect row = list->visualRect(list->model()->index(0, 0));
    const auto doubleClick = [&](int x) {
        const QPoint at(x, row.center().y());
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
        Settle();
    };
    list->setFocus();
    doubleClick(row.right() - 4);
    EXPECT_TRUE(view.hasFocus()) << "a row was chosen";
    EXPECT_TRUE(prompts.GetQuestions().empty());

    // the swatch stands behind the check mark
    const int check = list->style()->pixelMetric(QStyle::PM_IndicatorWidth);
    prompts.AnswerPath(Path("kept.xvc").toUtf8().constData());
    window->GetTree().SetCurrent(window->GetTree().GetNode(0));
    Run("file.save");
    ASSERT_FALSE(window->isWindowModified());
    const std::size_t asked = prompts.GetQuestions().size();
    prompts.AnswerColor(0xFF00FF00u);
    doubleClick(row.left() + check + 16);
    EXPECT_EQ(prompts.GetQuestions().size(), asked + 1);
    EXPECT_EQ(window->GetVectors().GetColor({0, -1}), 0xFF00FF00u);
    EXPECT_TRUE(window->isWindowModified()) << "another colour is not saved yet";

    list->setFocus();
    Run("help.keys");
    auto* keys = Find<QDialog>("keymap");
    EXPECT_TRUE(QTest::qWaitForWindowActive(keys));
    keys->close();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.hasFocus(); })) << "a dialog was closed";
}

TEST_F(XEditToolsTest, WhatIsDrawnByPointsStepsBackAndEnds)
{
    const auto points = [this] {
        const auto* object =
            dynamic_cast<const XvcVertexObj*>(window->GetView().GetObjectManager().m_currentObject);
        return object ? object->GetSize() - 1 : -1; // the last one follows the pointer
    };
    const auto draw = [this](Qt::Key tool, int count) {
        Key(tool);
        for (int i = 0; i < count; ++i)
            Click({100 + 60 * i, 300 + 40 * (i % 2)});
    };
    DrawLine({100, 100}, {300, 200});
    draw(Qt::Key_O, 3);
    EXPECT_EQ(Undo(), "&Undo Last Point");
    EXPECT_FALSE(Action("edit.redo")->isEnabled());
    const tagXLook look = Look();
    Drag({200, 300}, {260, 340}, Qt::RightButton);
    EXPECT_NE(Look(), look);
    EXPECT_EQ(points(), 3) << "the view moved";
    const QPoint at(260, 340);
    Drag(at, at, Qt::RightButton);
    EXPECT_EQ(points(), 2);
    Key(Qt::Key_Backspace);
    EXPECT_EQ(points(), 1);
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(points(), -1);
    EXPECT_EQ(window->GetView().GetMode(), 103) << "the tool stays";
    EXPECT_EQ(CountObjects(), 1) << "what was done before stays, too";
    EXPECT_EQ(Undo(), "&Undo Add Line");

    const struct
    {
        Qt::Key tool;
        int count;
        Qt::Key end;
        int added;
        const char* said;
    } rows[] = {
        {Qt::Key_O, 3, Qt::Key_Return, 1, ""},
        {Qt::Key_U, 2, Qt::Key_Enter, 1, ""},
        {Qt::Key_O, 2, Qt::Key_V, 1, ""}, // another tool
        {Qt::Key_Y, 3, Qt::Key_R, 1, ""},
        {Qt::Key_Y, 2, Qt::Key_R, 0, "dropped"},
        {Qt::Key_Y, 2, Qt::Key_Return, 0, "three corners"},
        {Qt::Key_O, 2, Qt::Key_Escape, 0, ""},
    };
    for (const auto& row : rows) {
        const int before = CountObjects();
        draw(row.tool, row.count);
        Key(row.end);
        EXPECT_EQ(CountObjects(), before + row.added) << row.tool << row.end;
        if (row.added) {
            EXPECT_EQ(dynamic_cast<XvcVertexObj*>(Layer().GetTail())->GetSize(), row.count);
        }
        EXPECT_NE(Status().find(row.said), std::string::npos) << row.said << "; " << Status();
        window->statusBar()->clearMessage();
        Key(Qt::Key_Escape);
        Key(Qt::Key_Escape);
    }
}

TEST_F(XEditToolsTest, EachToolSaysWhatItWantsAndAClickDrawsNoLine)
{
    ASSERT_EQ(Open({MakeRaster("a.dat", 20, 10, 1)}), 1);
    std::set<QString> hints;
    const Qt::Key keys[] = {Qt::Key_V, Qt::Key_P, Qt::Key_L, Qt::Key_W, Qt::Key_O, Qt::Key_Y,
                            Qt::Key_R, Qt::Key_E, Qt::Key_X, Qt::Key_B, Qt::Key_I};
    for (const Qt::Key key : keys) {
        Find<QTreeView>("layers.list")->setFocus();
        QTest::keyClick(Find<QTreeView>("layers.list"), key); // from the list, too
        Settle();
        hints.insert(ReadOut("status.hint"));
        const short mode = window->GetView().GetMode();
        Key(key);
        EXPECT_EQ(window->GetView().GetMode(), mode) << "again is no way out";
    }
    EXPECT_EQ(hints.size(), std::size(keys));
    for (const Qt::Key key : {Qt::Key_L, Qt::Key_W}) {
        Key(key);
        const short mode = window->GetView().GetMode();
        Drag({100, 100}, {101, 100});
        EXPECT_EQ(window->GetVectors().GetCount(), 0);
        EXPECT_FALSE(Action("edit.undo")->isEnabled());
        EXPECT_EQ(window->GetView().GetMode(), mode);
        EXPECT_NE(Status().find("Drag to draw"), std::string::npos) << Status();
    }
}

TEST_F(XEditToolsTest, TheStyleBarShowsAndChangesWhatIsSelected)
{
    auto* style = Find<QComboBox>("style.line");
    const int ofNew = style->currentIndex();
    DrawLine({100, 100}, {300, 200});
    const auto* line = dynamic_cast<XvcObj*>(Selected());
    ASSERT_NE(line, nullptr);
    const int solid = line->GetLineStyle().GetStyle();
    QTest::keyClick(style, Qt::Key_Down);
    Settle();
    EXPECT_NE(line->GetLineStyle().GetStyle(), solid);
    EXPECT_EQ(Undo(), "&Undo Change Line");
    auto* thickness = Find<QLineEdit>("style.thickness.number");
    thickness->setFocus();
    Key(Qt::Key_Escape); // nothing was typed
    EXPECT_EQ(window->GetView().GetUnDoStack()->GetSize(), 2);
    EXPECT_EQ(CountSelected(), 0);
    EXPECT_EQ(style->currentIndex(), ofNew) << "that of what is drawn next";
    Click({200, 150});
    EXPECT_NE(style->currentIndex(), ofNew);
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(style->currentIndex(), ofNew) << "undone";
}

TEST_F(XEditToolsTest, ATextBoxHasALookAndLookingIntoItIsNoChange)
{
    Key(Qt::Key_B);
    Play("down 100,100 move 260,170 up");
    EXPECT_TRUE(Action("draw.select")->isChecked()) << "while it is typed";
    Type("one");
    const QPoint beside(500, 500);
    for (const bool isEscape : {true, false}) { // one without a text goes
        Key(Qt::Key_K);
        Play("down 300,300 move 400,370 up");
        EXPECT_EQ(CountObjects(), 2);
        if (isEscape)
            Type("");
        else
            Click(beside);
        EXPECT_EQ(CountObjects(), 1);
        EXPECT_EQ(Undo(), "&Undo Add Text Box");
        EXPECT_FALSE(Action("edit.redo")->isEnabled());
    }
    Click({180, 130});
    ASSERT_EQ(CountSelected(), 1);
    Key(Qt::Key_Return);
    EXPECT_EQ(dialogs.asked, std::vector{XObjectDialog::Object});
    EXPECT_EQ(Undo(), "&Undo Change Text Box");
    DoubleClick({180, 130});
    Type(" two");
    Key(Qt::Key_Z, Qt::ControlModifier);
    prompts.AnswerPath(Path("kept.xvc").toUtf8().constData());
    Run("file.save");
    DoubleClick({180, 130});
    Type("");
    EXPECT_FALSE(window->isWindowModified());
    DoubleClick({180, 130});
    QTest::keyClicks(Editor(), " three");
    Run("file.save"); // while it is typed
    EXPECT_FALSE(window->isWindowModified());
    Run("file.close");
    ASSERT_EQ(Open({Path("kept.xvc")}), 1);
    EXPECT_EQ(Text(Layer().GetTail()), "one three");
}

TEST_F(XEditToolsTest, AnEditIsKeptSoonAfterIt)
{
    const auto kept = [] {
        QDirIterator files(XAutosave::GetUserFolder(), {"*.xvc"}, QDir::Files,
                           QDirIterator::Subdirectories);
        return files.hasNext();
    };
    DrawLine({100, 100}, {300, 200});
    EXPECT_FALSE(kept());
    EXPECT_TRUE(QTest::qWaitFor(kept, 10'000));
}

TEST_F(XEditToolsTest, NoMnemonicOfThePanelsIsOneOfTheMenuBar)
{
    std::map<int, QString> seen;
    const auto add = [&seen](const QString& text) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (key.isEmpty()) return;
        const auto [at, isNew] = seen.emplace(key[0].toCombined(), text);
        EXPECT_TRUE(isNew) << text.toStdString() << ", " << at->second.toStdString();
    };
    for (const QAction* action : window->menuBar()->actions())
        add(action->text());
    for (const QLabel* label : window->findChildren<QLabel*>())
        if (label->buddy()) add(label->text());
    for (const auto* button : window->findChildren<QAbstractButton*>())
        if (!dynamic_cast<const QToolButton*>(button)) add(button->text());
}

TEST_F(XEditToolsTest, PicturesOfOtherFormatsKeepTheirShape)
{
    QImage wide(40, 10, QImage::Format_ARGB32);
    wide.fill(Qt::blue);
    for (const char* name : {"wide.png", "wide.jpg", "wide.bmp"}) {
        ASSERT_TRUE(wide.save(Path(name)));
        prompts.AnswerPath(Path(name).toUtf8().constData());
        Key(Qt::Key_I);
        Play("down 100,100 move 260,260 up");
        const auto* picture = dynamic_cast<const XvcBitmap*>(Selected());
        ASSERT_NE(picture, nullptr) << name << ": " << prompts.GetLastMessage();
        EXPECT_EQ(picture->GetWidth(), 40);
        const tagXVectorRange& range = picture->GetRange();
        EXPECT_NEAR(range.maxX - range.minX, 4 * (range.maxY - range.minY), 1e-9) << name;
        EXPECT_NEAR(range.maxX - range.minX, 160 * Look().perX, 1e-6);
    }
    EXPECT_EQ(Grab().pixelColor(180, 120), QColor(Qt::blue));
}

TEST_F(XEditToolsTest, SeveralObjectsAreCountedMovedByKeysAndDoubled)
{
    DrawLine({100, 100}, {300, 200});
    DrawLine({100, 300}, {300, 400});
    const QPoint from(90, 90), to(320, 420);
    Mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
    ASSERT_EQ(CountSelected(), 2);
    const auto* rows = Find<QTableView>("attributes.table")->model();
    EXPECT_EQ(rows->index(0, 1).data().toString(), "2 objects");
    EXPECT_EQ(rows->index(1, 1).data().toString(), "2");
    const auto* line = dynamic_cast<const XvcObj*>(Layer().GetHead());
    const double x = line->GetRange().minX, y = line->GetRange().minY;
    const tagXLook look = Look();
    Key(Qt::Key_Right);
    Key(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_NEAR(line->GetRange().minX, x + look.perX, 1e-6);
    EXPECT_NEAR(line->GetRange().minY, y + 10 * look.perY, 1e-6);
    EXPECT_EQ(Look(), look);
    EXPECT_EQ(Undo(), "&Undo Change 2 Lines");
    Key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(CountObjects(), 4);
    EXPECT_EQ(CountSelected(), 2);
    Key(Qt::Key_Escape);
    Key(Qt::Key_Right);
    EXPECT_NE(Look(), look) << "with nothing selected the view moves";

    // a box with Shift, though it begins on an object
    Key(Qt::Key_2);
    Key(Qt::Key_R);
    Drag({20, 20}, {600, 500});
    Key(Qt::Key_Escape);
    Mouse(QEvent::MouseButtonPress, {300, 21}, Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    Mouse(QEvent::MouseMove, {620, 520}, Qt::NoButton, Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(CountSelected(), 0);
    Mouse(QEvent::MouseButtonRelease, {620, 520}, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(Undo(), "&Undo Add Rectangle") << "nothing was dragged";

    // what is locked is read, not selected
    Key(Qt::Key_Escape);
    Run("layer.lock");
    Click({20, 250});
    EXPECT_EQ(CountSelected(), 0);
    EXPECT_EQ(rows->index(0, 0).data().toString(), "Locked");
    Key(Qt::Key_L);
    EXPECT_NE(Status().find("is locked; what is drawn"), std::string::npos) << Status();
}

} // namespace
