#include "tests/vecprop/XObjectDialogDriver.h"

namespace {

TEST(XObjectDlgValuesTest, UnitsOwnPatternsAndLineEnds)
{
    XvcLine line({0, 0, 0}, {9, 9, 0});
    line.SetThick(-2.5);
    tagXLineStyle own;
    own.SetStyle(0x1234, 77);
    line.SetLineStyle(own);
    int endShape = -1;
    const Act act = [](QDialog& dialog) {
        EXPECT_EQ(Find<QLineEdit>(dialog, "thick").text(), "2.5");
        QComboBox& unit = Find<QComboBox>(dialog, "thick.unit");
        EXPECT_EQ(unit.currentText(), "pixels");
        QTest::keyClick(&unit, Qt::Key_Up);
        QComboBox& styles = Find<QComboBox>(dialog, "lineStyle");
        EXPECT_EQ(styles.currentText(), "Own pattern");
        EXPECT_EQ(styles.findText("Selection"), -1) << "is a mark of the view";
        QTest::keyClick(&styles, Qt::Key_Home);
        QTest::keyClick(&styles, Qt::Key_End); // back to its own
        ChooseValue(dialog, "endShape", kXLineEndDiamond);
        Press(dialog, Qt::Key_Return);
    };
    EXPECT_EQ(Open(XObjectDialog::Line, &line, nullptr, act, &endShape), 1);
    EXPECT_EQ(line.GetThick(), 2.5);
    EXPECT_EQ(line.GetLineStyle(), own);
    EXPECT_EQ(endShape, kXLineEndDiamond);
}

TEST(XObjectDlgValuesTest, NumbersAreShownInTheUnitOfTheObject)
{
    const struct
    {
        int epsg; // 0: none is told
        double x, thick;
        const char* shown;
        const char* size;
        const char* unit;
        const char* exact;
    } rows[] = {
        {31985, 290011.7791234567, 2.50049, "290011.779", "2.5", "metres", "290011.7791234567"},
        {31985, -0.00012345678901, 0.0, "-0.000123457", "", "metres", "-0.00012345678901"},
        {4326, -34.87130512345678, 0.1, "-34.871305123", "0.1", "degrees", "-34.87130512345678"},
        {0, 290012.5, 1.0 / 3, "290012.5", "0.333", "world units", ""},
        {0, 12.0 + 1e-13, 1e-20, "12", "1e-20", "world units", "12.0000000000001"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shown);
        XvcBase base;
        XSpatialReference reference;
        if (row.epsg) reference.importFromEPSG(row.epsg);
        base.SetSR(&reference);
        auto* layer = new XvcLayer;
        base.AddTail(layer);
        auto* line = new XvcLine({row.x, 0, 0}, {row.x, 1, 0});
        line->SetEndSize(row.thick);
        line->CalcRange();
        layer->AddTail(line);
        const Act act = [&row](QDialog& dialog) {
            QLineEdit& x = Find<QLineEdit>(dialog, "startx");
            EXPECT_EQ(x.text(), row.shown);
            EXPECT_EQ(x.toolTip(), row.exact);
            EXPECT_EQ(Find<QLineEdit>(dialog, "endSize").text(), row.size);
            EXPECT_EQ(Find<QComboBox>(dialog, "endSize.unit").itemText(0), row.unit);
            Type(dialog, "startx", "1");
            Type(dialog, "startx", row.shown); // as it was
            Type(dialog, "starty", "1");
            Press(dialog, Qt::Key_Return);
        };
        EXPECT_EQ(Open(XObjectDialog::Line, line, nullptr, act), 1);
        EXPECT_EQ(line->GetStartVertex().x, row.x);
        EXPECT_EQ(line->GetEndSize(), row.thick);
    }
}

TEST(XObjectDlgValuesTest, ARectangleTurnedOrPulledOverKeepsItsPlace)
{
    XvcRectangle turned;
    turned.Set(0, 0, 0, 40, 20, 0);
    turned.RotateObject(30.0);
    XvcRectangle pulled;
    pulled.Set(0, 0, 0, 40, 20, 0);
    pulled.MoveVertex(0, 60.0, 0.0, 0.0); // past its opposite corner
    for (XvcRectangle* rect : {&turned, &pulled}) {
        rect->CalcRange();
        const tagXVectorRange before = rect->GetRange();
        const Act act = [](QDialog& dialog) {
            QLineEdit& edit = Find<QLineEdit>(dialog, "zUpper");
            QTest::keyClick(&edit, Qt::Key_Up);
            Press(dialog, Qt::Key_Return);
        };
        EXPECT_EQ(Open(XObjectDialog::Rect, rect, nullptr, act), 1);
        EXPECT_NEAR(rect->GetRange().minX, before.minX, 1e-9);
        EXPECT_NEAR(rect->GetRange().maxX, before.maxX, 1e-9);
        EXPECT_NEAR(rect->GetRange().minY, before.minY, 1e-9);
        EXPECT_NEAR(rect->GetRange().maxY, before.maxY, 1e-9);
        EXPECT_GT(rect->GetRange().maxZ, 0.0);
    }
}

TEST(XObjectDlgValuesTest, APictureIsReadWhenItIsChosenAndOneThatIsNoneKeepsTheOld)
{
    QTemporaryDir dir;
    const QString good = dir.filePath("good.bmp"), bad = dir.filePath("bad.bmp");
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(good, "BMP"));
    QFile file(bad);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no picture") > 0);
    file.close();
    XvcBitmap bitmap;
    bitmap.SetBound(0, 10, 10, 0);
    XScriptedPrompts prompts;
    prompts.AnswerPath(good.toUtf8().constData());
    prompts.AnswerPath(bad.toUtf8().constData());
    const Act act = [&](QDialog& dialog) {
        QPushButton& choose = Find<QPushButton>(dialog, "picture");
        QTest::mouseClick(&choose, Qt::LeftButton);
        EXPECT_EQ(dialog.findChild<QLabel*>("pixels")->text(), "3 x 2, 24 bits a pixel");
        EXPECT_EQ(bitmap.GetWidth(), 0) << "not before OK";
        QTest::mouseClick(&choose, Qt::LeftButton);
        EXPECT_FALSE(dialog.findChild<QLabel*>("picture.error")->text().isEmpty());
        Press(dialog, Qt::Key_Return);
    };
    EXPECT_EQ(Open(XObjectDialog::Bitmap, &bitmap, nullptr, act), 1);
    EXPECT_EQ(bitmap.GetWidth(), 3);
    EXPECT_STREQ(bitmap.GetFileName(), good.toUtf8().constData());
    EXPECT_NE(prompts.GetQuestions()[0].parent, 0u) << "the dialog asks, not nobody";
}

