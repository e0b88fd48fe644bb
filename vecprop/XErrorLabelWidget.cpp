#include "vecprop/XErrorLabelWidget.h"

#include <QLabel>

QLabel* XfnMakeErrorLabel(const QString& objectName, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->hide();
    return label;
}

void XfnShowError(QLabel& label, const QString& error)
{
    if (label.text() == error) return;
    // red that reads on the window, be it light or dark
    QPalette palette = label.parentWidget()->palette();
    const bool isDark = palette.color(QPalette::Window).lightness() < 128;
    palette.setColor(QPalette::WindowText,
                     isDark ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB0, 0x10, 0x10));
    label.setPalette(palette);
    label.setText(error);
    label.setVisible(!error.isEmpty());
}
