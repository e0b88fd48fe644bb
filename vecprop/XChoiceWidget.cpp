#include "vecprop/XChoiceWidget.h"

#include "foundation/platform/XQtText.h"
#include "vecprop/XNumberWidget.h"
#include "vecprop/XObjectPictures.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QSignalBlocker>
#include <QStylePainter>
#include <QWheelEvent>

#include <algorithm>

namespace {

// In units of the toolkit.
QSize GetPictureSize(XChoicePicture picture)
{
    switch (picture) {
    case XChoicePicture::None:
        return {};
    case XChoicePicture::LineStart:
    case XChoicePicture::LineEnd:
    case XChoicePicture::LineStyle:
    case XChoicePicture::FillStyle:
    case XChoicePicture::SplineType:
        return {56, 20};
    case XChoicePicture::NorthArrow:
        return {36, 36};
    default:
        return {24, 24};
    }
}

tagXColor GetWord(const QColor& color)
{
    return XfnMakeColor(static_cast<unsigned>(color.red()), static_cast<unsigned>(color.green()),
                        static_cast<unsigned>(color.blue()));
}

} // namespace

XChoiceWidget::XChoiceWidget(XChoicePicture picture, QWidget* parent)
    : QComboBox(parent), m_picture(picture)
{
    setFocusPolicy(Qt::StrongFocus);
    if (picture != XChoicePicture::None) setIconSize(GetPictureSize(picture));
    setMaxVisibleItems(12);
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
}

void XChoiceWidget::SetHandler(std::function<void(int)> handler)
{
    QObject::connect(this, &QComboBox::activated, this,
                     [this, handler = std::move(handler)] { handler(GetValue()); });
}

void XChoiceWidget::SetChoices(const std::vector<tagXChoice>& choices, const XvcObj* like)
{
    const QSignalBlocker blocker(this);
    m_choices = choices;
    m_like = like;
    clear();
    for (const tagXChoice& choice : m_choices)
        addItem(XfnToQString(choice.name), choice.value);
    DrawPictures();
}

void XChoiceWidget::ShowChoice(int value, bool isMixed)
{
    const QSignalBlocker blocker(this);
    setPlaceholderText(isMixed ? kXMixedText : "");
    setCurrentIndex(isMixed ? -1 : findData(value));
}

int XChoiceWidget::GetValue() const
{
    return currentData().toInt();
}

void XChoiceWidget::SetPictureOnly()
{
    m_isPictureOnly = true;
    setIconSize({std::min(iconSize().width(), 2 * iconSize().height()), iconSize().height()});
    DrawPictures();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    updateGeometry();
}

QSize XChoiceWidget::sizeHint() const
{
    const QSize whole = QComboBox::sizeHint();
    if (!m_isPictureOnly) return whole;
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QSize picture = iconSize() + QSize(4, 0);
    return {style()->sizeFromContents(QStyle::CT_ComboBox, &option, picture, this).width(),
            whole.height()};
}

QSize XChoiceWidget::minimumSizeHint() const
{
    return m_isPictureOnly ? sizeHint() : QComboBox::minimumSizeHint();
}

void XChoiceWidget::paintEvent(QPaintEvent* event)
{
    if (!m_isPictureOnly) return QComboBox::paintEvent(event);
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText.clear();
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void XChoiceWidget::showPopup()
{
    // as wide as its names, which the closed box does not show
    if (m_isPictureOnly) view()->setMinimumWidth(QComboBox::sizeHint().width());
    QComboBox::showPopup();
}

void XChoiceWidget::wheelEvent(QWheelEvent* event)
{
    hasFocus() ? QComboBox::wheelEvent(event) : event->ignore();
}

void XChoiceWidget::changeEvent(QEvent* event)
{
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) DrawPictures();
}

void XChoiceWidget::DrawPictures()
{
    if (m_picture == XChoicePicture::None) return;
    const qreal ratio = devicePixelRatioF();
    const QSize size = iconSize() * ratio;
    const tagXColor ink = GetWord(palette().color(QPalette::Text));
    for (int i = 0; i < count(); ++i) {
        QPixmap pixmap = QPixmap::fromImage(XfnDrawChoice(
            m_picture, itemData(i).toInt(), size.width(), size.height(), ink, m_like));
        pixmap.setDevicePixelRatio(ratio);
        QIcon icon(pixmap);
        icon.addPixmap(pixmap, QIcon::Selected); // never tinted: the picture is the information
        setItemIcon(i, icon);
    }
}
