#include "foundation/base/XWarp2D.h"
#include "foundation/vector/XTextEditor.h"
#include "foundation/vector/XvcBalloon.h"
#include "foundation/vector/XvcMText.h"
#include "foundation/vector/XvcText.h"
#include "foundation/vector/XvcTextBox.h"
#include "tests/support/XVectorSamples.h"

#include <QImage>

#include <cmath>
#include <limits>

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr tagXColor kRed = 0xFF0000FFu;

// The pixels drawn in (nearly) this colour.
QRect FindColour(XvcObj& object, int width, int height, tagXColor colour)
{
    XBackBuffer buffer = MakeSurface(width, height);
    object.DrawToBackBuffer(&buffer, 0, nullptr, nullptr);
    QRect found;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint32_t pixel = buffer.GetRow(y)[x];
            const bool isLike = std::abs(int(pixel >> 16 & 255) - int(colour & 255)) < 90 &&
                                std::abs(int(pixel >> 8 & 255) - int(colour >> 8 & 255)) < 90 &&
                                std::abs(int(pixel & 255) - int(colour >> 16 & 255)) < 90;
            if (isLike) found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

XvcText MakeText(const char* text, double x, double y)
{
    XvcText object;
    object.SetText(text);
    object.SetPosition(x, y);
    object.SetFontSize(20.0);
    object.SetLineColor(kRed);
    object.CalcRange();
    return object;
}

TEST(VectorText, AnchorsItsBoxAndIsHitWhereItIsDrawn)
{
    const struct
    {
        int align;
        double left, top; // of the box, in shares of its size, from the position
    } rows[] = {{18, 0, 0}, {4 | 32, -0.5, -0.5}, {1 | 8, -1, -1}, {0, 0, 0}, {2 | 8, 0, -1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.align);
        XvcText text = MakeText("HgH\nH", 100, 100);
        text.SetTextAlign(row.align);
        text.CalcRange();
        double width, height;
        text.GetBoxSize(width, height);
        ASSERT_GT(width, 10.0);
        EXPECT_DOUBLE_EQ(height, 40.0);
        const tagXVectorRange& range = text.GetRange();
        EXPECT_NEAR(range.minX, 100 + row.left * width, 1e-9);
        EXPECT_NEAR(range.maxY, 100 - row.top * height, 1e-9);
        EXPECT_NEAR(range.maxX - range.minX, width, 1e-9);
        const QRect drawn = FindColour(text, 200, 200, kRed);
        const QRect box(int(range.minX) - 1, 200 - int(range.maxY) - 1, int(width) + 3,
                        int(height) + 3);
        EXPECT_TRUE(box.contains(drawn));
        EXPECT_GT(drawn.width(), width * 0.8);
        tagXHitFlag hit{9, 9};
        EXPECT_EQ(text.HitTest({range.minX + 1, range.maxY - 1, 0}, 0, 0, hit), &text);
        EXPECT_EQ(hit.kind, tagXHitFlag::kBody);
        EXPECT_EQ(text.HitTest({range.minX - 2, range.maxY - 1, 0}, 3, 3, hit), &text);
        EXPECT_EQ(text.HitTest({range.minX - 2, range.maxY - 1, 0}, 1, 1, hit), nullptr);
    }
}

TEST(VectorText, TurnsGrowsAndKnowsPixels)
{
    XvcText text = MakeText("HHHH", 50, 50);
    double width, height;
    text.GetBoxSize(width, height);
    text.RotateObject(50, 50, 90);
    text.CalcRange();
    EXPECT_NEAR(text.GetRange().maxY - text.GetRange().minY, width, 1e-9);
    EXPECT_NEAR(text.GetRange().minX, 50, 1e-9) << "what was below is to the right";
    EXPECT_NEAR(text.GetRange().maxX, 70, 1e-9);
    text.RotateObject(50, 50, -90);
    EXPECT_NEAR(text.GetAngle(), 0.0, 1e-12);

    text.CalcRange();
    const tagXVectorRange before = text.GetRange();
    ASSERT_TRUE(text.MoveVertex(7, 0, -20, 0)) << "lower right: twice as high";
    text.CalcRange();
    EXPECT_DOUBLE_EQ(text.GetFontSize(), 40.0);
    EXPECT_NEAR(text.GetRange().minX, before.minX, 1e-9);
    EXPECT_NEAR(text.GetRange().maxY, before.maxY, 1e-9);
    ASSERT_TRUE(text.MoveVertex(5, width, 0, 0)) << "upper left: half as wide";
    text.CalcRange();
    EXPECT_NEAR(text.GetFontSize(), 20.0, 1e-9);
    EXPECT_NEAR(text.GetRange().minX, before.minX + width, 1e-9);
    EXPECT_EQ(text.MoveVertex(8, 1, 1, 1), nullptr);
    text.MoveVertex(7, 0, 1000, 0); // past the other side
    EXPECT_NEAR(text.GetFontSize(), 20.0, 1e-9);

    XvcText pixels = MakeText("H", 50, 50);
    pixels.SetFontSize(-30);
    pixels.CalcRange();
    EXPECT_EQ(pixels.GetRange().maxX, 50.0) << "not known how much of the world";
    EXPECT_GT(FindColour(pixels, 100, 100, kRed).height(), 10);
    pixels.SetWorldPerPixel(2.0);
    pixels.CalcRange();
    EXPECT_DOUBLE_EQ(pixels.GetRange().minY, -10.0);

    XVertBuffer recording;
    recording.SetFontSizeFlag(1); // as the layer says
    recording.Start();
    text.CreateVertexBuffer(&recording, nullptr, nullptr);
    recording.End();
    EXPECT_TRUE(recording.GetRecording()->GetText(0).isHeightInPixels);

    XvcText bordered = MakeText("i", 50, 50);
    bordered.SetForeColor(0xFF00FF00u);
    EXPECT_TRUE(FindColour(bordered, 100, 100, 0xFF00FF00u).isEmpty());
    bordered.SetDrawBorder(1);
    EXPECT_GT(FindColour(bordered, 100, 100, 0xFF00FF00u).height(), 20);
    bordered.SetTextColor(0xFFFF0000u);
    EXPECT_FALSE(FindColour(bordered, 100, 100, 0xFFFF0000u).isEmpty());
}

TEST(VectorText, ManyTextsAreOne)
{
    XvcMText texts;
    texts.SetLineColor(kRed);
    EXPECT_EQ(texts.GetTextAlign(), XvcText::kAlignUpperLeft);
    EXPECT_EQ(texts.AddText("a", 1, 2), 0);
    texts.SetFontSize(5);
    EXPECT_EQ(texts.AddText("b", 3, 4), 1);
    EXPECT_EQ(texts.GetTextObjAt(1)->GetFontSize(), 5.0);
    EXPECT_EQ(texts.GetTextObjAt(1)->GetLineColor(), kRed);
    texts.SetTextAlign(9);
    EXPECT_EQ(texts.GetTextObjAt(0)->GetTextAlign(), 9);
    EXPECT_EQ(texts.GetTextObjAt(2), nullptr);
    EXPECT_EQ(texts.ExportToWkt(), "MULTIPOINT ((1 2), (3 4))");
    const XvcMText copy = texts;
    EXPECT_EQ(copy.GetTextObjAt(0)->GetParent(), &copy);
    EXPECT_TRUE(copy.GetTextObjAt(0)->IsLocked());
    EXPECT_TRUE(XvcText(*copy.GetTextObjAt(0)).IsLocked()) << "as undo puts it back";
}

XvcTextBox MakeBox(double width, double height)
{
    XvcTextBox box;
    tagXTextStyle style;
    style.font.SetFaceName("DejaVu Sans");
    style.font.height = 200;
    box.SetTextStyle(style);
    box.SetPosition(10, 190);
    box.SetScale(1.0);
    box.CalcBound(width, height);
    box.SetLineColor(kRed);
    return box;
}

TEST(VectorText, BoxesWrapAlignAndClip)
{
    XvcTextBox box = MakeBox(180, 180);
    box.SetForeColor(0xFF000000u);
    box.SetText("HHHH HHHH HHHH HHHH HHHH HHHH HHHH");
    double width, height;
    box.GetTextSize(width, height);
    EXPECT_LE(width, 180);
    EXPECT_GT(height, 30) << "two lines at least";
    const QRect left = FindColour(box, 200, 200, kRed);
    EXPECT_TRUE(QRect(10, 10, 180, 180).contains(left));
    EXPECT_LE(left.left(), 16);
    EXPECT_LE(left.bottom(), 10 + height);
    box.SetVertAlign(8);
    EXPECT_GT(FindColour(box, 200, 200, kRed).top(), 180 - height);
    box.SetText("H");
    box.SetParagraphRight();
    EXPECT_TRUE(box.IsParagraphRight());
    EXPECT_GT(FindColour(box, 200, 200, kRed).left(), 170);
    box.SetParagraphCenter();
    EXPECT_NEAR(FindColour(box, 200, 200, kRed).center().x(), 100, 2);

    box.SetVertAlign(16);
    box.CalcBound(180, 40);
    box.SetText("H\nH\nH\nH\nH\nH\nH");
    EXPECT_LE(FindColour(box, 200, 200, kRed).bottom(), 10 + 40 + 14)
        << "no line begins below the box";
    box.SetAutoAlign(1);
    box.CalcRange();
    box.GetTextSize(width, height);
    EXPECT_NEAR(box.GetRange().maxY - box.GetRange().minY, height, 1e-9);
    EXPECT_EQ(box.GetRange().maxY, 190.0);

    // what was measured once is measured, whatever its digits
    const double places[][2] = {
        {0.001, 1e-312}, {0.1, 1e-300}, {195.49, 0.5}, {1e17, 0.7}, {0, 3.3e-5}};
    for (const auto& [place, scale] : places) {
        for (const int align : {8, 16, 32}) {
            XvcTextBox measured = MakeBox(0, 0);
            measured.SetText("H\nH");
            measured.SetBound(place, place + 10, place + 100, place);
            measured.SetScale(scale);
            measured.SetVertAlign(align);
            measured.SetAutoAlign(1);
            measured.CalcRange();
            const tagXVectorRange range = measured.GetRange();
            measured.CalcRange();
            EXPECT_TRUE(measured.GetRange().minY == range.minY &&
                        measured.GetRange().maxY == range.maxY)
                << place << ' ' << scale << ' ' << align;
        }
    }
}

TEST(VectorText, BoxesKeepTheirLinesAtEveryScale)
{
    XvcTextBox box = MakeBox(100, 150);
    box.SetText("Several words of text that are wrapped in a narrow box at the same places");
    double width, height;
    box.GetTextSize(width, height);
    for (const double scale : {0.001, 0.37, 12.5, 4e5}) {
        XvcTextBox other = box;
        other.SetScale(scale);
        other.CalcBound(100 * scale, 150 * scale);
        double w, h;
        other.GetTextSize(w, h);
        EXPECT_NEAR(w / scale, width, 1e-6 * width);
        EXPECT_NEAR(h / scale, height, 1e-6 * height);
        EXPECT_EQ(RecordObject(other)->GetCommands().size(),
                  RecordObject(box)->GetCommands().size());
    }
    XvcTextBox empty = MakeBox(0, 0);
    empty.SetText("x");
    RecordObject(empty);
}

TEST(VectorText, BoxesHoldRichText)
{
    XvcTextBox box = MakeBox(100, 100);
    box.SetText("MGRS : ?\nline");
    EXPECT_EQ(box.GetText(), "MGRS : ?\nline");
    unsigned common = 0;
    EXPECT_EQ(box.GetSelectionCharFormat(common).halfPoints, 20) << "200 twips of the text style";
    EXPECT_FALSE(box.IsSelectionBold());
    box.SetSelectionBold();
    EXPECT_TRUE(box.IsSelectionBold());
    box.SetSelectionBold();
    box.SetSelectionItalic();
    box.SetSelectionUnderlined(1);
    box.SetColor(0x00FF00u);
    EXPECT_EQ(box.GetColor(), 0xFF00FF00u);
    EXPECT_EQ(box.ReplaceRTF("?", "52S"), 1);
    const XString rtf = box.GetRTF();
    XvcTextBox other;
    XString error;
    ASSERT_TRUE(other.SetRTF(rtf));
    EXPECT_EQ(other.GetRichText(), box.GetRichText());
    EXPECT_TRUE(other.IsSelectionItalic() && other.IsSelectionUnderlined());
    EXPECT_FALSE(other.IsSelectionBold());
    EXPECT_FALSE(other.SetRTF("no rich text", error));
    EXPECT_FALSE(error.IsEmpty());
    EXPECT_EQ(other.GetText(), "MGRS : 52S\nline");
    EXPECT_FALSE(box.BeginEditMode(1.0)) << "no window";
    EXPECT_FALSE(box.GetEditMode());
    box.EndEditMode();
}

TEST(VectorText, BalloonsPointInAllDirections)
{
    XvcBalloon balloon;
    balloon.SetPosition(60, 140);
    balloon.CalcBound(80, 40);
    EXPECT_EQ(balloon.GetPointPosition().y, 80.0) << "a first pointer below";
    EXPECT_TRUE(balloon.GetDrawBorder());
    balloon.SetForeColor(kRed);
    balloon.SetLineColor(kRed);
    const struct
    {
        double x, y;
        QRect drawn;
    } rows[] = {
        {20, 120, QRect(QPoint(20, 60), QPoint(140, 100))},
        {100, 180, QRect(QPoint(60, 20), QPoint(140, 100))},
        {180, 101, QRect(QPoint(60, 60), QPoint(180, 100))},
        {150, 30, QRect(QPoint(60, 60), QPoint(150, 170))},
        {100, 120, QRect(QPoint(60, 60), QPoint(140, 100))},
        {kNan, 120, QRect(QPoint(60, 60), QPoint(140, 100))},
    };
    for (const auto& row : rows) {
        balloon.SetPointPosition(row.x, row.y);
        const QRect drawn = FindColour(balloon, 200, 200, kRed);
        EXPECT_NEAR(drawn.left(), row.drawn.left(), 2) << row.x << ", " << row.y;
        EXPECT_NEAR(drawn.top(), row.drawn.top(), 2) << row.x << ", " << row.y;
        EXPECT_NEAR(drawn.right(), row.drawn.right(), 2) << row.x << ", " << row.y;
        EXPECT_NEAR(drawn.bottom(), row.drawn.bottom(), 2) << row.x << ", " << row.y;
    }
    balloon.SetPointPosition(20, 120);
    XWarp2D right;
    right.SetAffine(50, 1, 0, 0, 0, 1);
    balloon.SetWarpCoeff(&right);
    EXPECT_NEAR(FindColour(balloon, 200, 200, kRed).right(), 190, 2) << "its own warp";
    balloon.SetWarpCoeff(nullptr);
    balloon.CalcRange();
    EXPECT_EQ(balloon.GetRange().minX, 60.0);
    const struct
    {
        double x, y;
        int kind, index;
    } hits[] = {{21, 121, 1, 0},  {60, 100, 4, 0},  {60, 140, 5, 1}, {141, 140, 6, 2},
                {140, 100, 7, 3}, {100, 120, 0, 0}, {50, 120, 0, 0}, {50, 135, -1, -1}};
    for (const auto& row : hits) {
        tagXHitFlag hit{-1, -1};
        const bool isHit = balloon.HitTest({row.x, row.y, 0}, 3, 3, hit) != nullptr;
        EXPECT_EQ(isHit, row.kind >= 0);
        EXPECT_EQ(hit.kind, row.kind) << row.x;
        EXPECT_EQ(hit.index, row.index) << row.x;
    }
    EXPECT_EQ(balloon.MoveVertex(0, 5, -5, 0)->x, 25.0);
    balloon.MoveObject(1, 1, 0);
    EXPECT_EQ(balloon.GetPointPosition().y, 116.0);
    balloon.MoveVertex(7, 10, 0, 0);
    EXPECT_EQ(balloon.GetPointPosition().x, 26.0);
}

// An editor that keeps what it is told.
class FakeEditor final : public XTextEditor
{
public:
    static inline FakeEditor* last = nullptr;
    static inline bool isRefusing = false;
    FakeEditor() { last = this; }
    ~FakeEditor() override { last = nullptr; }
    int Begin(const tagXTextEditorSetup& given, const XRichText& start,
              XTextEditorClient* told) override
    {
        setup = given;
        text = start;
        client = told;
        return !isRefusing;
    }
    void SetBound(int, int, int, int bottom, double points) override
    {
        setup.bottom = bottom;
        setup.pixelsPerPoint = points;
    }
    void Commit() override { text.Append("+", {}); }
    XRichText GetText() const override { return text; }
    void SetText(const XRichText& given) override { text = given; }
    void SetFormat(const tagXCharFormat&, unsigned mask) override { formatted |= mask; }
    tagXCharFormat GetFormat(unsigned& common) const override
    {
        common = tagXCharFormat::kBold;
        return {.isBold = true};
    }
    void SetAlign(XParagraphAlign given) override { align = given; }
    int IsAlign(XParagraphAlign given) const override { return given == align; }

    tagXTextEditorSetup setup;
    XRichText text;
    XTextEditorClient* client = nullptr;
    unsigned formatted = 0;
    XParagraphAlign align = XParagraphAlign::Left;
};

TEST(VectorText, EditingGoesThroughTheEditor)
{
    const auto before = XfnSetTextEditorFactory(
        []() -> std::unique_ptr<XTextEditor> { return std::make_unique<FakeEditor>(); });
    {
        XvcTextBox box(5);
        EXPECT_EQ(box.GetParent(), 5u);
        box.SetScale(2.0);
        box.CalcBound(200, 100); // 100 pixels wide
        box.SetText("text");
        FakeEditor::isRefusing = true;
        EXPECT_FALSE(box.BeginEditMode(1.0));
        EXPECT_EQ(FakeEditor::last, nullptr);
        FakeEditor::isRefusing = false;
        box.SetEditBound(10, 20, 60, 45);
        ASSERT_TRUE(box.BeginEditMode(4.0));
        FakeEditor& editor = *FakeEditor::last;
        EXPECT_TRUE(box.BeginEditMode(1.0)) << "goes on";
        EXPECT_EQ(&editor, FakeEditor::last);
        EXPECT_EQ(editor.setup.parent, 5u);
        EXPECT_NEAR(editor.setup.pixelsPerPoint, 0.5 * 96 / 72, 1e-12);
        box.SetEditBound(0, 0, 300, 150);
        EXPECT_NEAR(editor.setup.pixelsPerPoint, 3.0 * 96 / 72, 1e-12);

        EXPECT_TRUE(box.IsSelectionBold());
        EXPECT_FALSE(box.IsSelectionItalic());
        box.SetSelectionItalic();
        EXPECT_EQ(editor.formatted, tagXCharFormat::kItalic);
        box.SetParagraphCenter();
        EXPECT_TRUE(box.IsParagraphCenter());
        box.SetText("typed");
        EXPECT_EQ(editor.text.GetPlainText(), "typed");
        EXPECT_EQ(RecordObject(box)->GetCommands().size(), 1u) << "the editor shows the text";
        const XvcTextBox copy = box;
        EXPECT_EQ(copy.GetText(), "typed");
        EXPECT_FALSE(copy.GetEditMode());

        box.SetAutoAlign(1);
        editor.text = XRichText("1\n2\n3\n4\n5\n6\n7\n8", {});
        editor.client->OnEditorChanged();
        EXPECT_GT(editor.setup.bottom, 300);
        editor.client->OnEditorDone();
        EXPECT_EQ(FakeEditor::last, nullptr);
        EXPECT_FALSE(box.GetEditMode());
        EXPECT_EQ(box.GetText(), "1\n2\n3\n4\n5\n6\n7\n8+");
        box.BeginEditMode(1.0);
    }
    EXPECT_EQ(FakeEditor::last, nullptr) << "dies with the box";
    XfnSetTextEditorFactory(before);
}

} // namespace
