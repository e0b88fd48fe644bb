#include "view/XTextBoxEditor.h"
#include "foundation/platform/XMessageWindow.h"
#include "foundation/vector/XRtfReader.h"
#include "foundation/vector/XRtfWriter.h"
#include "foundation/vector/XvcBalloon.h"
#include "view/XRichDocument.h"
#include "view/XTextBoxEditorWidget.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <gtest/gtest.h>

#include <memory>

namespace {

class HostWidget : public QWidget, public XMessageWindow
{
public:
    int escapes = 0, others = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        ++(event->key() == Qt::Key_Escape ? escapes : others);
    }
};

class XTextBoxEditorTest : public ::testing::Test
{
protected:
    XTextBoxEditorTest()
    {
        XfnUseTextBoxEditor();
        host->resize(400, 300);
        host->setFocusPolicy(Qt::StrongFocus);
        host->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(host.get()));
        host->activateWindow();
        tagXTextStyle style;
        style.font.SetFaceName("DejaVu Sans");
        style.font.height = 200;
        box.SetTextStyle(style);
        box.SetPosition(0, 0);
        box.SetScale(1.0);
        box.CalcBound(200, 100);
        box.SetEditBound(20, 30, 220, 130);
    }
    ~XTextBoxEditorTest() override { XfnSetTextEditorFactory(nullptr); }

    XTextBoxEditorWidget* Begin()
    {
        EXPECT_TRUE(box.BeginEditMode(1.0));
        for (QObject* child : host->children()) {
            auto* widget = dynamic_cast<XTextBoxEditorWidget*>(child);
            if (widget && widget->isVisible()) return widget;
        }
        return nullptr;
    }

    std::unique_ptr<HostWidget> host = std::make_unique<HostWidget>();
    XvcBalloon box{host->GetHWND()};
};

TEST_F(XTextBoxEditorTest, TypesWithFormatsAndEndsWithEscape)
{
    box.SetText("x");
    XTextBoxEditorWidget* const editor = Begin();
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->geometry(), QRect(20, 30, 200, 100));
    EXPECT_EQ(QGuiApplication::focusObject(), editor);
    QTest::keyClicks(editor, " ab");
    QTest::keyClick(editor, Qt::Key_B, Qt::ControlModifier);
    QTest::keyClicks(editor, "c");
    QTest::keyClick(editor, Qt::Key_I, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_U, Qt::ControlModifier);
    QTest::keyClicks(editor, "d");
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::keyClick(editor, Qt::Key_E, Qt::ControlModifier);
    QTest::keyClicks(editor, "e");
    QTest::keyClick(editor, Qt::Key_Delete);
    QTest::keyClick(editor, Qt::Key_F12);
    EXPECT_EQ(host->others, 0) << "the window must not take a key for the whole object";
    EXPECT_EQ(box.GetText(), "x abcd\ne");
    QTest::keyClick(editor, Qt::Key_Escape);
    EXPECT_FALSE(box.GetEditMode());
    EXPECT_FALSE(editor->isVisible());
    EXPECT_EQ(host->escapes, 1) << "the window ends its own state too";
    EXPECT_TRUE(host->hasFocus());

    const XRichText typed = box.GetRichText();
    const auto& paragraphs = typed.GetParagraphs();
    ASSERT_EQ(paragraphs.size(), 2u);
    ASSERT_EQ(paragraphs[0].runs.size(), 3u);
    EXPECT_EQ(paragraphs[0].runs[0].text, "x ab");
    EXPECT_EQ(paragraphs[0].runs[0].format.halfPoints, 20);
    EXPECT_EQ(paragraphs[0].runs[0].format.colour, 0u) << "left to the box";
    EXPECT_EQ(paragraphs[0].runs[0].format.face, "") << "left to the box";
    EXPECT_EQ(paragraphs[0].runs[1].format, (tagXCharFormat{.isBold = true}));
    EXPECT_TRUE(paragraphs[0].runs[2].format.isItalic && paragraphs[0].runs[2].format.isUnderline);
    EXPECT_EQ(paragraphs[0].align, XParagraphAlign::Left);
    EXPECT_EQ(paragraphs[1].align, XParagraphAlign::Centre);
}

