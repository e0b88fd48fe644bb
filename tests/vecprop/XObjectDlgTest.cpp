#include "tests/vecprop/XObjectDialogDriver.h"

namespace {

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

// Digits that say nothing are not shown, and come to no harm.
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

} // namespace
