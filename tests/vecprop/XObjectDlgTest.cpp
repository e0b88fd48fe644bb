#include "vecprop/XObjectDlg.h"
#include "dialogs/XOwnerWidget.h"
#include "foundation/base/XObList.h"
#include "foundation/platform/XUserSettings.h"
#include "foundation/vector/XvcArc.h"
#include "foundation/vector/XvcArcClosed.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcBitmap.h"
#include "foundation/vector/XvcBspline.h"
#include "foundation/vector/XvcEllipse.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcLine.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcNorthArrow.h"
#include "foundation/vector/XvcPolygon.h"
#include "foundation/vector/XvcPolyline.h"
#include "foundation/vector/XvcPolypoint.h"
#include "foundation/vector/XvcRaster.h"
#include "foundation/vector/XvcRectangle.h"
#include "foundation/vector/XvcSymbol.h"
#include "foundation/vector/XvcText.h"
#include "tests/support/XScriptedPrompts.h"
#include "tests/support/XVectorSamples.h"
#include "vecprop/XObjectDraft.h"
#include "vecprop/XvcObjectDialogs.h"
#include "view/XTQSpaceView.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {

using ObjectPtr = std::unique_ptr<XvcObj>;
using Act = std::function<void(QDialog&)>;

template <class Control>
Control& Find(QDialog& dialog, const char* name)
{
    auto* control = dialog.findChild<Control*>(name);
    if (!control) qFatal("%s is missing", name);
    // what a user does next needs its page to be seen
    auto* tabs = dialog.findChild<QTabWidget*>("pages");
    for (int i = 0; tabs && i < tabs->count(); ++i)
        if (tabs->widget(i)->isAncestorOf(control)) tabs->setCurrentIndex(i);
    control->setFocus();
    return *control;
}

void Type(QDialog& dialog, const char* name, const char* text)
{
    QLineEdit& edit = Find<QLineEdit>(dialog, name);
    edit.selectAll();
    QTest::keyClicks(&edit, text);
}

void Press(QDialog& dialog, int key)
{
    QTest::keyClick(dialog.focusWidget() ? dialog.focusWidget() : &dialog,
                    static_cast<Qt::Key>(key));
}

int Open(XObjectDialog kind, XvcObj* object, const XObList* objects, const Act& act,
         int* endShape = nullptr, const std::function<bool()>& areThere = {})
{
    XvcObjectDialogs service;
    tagXObjectDialogCall call;
    call.dialog = kind;
    call.object = object;
    call.objects = objects;
    call.areThere = areThere;
    bool isOpened = false;
    QTimer::singleShot(0, qApp, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        isOpened = true;
        act(*dialog);
        if (dialog->isVisible()) {
            ADD_FAILURE() << "the dialog is still open";
            dialog->reject();
        }
    });
    const int result = service.DoModal(call);
    EXPECT_TRUE(isOpened);
    if (endShape) *endShape = call.endShapeID;
    return result;
}

template <class Class>
ObjectPtr Make(const std::function<void(Class&)>& fill)
{
    auto object = std::make_unique<Class>();
    object->SetName("before");
    object->SetThick(-2.0);
    object->SetLineColor(0x80102030u);
    fill(*object);
    object->CalcRange();
    return object;
}

template <class Class>
ObjectPtr MakeRing()
{
    return Make<Class>([](Class& object) {
        object.Add(1.0, 2.0);
        object.Add(7.0, 2.5);
        object.Add(4.0, 9.0, 3.0);
    });
}

ObjectPtr MakeCurve()
{
    return Make<XvcBspline>([](XvcBspline& spline) {
        for (const double x : {1.0, 3.0, 9.0})
            spline.AddPole(x, x * x);
    });
}

template <class Class>
ObjectPtr MakeRound()
{
    return Make<Class>([](Class& object) {
        object.SetCenter(10.0, 20.0, 1.0);
        object.SetAxis(4.0, 2.0);
    });
}

template <class Class>
ObjectPtr MakeSheet()
{
    return Make<Class>([](Class& object) { object.Set(10.0, 20.0, 1.0, 50.0, 40.0, 2.0); });
}

void EditCell(QDialog& dialog, int row, int column, const char* text)
{
    QTableView& table = Find<QTableView>(dialog, "vertices");
    table.setCurrentIndex(table.model()->index(row, column));
    QTest::keyClick(&table, Qt::Key_F2);
    auto* editor = table.findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents(); // the table takes the text when the key was handled
}