TEST_F(XTextBoxEditorTest, FormatsTheSelectionAndTakesItBack)
{
    box.SetText("one two\nthree");
    XTextBoxEditorWidget* const editor = Begin();
    ASSERT_TRUE(editor);
    QTextCursor cursor = editor->textCursor();
    cursor.setPosition(4);
    cursor.setPosition(7, QTextCursor::KeepAnchor);
    editor->setTextCursor(cursor);
    box.SetColor(0x0000FF);
    box.SetSelectionBold();
    EXPECT_TRUE(box.IsSelectionBold());
    box.SetSelectionCharFormat({.face = "NanumGothic", .halfPoints = 31},
                               tagXCharFormat::kFace | tagXCharFormat::kSize);
    box.SetParagraphRight();
    EXPECT_TRUE(box.IsParagraphRight());
    cursor.setPosition(5);
    cursor.setPosition(10, QTextCursor::KeepAnchor);
    editor->setTextCursor(cursor);
    EXPECT_FALSE(box.IsSelectionBold()) << "not all of it";
    EXPECT_FALSE(box.IsParagraphRight());
    const XRichText formatted = box.GetRichText();
    ASSERT_EQ(formatted.GetParagraphs()[0].runs.size(), 2u);
    EXPECT_EQ(formatted.GetParagraphs()[0].runs[1].format,
              (tagXCharFormat{
                  .face = "NanumGothic", .halfPoints = 31, .colour = 0xFF0000FFu, .isBold = true}));
    box.SetSelectionCharFormat({}, tagXCharFormat::kColour);
    EXPECT_EQ(box.GetRichText().GetParagraphs()[0].runs[1].format.colour, 0xFF0000FFu);
    EXPECT_EQ(box.GetRichText().GetParagraphs()[0].runs[2].format.colour, 0u);

    editor->document()->undo();
    EXPECT_EQ(box.GetRTF().View(), XfnWriteRtf(formatted).View());
    box.SetRTF("{\\rtf1 other}");
    EXPECT_EQ(box.GetText(), "other");
    QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
    box.EndEditMode();
    const XRichText back = box.GetRichText();
    ASSERT_EQ(back.GetParagraphs().size(), 2u);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(back.GetParagraphs()[i].runs, formatted.GetParagraphs()[i].runs);
        EXPECT_EQ(back.GetParagraphs()[i].align, formatted.GetParagraphs()[i].align);
    }
}

TEST_F(XTextBoxEditorTest, ComposesLetters)
{
    XTextBoxEditorWidget* const editor = Begin();
    ASSERT_TRUE(editor);
    QInputMethodEvent composing(QString::fromUtf8("ㅎ"), {});
    QGuiApplication::sendEvent(editor, &composing);
    EXPECT_EQ(box.GetText(), "");
    QInputMethodEvent done;
    done.setCommitString(QString::fromUtf8("한"));
    QGuiApplication::sendEvent(editor, &done);
    EXPECT_EQ(box.GetText(), "한");
    box.EndEditMode();
    EXPECT_EQ(box.GetText(), "한");
}

TEST_F(XTextBoxEditorTest, FollowsTheMagnification)
{
    box.SetText("Several words that are wrapped in the box at some places");
    const XRichText before = box.GetRichText();
    XTextBoxEditorWidget* const editor = Begin();
    ASSERT_TRUE(editor);
    const auto countLines = [&] {
        editor->document()->size(); // lays it out
        return editor->document()->begin().layout()->lineCount();
    };
    const int lines = countLines();
    const double height = editor->document()->size().height();
    EXPECT_GT(lines, 1);
    double unused, boxHeight;
    box.GetTextSize(unused, boxHeight);
    EXPECT_NEAR(height + 4, boxHeight, 3) << "as the box draws it";
    box.SetEditBound(0, 0, 400, 200);
    EXPECT_EQ(countLines(), lines);
    EXPECT_NEAR(editor->document()->size().height(), 2 * height, 3);
    box.SetEditBound(0, 0, 1, 1);
    EXPECT_GT(editor->width(), 8) << "can be typed in yet";
    EXPECT_FALSE(editor->document()->isUndoAvailable());
    EXPECT_EQ(box.GetRichText(), before);
    box.SetEditBound(0, 0, 200, 100);
    box.SetVertAlign(8);
    box.EndEditMode();
    XTextBoxEditorWidget* const low = Begin();
    EXPECT_GT(low->viewport()->y(), 30);
}

