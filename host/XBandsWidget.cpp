#include "host/XBandsWidget.h"

#include "host/XLayerStack.h"
#include "host/XMainActions.h"

#include <QAction>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace {

// A wheel that scrolls the panel must not change the band under the pointer.
class BandBox final : public QComboBox
{
public:
    using QComboBox::QComboBox;

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        if (hasFocus())
            QComboBox::wheelEvent(event);
        else
            event->ignore();
    }
};

void ShowBand(QComboBox* box, int band)
{
    const QSignalBlocker blocker(box);
    box->setCurrentIndex(band);
    box->setEditText(box->itemText(band));
    if (box->lineEdit()) box->lineEdit()->setCursorPosition(0);
}

} // namespace

XBandsWidget::XBandsWidget(XLayerStack& stack, XMainActions& actions, QWidget* parent)
    : QWidget(parent), m_stack(stack)
{
    setObjectName("bands");
    setAccessibleName("Bands");
    m_title = new QLabel(this);
    m_title->setObjectName("bands.title");
    m_title->setTextFormat(Qt::PlainText);
    m_title->setMinimumWidth(1);
    m_grayMode = new QRadioButton("&Gray", this);
    m_grayMode->setObjectName("bands.grayMode");
    m_colourMode = new QRadioButton("&Colour", this);
    m_colourMode->setObjectName("bands.colourMode");
    auto* modes = new QHBoxLayout;
    modes->addWidget(m_grayMode);
    modes->addWidget(m_colourMode);
    modes->addStretch();

    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    m_gray = MakeBox("bands.gray", "Gray band");
    m_colours[0] = MakeBox("bands.red", "Red band");
    m_colours[1] = MakeBox("bands.green", "Green band");
    m_colours[2] = MakeBox("bands.blue", "Blue band");
    form->addRow("Gra&y:", m_gray);
    form->addRow("&Red:", m_colours[0]);
    form->addRow("Gree&n:", m_colours[1]);
    form->addRow("&Blue:", m_colours[2]);

    auto* presets = new QHBoxLayout;
    for (const char* id : {"image.natural", "image.falseColour", "image.shortWave"}) {
        auto* button = new QToolButton(this);
        QAction* action = actions.Get(id);
        const QString name = action->text().remove('&');
        action->setIconText(name.section(" Colours", 0, 0)); // the short form, for the button
        const auto followTip = [action] { action->setToolTip(action->statusTip()); };
        followTip(); // which says why the action is disabled, while it is
        QObject::connect(action, &QAction::changed, this, followTip);
        button->setDefaultAction(action);
        button->setObjectName(QString("bands.") + QString(id).section('.', 1));
        button->setAccessibleName(name);
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        button->setFocusPolicy(Qt::StrongFocus);
        presets->addWidget(button);
    }
    presets->addStretch();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_title);
    layout->addLayout(modes);
    layout->addLayout(form);
    layout->addLayout(presets);
    layout->addStretch();

    QObject::connect(m_grayMode, &QRadioButton::clicked, this,
                     [this] { Change([](XBandChoice& c) { c.SetColourMode(false); }); });
    QObject::connect(m_colourMode, &QRadioButton::clicked, this,
                     [this] { Change([](XBandChoice& c) { c.SetColourMode(true); }); });
    m_stack.AddObserver([this](LayerChange change) {
        if (change == LayerChange::Closing)
            m_filled = nullptr;
        else
            ShowModel();
    });
    ShowModel();
}

QComboBox* XBandsWidget::MakeBox(const char* objectName, const QString& accessibleName)
{
    auto* box = new BandBox(this);
    box->setObjectName(objectName);
    box->setAccessibleName(accessibleName);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setFocusPolicy(Qt::StrongFocus);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(12);
    box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    box->setToolTip("Band number, name, or a wavelength such as 0.66 um");
    box->lineEdit()->setAcceptDrops(false); // files dropped here are meant for the window
    box->lineEdit()->setObjectName(QString(objectName) + ".text");
    box->lineEdit()->setAccessibleName(accessibleName);
    QObject::connect(box, &QComboBox::activated, this, [this, box] { TakeBox(box); });
    QObject::connect(box->lineEdit(), &QLineEdit::editingFinished, this,
                     [this, box] { TakeBox(box); });
    return box;
}

void XBandsWidget::Change(const std::function<void(XBandChoice&)>& change)
{
    m_stack.ChangeBands(m_stack.GetCurrent(), change);
    ShowModel();
}

void XBandsWidget::TakeBox(QComboBox* box)
{
    const tagXLayer* layer = m_stack.GetAt(m_stack.GetCurrent());
    if (!layer) return;
    const int band = XfnFindBand(box->currentText(), layer->bands->GetLabels());
    Change([this, box, band](XBandChoice& choice) {
        if (band < 0) return;
        if (box == m_gray) {
            choice.SetGray(band);
            return;
        }
        int rgb[3] = {choice.GetBand(0), choice.GetBand(1), choice.GetBand(2)};
        for (int i = 0; i < 3; ++i)
            if (box == m_colours[i]) rgb[i] = band;
        choice.SetColour(rgb[0], rgb[1], rgb[2]);
    });
}

void XBandsWidget::FillBoxes(const XBandChoice* choice)
{
    if (choice == m_filled) return;
    m_filled = choice;
    QStringList texts;
    if (choice)
        for (int i = 0; i < choice->GetBandCount(); ++i)
            texts.append(XfnBandLabelText(i, choice->GetLabels()[static_cast<std::size_t>(i)]));
    for (QComboBox* box : {m_gray, m_colours[0], m_colours[1], m_colours[2]}) {
        const QSignalBlocker blocker(box);
        box->clear();
        box->addItems(texts);
    }
}

void XBandsWidget::ShowModel()
{
    const tagXLayer* layer = m_stack.GetAt(m_stack.GetCurrent());
    const XBandChoice* choice = layer ? layer->bands.get() : nullptr;
    FillBoxes(choice);
    m_title->setText(layer ? layer->name : QString("No layer"));
    const bool isColour = choice && choice->IsColour();
    for (QRadioButton* mode : {m_grayMode, m_colourMode}) {
        const QSignalBlocker blocker(mode);
        mode->setEnabled(choice != nullptr);
        mode->setChecked(choice && isColour == (mode == m_colourMode));
    }
    m_colourMode->setEnabled(choice && choice->GetBandCount() > 1);
    m_gray->setEnabled(choice && !isColour);
    ShowBand(m_gray, choice ? choice->GetGrayBand() : -1);
    for (int i = 0; i < 3; ++i) {
        m_colours[i]->setEnabled(isColour);
        ShowBand(m_colours[i], choice ? choice->GetBand(i) : -1);
    }
}