void ChooseValue(QDialog& dialog, const char* name, int value)
{
    QComboBox& list = Find<QComboBox>(dialog, name);
    QTest::keyClick(&list, Qt::Key_Home);
    while (list.currentData().toInt() != value && list.currentIndex() + 1 < list.count())
        QTest::keyClick(&list, Qt::Key_Down);
}

void SetColor(QDialog& dialog, const char* name, tagXColor color)
{
    XObjectEditModel& model = static_cast<XObjectDlg&>(dialog).GetModel();
    model.SetColor(model.FindField(name), color);
}

struct Row
{
    const char* name;
    XObjectDialog dialog;
    ObjectPtr (*make)();
    Act act;                             ///< what the user does
    std::function<void(XvcObj&)> change; ///< the same done to the object at once
};

template <class Class, class Change>
std::function<void(XvcObj&)> On(Change change)
{
    return [change](XvcObj& object) { change(static_cast<Class&>(object)); };
}

Act Types(const char* name, const char* text)
{
    return [=](QDialog& dialog) { Type(dialog, name, text); };
}

std::vector<Row> GetRows()
{
    using enum XObjectDialog;
    return {
        {"a comma is a point", Point,
         [] { return Make<XvcPoint>([](XvcPoint& p) { p.SetVertex(1.25, 2.5, 3.0); }); },
         Types("positionx", "12,5"), On<XvcPoint>([](XvcPoint& p) { p.SetX(12.5); })},
        {"one end moves", Line,
         [] { return Make<XvcLine>([](XvcLine& l) {
                  l.SetVertices({1, 2, 3}, {4, 5, 6});
              }); },
         Types("endz", "-7"), On<XvcLine>([](XvcLine& l) { l.SetEndVertex(4, 5, -7); })},
        {"a cell of the table", Polyline, &MakeRing<XvcPolyline>,
         [](QDialog& d) { EditCell(d, 1, 1, "8.5"); },
         On<XvcPolyline>([](XvcPolyline& p) { p.SetAt(1, 7.0, 8.5); })},
        {"a vertex halfway", Polygon, &MakeRing<XvcPolygon>,
         [](QDialog& d) { QTest::keyClick(&Find<QTableView>(d, "vertices"), Qt::Key_Insert); },
         On<XvcPolygon>([](XvcPolygon& p) {
             p.InsertAt(1, {4.0, 2.25, 0.0});
         })},
        {"a mark from its list", Polypoint, &MakeRing<XvcPolypoint>,
         [](QDialog& d) { ChooseValue(d, "shape", 3); },
         On<XvcPolypoint>([](XvcPolypoint& p) { p.SetType(3); })},
        {"a turn", Ellipse, &MakeRound<XvcEllipse>, Types("turn", "30\xC2\xB0"),
         On<XvcEllipse>([](XvcEllipse& e) { e.SetRotate(30.0); })},
        {"a picture's opacity", Bitmap,
         [] { return Make<XvcBitmap>([](XvcBitmap& b) { b.SetBound(1, 9, 5, 2); }); },
         [](QDialog& d) { Find<QSlider>(d, "opacity").setValue(25); },
         On<XvcBitmap>([](XvcBitmap& b) { b.SetAlpha(0.25); })},
        {"a bold text", Text, [] { return Make<XvcText>([](XvcText& t) { t.SetText("one"); }); },
         [](QDialog& d) {
             Find<QPlainTextEdit>(d, "text").setPlainText("two\nlines");
             QTest::keyClick(&Find<QCheckBox>(d, "bold"), Qt::Key_Space);
         },
         On<XvcText>([](XvcText& t) {
             tagXTextStyle style = t.GetTextStyle();
             style.font.weight = 700;
             t.SetTextStyle(style);
             t.SetText("two\nlines");
         })},
        {"letters of their own beside another line", Text,
         [] { return Make<XvcText>([](XvcText&) {}); },
         [](QDialog& d) {
             SetColor(d, "lineColor", 0xFF);
             QTest::keyClick(&Find<QCheckBox>(d, "textAsLine"), Qt::Key_Space);
         },
         On<XvcText>([](XvcText& t) {
             t.SetLineColor(0x800000FF);
             t.SetTextColor(0x800000FF);
         })},
        {"letters as the line was", Text, [] { return Make<XvcText>([](XvcText&) {}); },
         [](QDialog& d) {
             SetColor(d, "textColor", 0x102030);
             SetColor(d, "lineColor", 0xFF);
         },
         On<XvcText>([](XvcText& t) {
             t.SetLineColor(0x800000FF);
             t.SetTextColor(0x80102030);
         })},
        {"knots of its own", Bspline, &MakeCurve, Types("knots", "0 0 0,5 1"),
         On<XvcBspline>([](XvcBspline& s) {
             for (const double knot : {0.0, 0.0, 0.5, 1.0})
                 s.AddKnot(knot);
         })},
        {"a symbol from its list", Symbol, [] { return Make<XvcSymbol>([](XvcSymbol&) {}); },
         [](QDialog& d) { ChooseValue(d, "symbol", 21); },
         On<XvcSymbol>([](XvcSymbol& s) { s.SetID(21); })},
        {"an end angle", Arc, &MakeRound<XvcArc>, Types("endAngle", "200"),
         On<XvcArc>([](XvcArc& a) { a.SetAngle(0.0, 200.0); })},
        {"a wider rectangle", Rect, &MakeSheet<XvcRectangle>, Types("width", "1e2"),
         On<XvcRectangle>([](XvcRectangle& r) { r.Set(10, 20, 1, 110, 40, 2); })},
        {"a pie", ArcClosed, &MakeRound<XvcArcClosed>,
         [](QDialog& d) { ChooseValue(d, "close", 1); },
         On<XvcArcClosed>([](XvcArcClosed& a) { a.SetCloseType(1); })},
        {"a moved patch", Raster,
         [] { return Make<XvcRaster>([](XvcRaster& r) { r.SetBound(1, 9, 5, 2); }); },
         Types("left", "3"), On<XvcRaster>([](XvcRaster& r) { r.SetBound(3, 9, 7, 2); })},
        {"an angle of three decimals", NorthArrow, &MakeSheet<XvcNorthArrow>,
         Types("angle", "12.3456"),
         On<XvcNorthArrow>([](XvcNorthArrow& a) { a.SetAngle(12.3456); })},
        {"all points of a set", Object,
         [] { return Make<XvcMPoint>([](XvcMPoint& m) { m.AddPoint(1, 2); }); },
         [](QDialog& d) {
             Type(d, "thick", "5");
             ChooseValue(d, "lineStyle", tagXLineStyle::kDot);
         },
         On<XvcMPoint>([](XvcMPoint& m) {
             m.SetThick(-5.0);
             m.SetLineStyle(tagXLineStyle(tagXLineStyle::kDot));
         })},
    };
}