TEST(CTextInputDlgTest, EnterTakesShiftEnterBreaksEscapeDrops)
{
    enum class End { Enter, Escape, PressBeside };
    QWidget beside;
    beside.show();
    const auto input = [&beside](End end, XString& text) {
        QTimer::singleShot(0, qApp, [&beside, end] {
            QDialog* dialog = nullptr;
            for (QWidget* window : QApplication::topLevelWidgets())
                if (window->objectName() == "textInput") dialog = qobject_cast<QDialog*>(window);
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->geometry().topLeft(), QPoint(30, 40));
            EXPECT_EQ(dialog->width(), 90);
            EXPECT_LE(dialog->height(), 25 + 8) << "it covers its box, not the view";
            auto* edit = dialog->findChild<QPlainTextEdit*>("text");
            QTest::keyClicks(edit, "one");
            QTest::keyClick(edit, Qt::Key_Return, Qt::ShiftModifier);
            const int height = dialog->height();
            QTest::keyClick(edit, Qt::Key_Return, Qt::ShiftModifier);
            EXPECT_GT(dialog->height(), height) << "it grows with its text";
            QTest::keyClicks(edit, "two");
            if (end == End::PressBeside)
                QTest::mouseClick(&beside, Qt::LeftButton);
            else
                QTest::keyClick(edit, end == End::Enter ? Qt::Key_Enter : Qt::Key_Escape);
        });
        tagXTextInputCall call;
        call.x = 30;
        call.y = 40;
        call.width = 90;
        call.height = 25;
        return XvcObjectDialogs().InputText(call, text);
    };
    XString text = "old";
    EXPECT_EQ(input(End::Escape, text), 2);
    EXPECT_STREQ(text, "old");
    for (const End end : {End::Enter, End::PressBeside}) {
        EXPECT_EQ(input(end, text), 1);
        EXPECT_STREQ(text, "one\n\ntwo");
        text = "old";
    }
}

} // namespace
