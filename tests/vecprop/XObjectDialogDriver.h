#pragma once

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
#include "vecprop/XObjectDlg.h"
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

// Opens an object dialog, does in it what a user does, and makes objects for it.

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

inline void Type(QDialog& dialog, const char* name, const char* text)
{
    QLineEdit& edit = Find<QLineEdit>(dialog, name);
    edit.selectAll();
    QTest::keyClicks(&edit, text);
}

inline void Press(QDialog& dialog, int key)
{
    QTest::keyClick(dialog.focusWidget() ? dialog.focusWidget() : &dialog,
                    static_cast<Qt::Key>(key));
}

inline int Open(XObjectDialog kind, XvcObj* object, const XObList* objects, const Act& act,
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

inline ObjectPtr MakeCurve()
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

inline void EditCell(QDialog& dialog, int row, int column, const char* text)
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

inline void ChooseValue(QDialog& dialog, const char* name, int value)
{
    QComboBox& list = Find<QComboBox>(dialog, name);
    QTest::keyClick(&list, Qt::Key_Home);
    while (list.currentData().toInt() != value && list.currentIndex() + 1 < list.count())
        QTest::keyClick(&list, Qt::Key_Down);
}

inline void SetColor(QDialog& dialog, const char* name, tagXColor color)
{
    XObjectEditModel& model = static_cast<XObjectDlg&>(dialog).GetModel();
    model.SetColor(model.FindField(name), color);
}