TEST(XObjectDlgTest, OkWritesWhatWasDoneAndNothingElseCancelNothing)
{
    for (const Row& row : GetRows()) {
        SCOPED_TRACE(row.name);
        ObjectPtr object = row.make();
        const XSampleBytes before = StoreObject(*object);

        const Act cancel = [&](QDialog& dialog) {
            row.act(dialog);
            Press(dialog, Qt::Key_Escape);
        };
        EXPECT_EQ(Open(row.dialog, object.get(), nullptr, cancel), 2);
        EXPECT_EQ(StoreObject(*object), before);

        const Act look = [](QDialog& dialog) { Press(dialog, Qt::Key_Return); };
        EXPECT_EQ(Open(row.dialog, object.get(), nullptr, look), 1);
        EXPECT_EQ(StoreObject(*object), before) << "looking is no change";

        ObjectPtr expected = XfnMakeDraft(row.dialog, *object);
        row.change(*expected);
        expected->CalcRange();
        int endShape = -1;
        const Act confirm = [&](QDialog& dialog) {
            row.act(dialog);
            QTest::mouseClick(dialog.findChild<QPushButton*>("ok"), Qt::LeftButton);
        };
        EXPECT_EQ(Open(row.dialog, object.get(), nullptr, confirm, &endShape), 1);
        EXPECT_EQ(StoreObject(*object), StoreObject(*expected));
        EXPECT_NE(StoreObject(*object), before) << "the row changes nothing";
    }
}

TEST(XObjectDlgTest, WhenTheObjectGoesTheDialogIsCancelled)
{
    for (const bool isTold : {false, true}) {
        for (const Row& row : GetRows()) {
            SCOPED_TRACE(row.name);
            ObjectPtr object = row.make();
            const Act act = [&](QDialog& dialog) {
                object.reset();
                if (isTold) return XvcObjectDialogs().CheckObjects();
                row.act(dialog);
                QTest::mouseClick(dialog.findChild<QPushButton*>("ok"), Qt::LeftButton);
            };
            int endShape = -1;
            EXPECT_EQ(Open(row.dialog, object.get(), nullptr, act, &endShape,
                           [&object] { return object != nullptr; }),
                      2);
            EXPECT_EQ(endShape, 0);
        }
    }
}

