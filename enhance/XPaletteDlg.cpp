#include "enhance/XPaletteDlg.h"

#include "dialogs/XOwnerWidget.h"
#include "enhance/XPaletteFile.h"
#include "enhance/XPaletteGridWidget.h"
#include "enhance/XPalettePicture.h"
#include "enhance/XPaletteStripWidget.h"
#include "foundation/base/XFile.h"
#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XDMComposite.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStyle>

#include <algorithm>

namespace {

constexpr int kFirstPosition = 1; // the list opens on the grey ramp
constexpr int kIconLetters = 9;   // width of a ramp in the list
constexpr int kNumberLetters = 7; // room for 255 and the margins of its box
constexpr int kOwnerGap = 16;

struct tagReadOut
{
    const char* name;
    const char* label;
    XString (XPaletteModel::*text)() const;
};
constexpr tagReadOut kReadOuts[] = {{"palette.index", "Index", &XPaletteModel::GetIndexText},
                                    {"palette.red", "Red", &XPaletteModel::GetRedText},
                                    {"palette.green", "Green", &XPaletteModel::GetGreenText},
                                    {"palette.blue", "Blue", &XPaletteModel::GetBlueText},
                                    {"palette.value", "Values", &XPaletteModel::GetValueText}};

QLabel* MakeHint(const char* text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    if (font.pixelSize() > 0)
        font.setPixelSize(font.pixelSize() * 9 / 10);
    else
        font.setPointSizeF(font.pointSizeF() * 0.9);
    label->setFont(font);
    return label;
}

/// The right button acts on the current entry wherever it is pressed: the list leaves it to the dialog.
class XPaletteList : public QListWidget
{
public:
    using QListWidget::QListWidget;

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        if (event->button() == Qt::RightButton) return event->ignore();
        QListWidget::mousePressEvent(event);
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override
    {
        if (event->button() == Qt::RightButton) return event->ignore();
        QListWidget::mouseDoubleClickEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (event->button() == Qt::RightButton) return event->ignore(); // nor is it a click
        QListWidget::mouseReleaseEvent(event);
    }
};

} // namespace

XPaletteDlg::XPaletteDlg()
{
    setObjectName("palette");
    setWindowTitle("Set Color Table");
    Build();
    FillList();
    ConnectParts();
}

XPaletteDlg::~XPaletteDlg()
{
    DestroyHandle();
    // what shows the model goes before it
    delete m_strip;
    delete m_grid;
}

void XPaletteDlg::Build()
{
    m_image = new QLabel(this);
    m_image->setObjectName("palette.image");
    m_image->setTextFormat(Qt::PlainText);
    m_image->hide();
    m_strip = new XPaletteStripWidget(m_model, this);
    m_strip->setObjectName("palette.strip");
    m_strip->setToolTip("Drag with the left button to rotate the table, with the right one to push "
                        "it; the image follows at once");
    m_grid = new XPaletteGridWidget(m_model, this);
    m_grid->setObjectName("palette.grid");
    m_grid->setToolTip("Arrows move, Return picks a colour, Space sets or releases an anchor.\n"
                       "Colours run evenly from one anchor (red frame) to the next.");
    m_list = new XPaletteList(this);
    m_list->setObjectName("palette.list");
    m_list->setAccessibleName("Palettes");
    m_list->setUniformItemSizes(true);

    m_pane = new QGroupBox("Entry", this);
    m_pane->setObjectName("palette.pane");
    auto* pane = new QGridLayout(m_pane);
    for (int i = 0; i < 5; ++i) {
        m_readOuts[i] = new QLineEdit(m_pane);
        m_readOuts[i]->setObjectName(kReadOuts[i].name);
        m_readOuts[i]->setReadOnly(true);
        auto* label = new QLabel(kReadOuts[i].label, m_pane);
        label->setBuddy(m_readOuts[i]);
        const bool isLast = i == 4; // a row of its own
        if (i > 0 && !isLast) label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        if (!isLast)
            m_readOuts[i]->setFixedWidth(fontMetrics().averageCharWidth() * kNumberLetters);
        pane->addWidget(label, isLast, isLast ? 0 : 2 * i);
        pane->addWidget(m_readOuts[i], isLast, isLast ? 1 : 2 * i + 1, 1, isLast ? 7 : 1);
    }
    m_pane->hide();

    auto* buttons = new QHBoxLayout;
    const auto addButton = [&](const char* name, const char* text, const char* tip,
                               void (XPaletteDlg::*click)()) {
        auto* button = new QPushButton(text, this);
        button->setObjectName(name);
        button->setToolTip(tip);
        button->setAutoDefault(false);
        QObject::connect(button, &QPushButton::clicked, this, [this, click] { (this->*click)(); });
        buttons->addWidget(button);
        return button;
    };
    m_edit = addButton("palette.edit", "&Edit", "Show what the entry under the pointer holds",
                       &XPaletteDlg::OnButtonEdit);
    addButton("palette.load", "&Load", "Read a table from a palette file",
              &XPaletteDlg::OnButtonLoad);
    addButton("palette.save", "&Save", "Write the table to a palette file",
              &XPaletteDlg::OnButtonSave);
    buttons->addStretch();
    addButton("palette.apply", "&Apply", "Colour the image by the table",
              &XPaletteDlg::OnButtonApply)
        ->setDefault(true);
    addButton("palette.close", "&Close", "Close without a further change",
              &XPaletteDlg::OnButtonClose);

    auto* layout = new QGridLayout(this);
    layout->addWidget(m_image, 0, 0, 1, 2);
    layout->addWidget(m_strip, 1, 0, 1, 2);
    layout->addWidget(MakeHint("Drag the ramp: left button rotates, right button pushes", this), 2,
                      0, 1, 2);
    layout->addWidget(m_grid, 3, 0);
    layout->addWidget(m_list, 3, 1);
    layout->addWidget(MakeHint("Click a cell: its colour. Right click: anchor on or off", this), 4,
                      0, 1, 2);
    layout->addWidget(m_pane, 5, 0, 1, 2);
    layout->addLayout(buttons, 6, 0, 1, 2);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    setTabOrder(m_grid, m_list);
    setTabOrder(m_list, m_edit);
}

