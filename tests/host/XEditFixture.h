#pragma once

#include "foundation/vector/XvcLayer.h"
#include "host/XAutosave.h"
#include "tests/host/XHostFixture.h"

#include <QDir>

/// Edits in a shown window as a user does; what was kept of unsaved edits goes with the test.
class XEditFixture : public XHostFixture
{
protected:
    ~XEditFixture() override
    {
        window.reset();
        QDir(XAutosave::GetUserFolder()).removeRecursively();
    }
    void Drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton)
    {
        Mouse(QEvent::MouseButtonPress, from, button, button);
        Mouse(QEvent::MouseMove, to, Qt::NoButton, button);
        Mouse(QEvent::MouseButtonRelease, to, button, Qt::NoButton);
        Settle();
    }
    void Click(QPoint at) { Drag(at, at); }
    void DoubleClick(QPoint at)
    {
        Click(at);
        Mouse(QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton);
        Mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
        Settle();
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        QTest::keyClick(&window->GetView(), key, keys);
        Settle();
    }
    void DrawLine(QPoint from, QPoint to)
    {
        Key(Qt::Key_L);
        Drag(from, to);
    }
    XvcLayer& Layer(int file = 0)
    {
        return *window->GetVectors().GetAt(file)->layers.front().layer;
    }
    int CountObjects() { return window->GetVectors().GetAt(0) ? Layer().GetCount() : -1; }
    int CountSelected() { return window->GetView().GetSelectedObj()->GetCount(); }
    XObject* Selected()
    {
        return CountSelected() == 1 ? window->GetView().GetSelectedObj()->GetHead() : nullptr;
    }
    std::string Undo() { return Action("edit.undo")->text().toStdString(); }
};
