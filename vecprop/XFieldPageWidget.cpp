#include "vecprop/XFieldPageWidget.h"

#include "dialogs/XOwnerWidget.h"
#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "vecprop/XChoiceWidget.h"
#include "vecprop/XColorButton.h"
#include "vecprop/XErrorLabelWidget.h"
#include "vecprop/XLengthWidget.h"
#include "vecprop/XNumberWidget.h"
#include "vecprop/XObjectEditModel.h"
#include "vecprop/XOpacityWidget.h"

#include <QCheckBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QSlider>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr const char* kPictureFilter =
    "Pictures (*.bmp;*.jpg;*.jpeg)|*.bmp;*.jpg;*.jpeg|All files (*.*)|*.*||";

class FaceBox final : public QFontComboBox
{
public:
    using QFontComboBox::QFontComboBox;

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        hasFocus() ? QFontComboBox::wheelEvent(event) : event->ignore();
    }
};

// Enter is for the dialog here too, so lines begin with Shift+Enter.
class LinesBox final : public QPlainTextEdit
{
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
            QPlainTextEdit::keyPressEvent(event);
        else if (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier))
            textCursor().insertBlock();
        else
            event->ignore();
    }
};

void ShowLine(QLineEdit& edit, const QString& text, bool isMixed, const char* whenEmpty)
{
    const QSignalBlocker blocker(&edit);
    edit.setPlaceholderText(isMixed ? kXMixedText : whenEmpty);
    if (text != edit.text()) edit.setText(text);
}

} // namespace

XFieldPageWidget::XFieldPageWidget(XObjectEditModel& model, XFieldPage page, QWidget* parent)
    : QWidget(parent), m_model(model)
{
    auto* form = new QFormLayout(this);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    for (int i = 0; i < model.GetFieldCount(); ++i) {
        const tagXObjectField& field = model.GetField(i);
        if (field.page != page) continue;
        if (field.label.IsEmpty()) {
            AddControl(i);
            continue;
        }
        auto* row = new QWidget(this);
        auto* column = new QVBoxLayout(row);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(2);
        m_line = new QHBoxLayout;
        m_line->setSpacing(6);
        column->addLayout(m_line);
        QLabel* error = XfnMakeErrorLabel(XfnToQString(field.id) + ".error", row);
        column->addWidget(error);
        m_rows.push_back({{}, error});
        AddControl(i);
        if (field.kind == XFieldKind::Flag) {
            form->addRow("", row);
        } else {
            auto* label = new QLabel(XfnToQString(field.label), this);
            label->setBuddy(m_controls.back().box);
            // on the line of a box that is taller than the label
            if (field.kind != XFieldKind::Lines)
                label->setMinimumHeight(m_controls.back().box->sizeHint().height());
            form->addRow(label, row);
        }
    }
    // Enter is for the dialog
    for (QPushButton* button : findChildren<QPushButton*>())
        button->setAutoDefault(false);
    ShowModel();
}

int XFieldPageWidget::HasError() const
{
    return std::any_of(m_rows.begin(), m_rows.end(),
                       [](const tagRow& row) { return !row.error->text().isEmpty(); });
}

void XFieldPageWidget::FocusFirst()
{
    for (const tagControl& control : m_controls) {
        if (control.box->focusPolicy() == Qt::NoFocus && !control.box->focusProxy()) continue;
        control.box->setFocus();
        if (auto* edit = dynamic_cast<QLineEdit*>(control.box)) edit->selectAll();
        return;
    }
}

void XFieldPageWidget::ShowModel()
{
    for (const tagControl& control : m_controls)
        control.show();
    for (const tagRow& row : m_rows) {
        QString error;
        for (const int field : row.fields) {
            if (error.isEmpty()) error = XfnToQString(m_model.GetError(field));
            if (!error.isEmpty() && row.fields.size() > 1) {
                error = XfnToQString(m_model.GetField(field).name) + ": " + error;
                break;
            }
        }
        XfnShowError(*row.error, error);
    }
}

void XFieldPageWidget::AddControl(int index)
{
    const tagXObjectField& field = m_model.GetField(index);
    tagControl control = Make(index);
    if (control.box->objectName().isEmpty()) control.box->setObjectName(XfnToQString(field.id));
    if (control.box->accessibleName().isEmpty())
        control.box->setAccessibleName(XfnToQString(field.name));
    if (*field.tip) control.box->setToolTip(field.tip);
    m_controls.push_back(std::move(control));
    m_rows.back().fields.push_back(index);
}