void XPaletteDlg::FillList()
{
    const int letter = fontMetrics().averageCharWidth();
    m_list->setIconSize(QSize(letter * kIconLetters, fontMetrics().ascent()));
    m_list->setSpacing(1);
    for (int position = 0; position < XPaletteModel::GetListCount(); ++position) {
        new QListWidgetItem(XfnToQString(XPaletteModel::GetListText(position)), m_list);
        ShowIcon(position);
    }
    m_list->setFixedSize(m_list->sizeHintForColumn(0) + 2 * m_list->frameWidth() + letter +
                             style()->pixelMetric(QStyle::PM_ScrollBarExtent),
                         m_grid->sizeHint().height());
}

void XPaletteDlg::ShowIcon(int position)
{
    const double ratio = devicePixelRatioF();
    const QSize size = (QSizeF(m_list->iconSize()) * ratio).toSize();
    // all entries, mixed: of fine stripes a choice would show others
    const QImage ramp =
        XfnDrawRamp(m_model.GetListTable(position), tagXPaletteTable::kEntries)
            .scaled(size.width(), 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QPixmap pixmap = QPixmap::fromImage(ramp.scaled(size));
    pixmap.setDevicePixelRatio(ratio);
    QIcon icon;
    icon.addPixmap(pixmap);
    icon.addPixmap(pixmap, QIcon::Selected); // a style would tint it
    m_list->item(position)->setIcon(icon);
}

void XPaletteDlg::ConnectParts()
{
    m_grid->SetActions({[this](int entry) { Point(entry); }, [this] { PickColor(); },
                        [this] { ChangeAnchor(&XPaletteModel::ToggleAnchor); }});
    tagXPaletteStripActions strip;
    strip.start = [this](int x) { m_model.StartDrag(x); };
    strip.drag = [this](int x, bool isPush) {
        const int direction = m_model.DragTo(x);
        if (direction > 0) isPush ? PushForward() : RotateForward();
        if (direction < 0) isPush ? PushBackward() : RotateBackward();
        return direction != 0;
    };
    strip.end = [this] { m_model.EndDrag(); };
    strip.rightClick = [this] { ChangeAnchor(&XPaletteModel::ToggleAnchor); };
    strip.rightDoubleClick = [this] { ChangeAnchor(&XPaletteModel::RemoveAnchor); };
    m_strip->SetActions(std::move(strip));
    QObject::connect(m_list, &QListWidget::currentRowChanged, this,
                     [this](int row) { Choose(row); });
    // a rotated palette comes back by a click on its entry, which is the current one already
    QObject::connect(m_list, &QListWidget::itemClicked, this,
                     [this](QListWidgetItem* item) { Choose(m_list->row(item)); });
    const auto connectKey = [this](QKeySequence::StandardKey key,
                                   XPaletteModel::XRestored (XPaletteModel::*restore)()) {
        auto* shortcut = new QShortcut(key, this);
        QObject::connect(shortcut, &QShortcut::activated, this,
                         [this, restore] { Restore((m_model.*restore)()); });
    };
    connectKey(QKeySequence::Undo, &XPaletteModel::Undo);
    connectKey(QKeySequence::Redo, &XPaletteModel::Redo);
}

int XPaletteDlg::Create(QWidget* owner)
{
    return Create(owner, XfnGetOwnerHandle(owner));
}

int XPaletteDlg::Create(QWidget* owner, XHWND window)
{
    if (m_isCreated || m_isReleased) return 0;
    m_owner = window;
    setParent(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                         Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    m_isCreated = true;
    m_pane->hide();
    const QSignalBlocker blocker(m_list);
    m_list->setCurrentRow(kFirstPosition);
    m_model.Open(kFirstPosition);
    ShowModel();
    return 1;
}

void XPaletteDlg::Show()
{
    if (!m_isCreated) return;
    if (!testAttribute(Qt::WA_Moved)) PlaceOverOwner();
    show();
    m_grid->setFocus();
}

// Where the view ends, so that most of the image stays in sight while it is coloured.
void XPaletteDlg::PlaceOverOwner()
{
    const QWidget* owner = parentWidget();
    if (!owner) return;
    adjustSize();
    const QPoint gap(kOwnerGap, kOwnerGap);
    QPoint corner = owner->mapToGlobal(owner->rect().bottomRight()) - gap;
    const QRect screen = owner->screen()->availableGeometry();
    corner.setX(std::min(corner.x(), screen.right()));
    corner.setY(std::min(corner.y(), screen.bottom()));
    move(std::max(corner.x() - width(), screen.left()),
         std::max(corner.y() - height(), screen.top()));
}

// Grown by the pane, the dialog moves up rather than ending below the screen.
void XPaletteDlg::KeepOnScreen()
{
    layout()->activate();
    adjustSize();
    const QRect free = screen()->availableGeometry();
    const QRect frame = frameGeometry();
    const int below = std::max(frame.bottom() - free.bottom(), 0);
    const int beside = std::max(frame.right() - free.right(), 0);
    if (below + beside > 0)
        move(std::max(frame.left() - beside, free.left()),
             std::max(frame.top() - below, free.top()));
}

void XPaletteDlg::DestroyWindow()
{
    reject();
}

void XPaletteDlg::OnButtonClose()
{
    reject();
}

void XPaletteDlg::reject()
{
    if (!m_isCreated) return;
    m_isCreated = false;
    m_grid->ReleaseSurface();
    QDialog::reject();
    XfnSendMessage(m_owner, kMsgClose, 0, 0);
}

void XPaletteDlg::Release()
{
    if (m_isReleased) return;
    m_isReleased = true;
    m_isCreated = false;
    m_owner = 0;
    m_composite = nullptr;
    DestroyHandle();
    hide();
    // a prompt lies on the stack above this window: it must not go with the owner's widgets
    if (m_prompts > 0)
        setParent(nullptr);
    else
        deleteLater();
}

/// Asks the user something. @return false when the window was given up meanwhile
template <class Ask>
bool XPaletteDlg::Prompt(const Ask& ask)
{
    ++m_prompts;
    ask();
    --m_prompts;
    if (!m_isReleased) return true;
    if (m_prompts == 0) deleteLater();
    return false;
}

void XPaletteDlg::SetXDMComposite(XDMComposite* composite)
{
    m_composite = composite;
    const QString name = composite ? XfnToQString(composite->GetName()) : QString();
    m_image->setText(name);
    m_image->setToolTip(name);
    m_image->setVisible(!name.isEmpty());
}

void XPaletteDlg::SetColorTable(const unsigned char* red, const unsigned char* green,
                                const unsigned char* blue, const int* anchors)
{
    tagXPaletteTable table;
    std::copy_n(red, table.red.size(), table.red.begin());
    std::copy_n(green, table.green.size(), table.green.begin());
    std::copy_n(blue, table.blue.size(), table.blue.begin());
    std::copy_n(anchors, table.anchors.size(), table.anchors.begin());
    m_model.SetTable(table);
    if (m_isCreated) ShowModel();
}

void XPaletteDlg::GetColorTable(unsigned char* red, unsigned char* green, unsigned char* blue,
                                int* anchors) const
{
    const tagXPaletteTable& table = m_model.GetTable();
    std::copy(table.red.begin(), table.red.end(), red);
    std::copy(table.green.begin(), table.green.end(), green);
    std::copy(table.blue.begin(), table.blue.end(), blue);
    std::copy(table.anchors.begin(), table.anchors.end(), anchors);
}

void XPaletteDlg::SetValueRange(double low, double high, int dataType)
{
    m_model.SetValueRange(low, high, dataType);
    ShowReadOut();
}

void XPaletteDlg::SetTitle(const XString& title)
{
    setWindowTitle(XfnToQString(title));
}

void XPaletteDlg::MakePalette()
{
    m_model.MakePalette();
}

void XPaletteDlg::DrawPalette()
{
    m_grid->DrawPalette();
}

void XPaletteDlg::DrawPaletteItem(int column, int row)
{
    m_grid->DrawItem(column, row);
}

void XPaletteDlg::ShowModel()
{
    ShowStep();
    const QSignalBlocker blocker(m_list);
    m_list->setCurrentRow(m_model.GetSelection());
    ShowIcon(XPaletteModel::kUserDefined);
}

void XPaletteDlg::ShowStep()
{
    DrawPalette();
    m_strip->update();
    ShowReadOut();
}

void XPaletteDlg::ShowReadOut()
{
    for (int i = 0; i < 5; ++i)
        m_readOuts[i]->setText(XfnToQString((m_model.*kReadOuts[i].text)()));
}

void XPaletteDlg::Point(int entry)
{
    const int before = m_model.GetCurrent();
    m_model.SetCurrent(entry);
    for (const int changed : {before, m_model.GetCurrent()})
        DrawPaletteItem(changed % XPaletteModel::kSide, changed / XPaletteModel::kSide);
    ShowReadOut();
}

void XPaletteDlg::PickColor()
{
    tagXColor color = m_model.GetTable().GetColor(m_model.GetCurrent());
    int isChosen = 0;
    if (!Prompt([&] { isChosen = XPrompts::Get()->ChooseColor(GetHWND(), color); })) return;
    if (isChosen && m_model.SetCurrentColor(color)) ShowModel();
}

void XPaletteDlg::ChangeAnchor(int (XPaletteModel::*change)())
{
    if ((m_model.*change)()) ShowModel();
}

void XPaletteDlg::Choose(int position)
{
    if (m_model.Select(position)) ShowModel();
}

void XPaletteDlg::Restore(XPaletteModel::XRestored restored)
{
    if (restored == XPaletteModel::XRestored::Nothing) return;
    ShowModel();
    if (restored == XPaletteModel::XRestored::AppliedTable) OnButtonApply();
}

void XPaletteDlg::Step(void (XPaletteModel::*move)())
{
    (m_model.*move)();
    ShowStep();
    OnButtonApply();
}

void XPaletteDlg::RotateForward()
{
    Step(&XPaletteModel::RotateForward);
}

void XPaletteDlg::RotateBackward()
{
    Step(&XPaletteModel::RotateBackward);
}

void XPaletteDlg::PushForward()
{
    Step(&XPaletteModel::PushForward);
}

void XPaletteDlg::PushBackward()
{
    Step(&XPaletteModel::PushBackward);
}

void XPaletteDlg::OnButtonApply()
{
    const tagXPaletteTable& table = m_model.GetTable();
    if (m_composite) {
        m_composite->SetCLT(table.blue.data(), 0);
        m_composite->SetCLT(table.green.data(), 1);
        m_composite->SetCLT(table.red.data(), 2);
    }
    XfnSendMessage(m_owner, kMsgApply, 0, 0);
}

void XPaletteDlg::OnButtonEdit()
{
    m_pane->setVisible(m_pane->isHidden());
    KeepOnScreen();
    m_edit->setFocus();
}

void XPaletteDlg::OnButtonLoad()
{
    tagXFilePrompt prompt{.title = "Open Palette", .filter = kXPaletteFilter};
    XString path, message;
    int isChosen = 0;
    if (!Prompt([&] { isChosen = XPrompts::Get()->OpenFile(GetHWND(), prompt, path); })) return;
    if (!isChosen) return;
    if (m_model.Load(path, message)) return ShowModel();
    if (message.IsEmpty()) return;
    Prompt([&] { XPrompts::Get()->Message(GetHWND(), message, XPrompts::XIcon::Error); });
}

void XPaletteDlg::OnButtonSave()
{
    tagXFilePrompt prompt{.title = "Save Palette", .filter = kXPaletteFilter};
    XString typed, message;
    int isChosen = 0;
    if (!Prompt([&] { isChosen = XPrompts::Get()->SaveFile(GetHWND(), prompt, typed); })) return;
    if (!isChosen) return;
    const XString path = XfnGetPaletteSavePath(typed);
    tagXFileStatus status;
    if (path != typed && XFile::GetStatus(path, status)) { // not the file the prompt asked about
        const XString question = XfnFormat("%s exists. Replace it?", path);
        if (!Prompt([&] { isChosen = XPrompts::Get()->AskYesNo(GetHWND(), question); })) return;
        if (!isChosen) return;
    }
    if (m_model.Save(path, message) || message.IsEmpty()) return;
    Prompt([&] { XPrompts::Get()->Message(GetHWND(), message, XPrompts::XIcon::Error); });
}

void XPaletteDlg::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton) ChangeAnchor(&XPaletteModel::ToggleAnchor);
}

void XPaletteDlg::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton) ChangeAnchor(&XPaletteModel::RemoveAnchor);
}