// A layer that is read again, or an undo, while a dialog of the view is open.
TEST(XObjectDlgTest, AViewCancelsTheDialogOfWhatItLoses)
{
    XfnBindObjectDialogs();
    for (const auto& [lines, isUndone] : {std::pair(1, true), {1, false}, {2, true}, {2, false}}) {
        XTQSpaceView view;
        view.Create();
        view.SetMode(0);
        XvcBase lent;
        auto* layer = new XvcLayer;
        lent.AddTail(layer);
        view.GetExtBaseList()->AddTail(&lent);
        for (int i = 0; i < lines; ++i) {
            layer->AddTail(new XvcLine({0, 0, 0}, {30, 5.0 * i, 0}));
            auto* line = static_cast<XvcObj*>(layer->GetTail());
            view.GetCommandManager()->PushCommandSetInsert(layer, line);
            view.GetSelectedObj()->AddTail(line);
        }
        QTimer::singleShot(0, &view, [&, isUndone = isUndone] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            Type(*dialog, "thick", "5");
            if (isUndone)
                view.Undo();
            else
                view.ForgetLayers(lent);
            EXPECT_FALSE(dialog->isVisible());
            dialog->reject();
        });
        view.HandleMouseSelectMessage(view.GetHWND(), 515, 1, 0);
        EXPECT_EQ(view.GetUnDoStack()->GetSize(), isUndone ? lines - 1 : 0) << "no step of it";
        view.GetExtBaseList()->RemoveAll();
    }
    XObjectDialogs::Set(nullptr);
}

// Its dialog is handed the angle as text, and gives it back so.
TEST(XObjectDlgTest, LookingAtANorthArrowRoundsItsAngle)
{
    XvcNorthArrow arrow;
    arrow.SetAngle(12.3456);
    const Act look = [](QDialog& dialog) { Press(dialog, Qt::Key_Return); };
    EXPECT_EQ(Open(XObjectDialog::NorthArrow, &arrow, nullptr, look), 1);
    EXPECT_EQ(arrow.GetAngle(), 12.346);
}

TEST(XObjectDlgTest, ARefusalStandsBesideItsFieldAndDisablesOk)
{
    struct Refused
    {
        const char* field;
        const char* text;
        const char* says;
    };
    const Refused rows[] = {
        {"positionx", "abc", "Enter a number."},
        {"positiony", "12x", "Enter a number."},
        {"positionx", "", "Enter a number."},
        {"positionx", "1e308", ""}, // the largest is no sentinel yet
        {"positionx", "1e999", "Enter a number."},
        {"sides", "2", "Must be from 3 to 360."},
        {"sides", "4.5", "Enter a whole number."},
        {"thick", "-1", "Must not be below 0."},
    };
    for (const Refused& row : rows) {
        SCOPED_TRACE(std::string(row.field) + " " + row.text);
        XvcPoint point(1.0, 2.0);
        const Act act = [&](QDialog& dialog) {
            Type(dialog, row.field, row.text);
            if (!*row.text) QTest::keyClick(&Find<QLineEdit>(dialog, row.field), Qt::Key_Delete);
            const bool isRefused = *row.says;
            QString error;
            for (const auto* label : dialog.findChildren<QLabel*>())
                if (label->objectName().endsWith(".error") && label->isVisible())
                    error += label->text();
            EXPECT_TRUE(isRefused ? error.endsWith(row.says) : error.isEmpty())
                << error.toStdString();
            EXPECT_EQ(dialog.findChild<QPushButton*>("ok")->isEnabled(), !isRefused);
            EXPECT_FALSE(dialog.findChild<QLabel*>("refusal")->isVisible()) << "told twice";
            Find<QLineEdit>(dialog, "link"); // another page
            EXPECT_EQ(dialog.findChild<QLabel*>("refusal")->isVisible(), isRefused);
            if (isRefused) Press(dialog, Qt::Key_Return);
            EXPECT_TRUE(dialog.isVisible());
            Type(dialog, row.field, "7");
            EXPECT_TRUE(dialog.findChild<QPushButton*>("ok")->isEnabled());
            Press(dialog, Qt::Key_Return);
        };
        EXPECT_EQ(Open(XObjectDialog::Point, &point, nullptr, act), 1);
    }
}