TEST_F(XTextBoxEditorTest, OutlivesItsWindowAndRefusesWhatIsNone)
{
    box.SetText("kept");
    XTextBoxEditorWidget* const editor = Begin();
    ASSERT_TRUE(editor);
    QTest::keyClicks(editor, "!");
    host.reset();
    EXPECT_FALSE(box.GetEditMode());
    EXPECT_EQ(box.GetText(), "kept!");
    EXPECT_FALSE(box.BeginEditMode(1.0)) << "the window has gone";
    XMessageWindow noWidget;
    box.SetParent(noWidget.GetHWND());
    EXPECT_FALSE(box.BeginEditMode(1.0));
    box.SetParent(0);
    EXPECT_FALSE(box.BeginEditMode(1.0));

    host = std::make_unique<HostWidget>();
    auto other = std::make_unique<XvcTextBox>(host->GetHWND());
    EXPECT_TRUE(other->BeginEditMode(0.0));
    other.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(host->children().isEmpty()) << "the widget goes with the box";
}

TEST_F(XTextBoxEditorTest, KeepsItsKeysAndTheClipboard)
{
    box.SetText("abc");
    box.SetSelectionBold();
    XTextBoxEditorWidget* const editor = Begin();
    ASSERT_TRUE(editor);
    for (const int key : {Qt::Key_B, Qt::Key_J, Qt::Key_Z}) {
        QKeyEvent override(QEvent::ShortcutOverride, key, Qt::ControlModifier);
        override.ignore();
        QCoreApplication::sendEvent(editor, &override);
        EXPECT_TRUE(override.isAccepted()) << key;
    }
    editor->selectAll();
    editor->copy();
    const QMimeData* const copied = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->text(), "abc");
    const QByteArray rtf = copied->data("text/rtf");
    XRichText read;
    XString error;
    ASSERT_TRUE(XfnReadRtf(rtf.constData(), static_cast<std::size_t>(rtf.size()), read, error));
    EXPECT_TRUE(read.GetParagraphs()[0].runs[0].format.isBold);

    auto* const foreign = new QMimeData;
    foreign->setData("application/rtf", "{\\rtf1\\fs40 big\\b  bold}");
    foreign->setText("plain");
    QGuiApplication::clipboard()->setMimeData(foreign);
    editor->paste();
    EXPECT_EQ(box.GetText(), "big bold");
    EXPECT_EQ(box.GetRichText().GetParagraphs()[0].runs[0].format.halfPoints, 40);
    auto* const html = new QMimeData;
    html->setHtml("<b>x</b>");
    html->setText("x\ny");
    QGuiApplication::clipboard()->setMimeData(html);
    editor->selectAll();
    editor->paste();
    EXPECT_EQ(box.GetText(), "x\ny");
}

TEST(XRichDocument, KeepsFormatsExactly)
{
    XRichText text;
    text.Append("a\u2028b\t가", {.face = "NanumGothic", .halfPoints = 21, .colour = 0xFF010203u});
    text.Append("c", {.isItalic = true, .isStrikeOut = true});
    text.BreakParagraph(XParagraphAlign::Justify, {.halfPoints = 9});
    text.BreakParagraph(XParagraphAlign::Right, {.isUnderline = true});
    text.Append("end", {.isBold = true});
    text.EndLast(XParagraphAlign::Centre, {});
    QTextDocument document;
    QTextCursor cursor(&document);
    XfnInsertRichText(cursor, text);
    EXPECT_EQ(XfnGetRichText(document), text);
    cursor.insertImage("none.png");
    EXPECT_EQ(XfnGetRichText(document).GetPlainText(), text.GetPlainText());
}

} // namespace