XFieldPageWidget::tagControl XFieldPageWidget::Make(int index)
{
    switch (m_model.GetField(index).kind) {
    case XFieldKind::Number:
    case XFieldKind::Count:
        return MakeNumber(index);
    case XFieldKind::Length:
        return MakeLength(index);
    case XFieldKind::Text:
    case XFieldKind::Knots:
        return MakeText(index);
    case XFieldKind::Lines:
        return MakeLines(index);
    case XFieldKind::Face:
        return MakeFace(index);
    case XFieldKind::Color:
        return MakeColor(index);
    case XFieldKind::Opacity:
        return MakeOpacity(index);
    case XFieldKind::Choice:
        return MakeChoice(index);
    case XFieldKind::Flag:
        return MakeFlag(index);
    case XFieldKind::Picture:
        return MakePicture(index);
    case XFieldKind::Info:
        break;
    }
    return MakeInfo(index);
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeNumber(int index)
{
    auto* edit = new XNumberWidget(this);
    m_line->addWidget(edit, 1);
    if (*m_model.GetField(index).unit)
        m_line->addWidget(new QLabel(m_model.GetField(index).unit, this));
    edit->SetStepHandler([this, index](double steps) { m_model.Step(index, steps); });
    QObject::connect(edit, &QLineEdit::textEdited, this, [this, index](const QString& text) {
        m_model.SetText(index, XfnFromQString(text));
    });
    return {index, edit, [this, index, edit] {
                edit->ShowText(XfnToQString(m_model.GetText(index)), m_model.IsMixed(index),
                               m_model.GetField(index).whenZero);
                ShowExact(index, *edit);
            }};
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeLength(int index)
{
    const QString id = XfnToQString(m_model.GetField(index).id);
    auto* length = new XLengthWidget(XfnToQString(m_model.GetField(index).name), this);
    length->setObjectName(id + ".box");
    length->GetNumber().setObjectName(id);
    length->GetUnit().setObjectName(id + ".unit");
    length->SetUnitNames(m_model.GetUnitPlural(), "pixels");
    m_line->addWidget(length, 1);
    length->GetNumber().SetStepHandler([this, index](double steps) { m_model.Step(index, steps); });
    length->SetUnitHandler([this, index](int isPixels) { m_model.SetPixels(index, isPixels); });
    QObject::connect(
        &length->GetNumber(), &QLineEdit::textEdited, this,
        [this, index](const QString& text) { m_model.SetText(index, XfnFromQString(text)); });
    return {index, length, [this, index, length] {
                length->ShowLength(XfnToQString(m_model.GetText(index)), m_model.IsMixed(index),
                                   m_model.IsPixels(index), m_model.GetField(index).whenZero);
                ShowExact(index, length->GetNumber());
            }};
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeText(int index)
{
    auto* edit = new QLineEdit(this);
    const char* whenEmpty = m_model.GetField(index).kind == XFieldKind::Knots ? "made evenly" : "";
    m_line->addWidget(edit, 1);
    QObject::connect(edit, &QLineEdit::textEdited, this, [this, index](const QString& text) {
        m_model.SetText(index, XfnFromQString(text));
    });
    return {index, edit, [this, index, edit, whenEmpty] {
                ShowLine(*edit, XfnToQString(m_model.GetText(index)), m_model.IsMixed(index),
                         whenEmpty);
            }};
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeLines(int index)
{
    auto* edit = new LinesBox(this);
    edit->setTabChangesFocus(true);
    edit->setToolTip("Shift+Enter begins a new line");
    edit->setFixedHeight(fontMetrics().lineSpacing() * 3 + 12);
    m_line->addWidget(edit, 1);
    QObject::connect(edit, &QPlainTextEdit::textChanged, this, [this, index, edit] {
        m_model.SetText(index, XfnFromQString(edit->toPlainText()));
    });
    return {index, edit, [this, index, edit] {
                const QSignalBlocker blocker(edit);
                const QString text = XfnToQString(m_model.GetText(index));
                if (text != edit->toPlainText()) edit->setPlainText(text);
            }};
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeFace(int index)
{
    auto* faces = new FaceBox(this);
    faces->setFocusPolicy(Qt::StrongFocus);
    faces->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    faces->setMinimumContentsLength(12);
    m_line->addWidget(faces, 1);
    QObject::connect(faces, &QComboBox::editTextChanged, this, [this, index](const QString& text) {
        m_model.SetText(index, XfnFromQString(text));
    });
    return {index, faces, [this, index, faces] {
                const QSignalBlocker blocker(faces);
                const QString text = XfnToQString(m_model.GetText(index));
                if (text != faces->currentText()) faces->setEditText(text);
            }};
}

void XFieldPageWidget::ShowExact(int index, QWidget& box)
{
    const XString exact = m_model.GetExactText(index);
    const char* tip = m_model.GetField(index).tip;
    box.setToolTip(exact.IsEmpty() ? QString(tip) : XfnToQString(exact));
}

int XFieldPageWidget::FindOpacity(int colorIndex) const
{
    const int next = colorIndex + 1;
    const bool isOpacity = next < m_model.GetFieldCount() &&
                           m_model.GetField(next).kind == XFieldKind::Opacity &&
                           m_model.GetField(next).label.IsEmpty();
    return isOpacity ? next : -1;
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeColor(int index)
{
    auto* button = new XColorButton(this);
    m_line->addWidget(button);
    button->SetHandler([this, index](tagXColor color) { m_model.SetColor(index, color); });
    return {index, button, [this, index, button] {
                const int opacity = FindOpacity(index);
                button->ShowColor(m_model.GetColor(index),
                                  opacity < 0 ? 100 : m_model.GetChoice(opacity),
                                  m_model.IsMixed(index));
            }};
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeOpacity(int index)
{
    auto* opacity = new XOpacityWidget(XfnToQString(m_model.GetField(index).name), this);
    opacity->setObjectName(XfnToQString(m_model.GetField(index).id) + ".box");
    opacity->GetSlider().setObjectName(XfnToQString(m_model.GetField(index).id));
    m_line->addWidget(opacity, 1);
    opacity->SetHandler([this, index](int percent) { m_model.SetChoice(index, percent); });
    return {index, opacity, [this, index, opacity] {
                opacity->ShowOpacity(m_model.GetChoice(index), m_model.IsMixed(index));
            }};
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeChoice(int index)
{
    auto* list = new XChoiceWidget(m_model.GetField(index).picture, this);
    m_line->addWidget(list, 1);
    list->SetChoices(m_model.GetChoices(index), &m_model.GetDraft());
    list->SetHandler([this, index](int value) { m_model.SetChoice(index, value); });
    return {index, list, [this, index, list] {
                list->ShowChoice(m_model.GetChoice(index), m_model.IsMixed(index));
            }};
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeFlag(int index)
{
    const tagXObjectField& field = m_model.GetField(index);
    auto* box = new QCheckBox(XfnToQString(field.label.IsEmpty() ? field.name : field.label), this);
    m_line->addWidget(box);
    QObject::connect(box, &QCheckBox::clicked, this, [this, index, box] {
        m_model.SetChoice(index, box->checkState() == Qt::Unchecked ? 0 : 1);
    });
    return {index, box, [this, index, box] {
                const QSignalBlocker blocker(box);
                const bool isMixed = m_model.IsMixed(index);
                box->setTristate(isMixed);
                box->setCheckState(isMixed                    ? Qt::PartiallyChecked
                                   : m_model.GetChoice(index) ? Qt::Checked
                                                              : Qt::Unchecked);
            }};
}

XFieldPageWidget::tagControl XFieldPageWidget::MakePicture(int index)
{
    auto* path = new QLineEdit(this);
    path->setObjectName("picture.path");
    path->setAccessibleName("Picture file");
    path->setReadOnly(true);
    auto* choose = new QPushButton("Choose...", this);
    m_line->addWidget(path, 1);
    m_line->addWidget(choose);
    QObject::connect(choose, &QPushButton::clicked, this, [this, index] {
        tagXFilePrompt prompt{.title = "Choose a picture", .filter = kPictureFilter};
        XString chosen;
        if (XPrompts::Get()->OpenFile(XfnGetOwnerHandle(this), prompt, chosen))
            m_model.LoadPicture(index, chosen);
    });
    return {index, choose, [this, index, path] {
                ShowLine(*path, XfnToQString(m_model.GetText(index)), false, "no file");
                path->setToolTip(path->text());
            }};
}

XFieldPageWidget::tagControl XFieldPageWidget::MakeInfo(int index)
{
    auto* label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    m_line->addWidget(label, 1);
    return {index, label, [this, index, label] {
                label->setText(m_model.IsMixed(index) ? QString(kXMixedText)
                                                      : XfnToQString(m_model.GetText(index)));
            }};
}