TEST(XObjectDlgTest, AGroupShowsWhatDiffersAndKeepsIt)
{
    XvcPoint point(1.0, 2.0);
    XvcPolyline line;
    point.SetThick(-3.0);
    line.SetThick(4.0);
    point.SetLineColor(0xFF0000FFu);
    line.SetLineColor(0x80FF0000u);
    point.SetName("point");
    line.SetHideFlag(1);
    XObList objects;
    objects.AddTail(&point);
    objects.AddTail(&line);
    XScriptedPrompts prompts;
    prompts.AnswerColor(0x00112233u);
    const Act act = [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Properties of 2 objects");
        EXPECT_EQ(Find<QLineEdit>(dialog, "thick").placeholderText(), "mixed");
        EXPECT_TRUE(Find<QLineEdit>(dialog, "thick").text().isEmpty());
        EXPECT_EQ(Find<QCheckBox>(dialog, "hide").checkState(), Qt::PartiallyChecked);
        Type(dialog, "link", "both");
        QTest::mouseClick(&Find<QPushButton>(dialog, "lineColor"), Qt::LeftButton);
        Press(dialog, Qt::Key_Return);
    };
    EXPECT_EQ(Open(XObjectDialog::Group, nullptr, &objects, act), 1);
    EXPECT_EQ(point.GetLineColor(), 0xFF112233u);
    EXPECT_EQ(line.GetLineColor(), 0x80112233u) << "opacities are another field";
    EXPECT_STREQ(line.GetLink(), "both");
    EXPECT_EQ(point.GetThick(), -3.0);
    EXPECT_EQ(line.GetThick(), 4.0);
    EXPECT_EQ(line.IsHidden(), 1);
    EXPECT_STREQ(point.GetName(), "point");
    XObList none;
    tagXObjectDialogCall call;
    call.dialog = XObjectDialog::Group;
    call.objects = &none;
    EXPECT_EQ(XvcObjectDialogs().DoModal(call), 2);
}

TEST(XObjectDlgTest, UnitsOwnPatternsAndLineEnds)
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

// Digits that say nothing are not shown, and come to no harm.
TEST(XObjectDlgTest, NumbersAreShownInTheUnitOfTheObject)
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

TEST(XObjectDlgTest, ARectangleTurnedOrPulledOverKeepsItsPlace)
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

TEST(XObjectDlgTest, APictureIsReadWhenItIsChosenAndOneThatIsNoneKeepsTheOld)
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

TEST(XObjectDlgTest, TheUserSaysWhetherNewObjectsAreAskedForElseTheHost)
{
    XvcPoint point(1.0, 2.0);
    tagXObjectDialogCall call;
    call.dialog = XObjectDialog::Point;
    call.object = &point;
    call.isNew = 1;
    const auto isAsked = [&call] {
        bool isOpened = false;
        QTimer dismiss; // goes with the call that opens nothing
        QObject::connect(&dismiss, &QTimer::timeout, &dismiss, [&isOpened, &dismiss] {
            isOpened = true;
            dismiss.stop();
            Press(*qobject_cast<QDialog*>(QApplication::activeModalWidget()), Qt::Key_Escape);
        });
        dismiss.start(0);
        const int result = XObjectDialogs::Get()->DoModal(call);
        EXPECT_EQ(result, isOpened ? 2 : 1);
        return isOpened;
    };
    XfnBindObjectDialogs();
    EXPECT_TRUE(isAsked()) << "nobody has chosen";
    XfnBindObjectDialogs(XNewObjects::Keep);
    EXPECT_FALSE(isAsked());
    XfnSetAskForNewObject(true);
    EXPECT_TRUE(isAsked());
    XfnBindObjectDialogs();
    XfnSetAskForNewObject(false);
    EXPECT_FALSE(isAsked());
    XObjectDialogs::Set(nullptr);
    call.dialog = XObjectDialog::Line; // of another class
    EXPECT_EQ(XvcObjectDialogs().DoModal(call), 2);
}

TEST(XObjectDlgTest, TheFirstFieldHasTheFocusAndEveryControlAName)
{
    for (const Row& row : GetRows()) {
        SCOPED_TRACE(row.name);
        ObjectPtr object = row.make();
        const Act act = [&](QDialog& dialog) {
            const QWidget* focus = dialog.focusWidget();
            ASSERT_NE(focus, nullptr);
            EXPECT_TRUE(focus->isVisible());
            EXPECT_FALSE(qobject_cast<const QPushButton*>(focus) && focus->objectName() == "ok");
            // what takes the focus by the keyboard tells a screen reader what it is
            for (const QWidget* control : dialog.findChildren<QWidget*>()) {
                const bool isField = control->window() == &dialog && !control->focusProxy() &&
                                     (qobject_cast<const QLineEdit*>(control) ||
                                      qobject_cast<const QComboBox*>(control) ||
                                      qobject_cast<const QSlider*>(control) ||
                                      qobject_cast<const QTableView*>(control));
                const QWidget* part = qobject_cast<QComboBox*>(control->parentWidget());
                EXPECT_FALSE(isField && !part && control->accessibleName().isEmpty())
                    << control->objectName().toStdString();
            }
            Press(dialog, Qt::Key_Escape);
        };
        Open(row.dialog, object.get(), nullptr, act);
    }
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
