#include "host/XStyleBar.h"

#include "foundation/base/XNumber.h"
#include "foundation/platform/XQtText.h"
#include "foundation/vector/XvcObj.h"
#include "host/XHostView.h"
#include "host/XSessionSettings.h"
#include "vecprop/XChoiceWidget.h"
#include "vecprop/XColorButton.h"
#include "vecprop/XLengthWidget.h"
#include "vecprop/XStyleChoices.h"

#include <QComboBox>
#include <QLabel>
#include <QLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kMostThickness = 1e9;

void Name(QWidget& control, const char* id, const char* name)
{
    control.setObjectName(id);
    control.setAccessibleName(name);
    control.setToolTip(name);
}

} // namespace

XStyleBar::XStyleBar(XHostView& view, XSessionSettings& settings, QWidget* parent)
    : QToolBar("Style", parent),
      m_view(view),
      m_settings(settings),
      m_lineColor(new XColorButton(this)),
      m_lineStyle(new XChoiceWidget(XChoicePicture::LineStyle, this)),
      m_thickness(new XLengthWidget("Thickness of lines", this)),
      m_fillColor(new XColorButton(this)),
      m_fillStyle(new XChoiceWidget(XChoicePicture::FillStyle, this))
{
    setObjectName("toolbar.style");
    setAccessibleName("Style");
    Name(*m_lineColor, "style.lineColor",
         "Colour of lines: of what is selected, else of what is drawn next");
    Name(*m_lineStyle, "style.line", "Style of lines");
    Name(*m_thickness, "style.thickness", "Thickness of lines");
    m_thickness->GetNumber().setObjectName("style.thickness.number");
    m_thickness->GetUnit().setObjectName("style.thickness.unit");
    Name(*m_fillColor, "style.fillColor",
         "Fill colour of areas: of what is selected, else of what is drawn next");
    Name(*m_fillStyle, "style.fill", "Fill of areas");
    m_lineStyle->SetChoices(XfnGetLineStyleChoices(), nullptr);
    m_fillStyle->SetChoices(XfnGetFillStyleChoices(), nullptr);
    // narrow enough to stand beside the tools of a small window
    const int digit = fontMetrics().horizontalAdvance('0');
    for (XColorButton* button : {m_lineColor, m_fillColor})
        button->setFixedWidth(9 * digit / 2);
    for (XChoiceWidget* list : {m_lineStyle, m_fillStyle})
        list->SetPictureOnly();
    m_thickness->SetUnitNames("map", "px");
    m_thickness->GetNumber().SetLeastDigits(4);
    m_thickness->GetNumber().setMaximumWidth(5 * digit);
    m_thickness->layout()->setSpacing(2);
    m_thickness->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    addWidget(new QLabel("Line ", this));
    for (QWidget* control : {static_cast<QWidget*>(m_lineColor), static_cast<QWidget*>(m_lineStyle),
                             static_cast<QWidget*>(m_thickness)})
        addWidget(control);
    addWidget(new QLabel(" Fill ", this));
    addWidget(m_fillColor);
    addWidget(m_fillStyle);

    m_lineColor->SetHandler([this](tagXColor color) {
        if (ChangeSelected([color](XvcObj& object) { object.SetLineColor(color | kXOpaque); }))
            return;
        m_view.SetXvcLineColor(color | kXOpaque);
        Apply();
    });
    m_fillColor->SetHandler([this](tagXColor color) {
        if (ChangeSelected([color](XvcObj& object) { object.SetForeColor(color | kXOpaque); }))
            return;
        m_view.SetXvcForeColor(color | kXOpaque);
        Apply();
    });
    m_lineStyle->SetHandler([this](int value) {
        const tagXLineStyle style(value);
        if (ChangeSelected([&style](XvcObj& object) { object.SetLineStyle(style); })) return;
        m_view.SetLineStyle(style);
        Apply();
    });
    m_fillStyle->SetHandler([this](int value) {
        const tagXFillStyle style(value);
        if (ChangeSelected([&style](XvcObj& object) { object.SetFillStyle(style); })) return;
        m_view.SetFillStyle(style);
        Apply();
    });
    m_thickness->SetUnitHandler([this](int) { TakeThickness(); });
    m_thickness->GetNumber().SetStepHandler([this](double steps) {
        const double size = std::max(0.0, std::round(std::fabs(GetThickness()) + steps));
        SetThickness(std::copysign(size, GetThickness()));
    });
    QObject::connect(&m_thickness->GetNumber(), &QLineEdit::editingFinished, this, [this] {
        if (m_thickness->GetNumber().isModified()) TakeThickness();
    });

    const tagXDrawStyle style = m_settings.GetDrawStyle();
    m_view.SetXvcLineColor(style.lineColor);
    m_view.SetXvcForeColor(style.fillColor);
    m_view.SetLineStyle(tagXLineStyle(style.line));
    m_view.SetFillStyle(tagXFillStyle(style.fill));
    m_view.GetObjectManager().m_thickness = style.thickness;
    ShowStyle();
}

// Pixels are the sizes below 0, also when there are none of them.
void XStyleBar::TakeThickness()
{
    double size = 0;
    const QByteArray text = m_thickness->GetNumber().text().toUtf8();
    if (XfnReadBoxNumber(text.constData(), size) > 0 && size >= 0)
        SetThickness(std::copysign(std::min(size, kMostThickness),
                                   m_thickness->GetUnit().currentIndex() == 1 ? -1.0 : 1.0));
    else
        ShowStyle(); // what is no size gives way to the one of before
}

void XStyleBar::SetSelection(std::function<const XvcObj*()> getFirst,
                             std::function<void(const ChangeFunction&)> change)
{
    m_getFirst = std::move(getFirst);
    m_change = std::move(change);
    ShowStyle();
}

bool XStyleBar::ChangeSelected(const ChangeFunction& change)
{
    if (!m_getFirst || !m_getFirst()) return false;
    m_change(change);
    ShowStyle();
    return true;
}

double XStyleBar::GetThickness() const
{
    const XvcObj* const selected = m_getFirst ? m_getFirst() : nullptr;
    return selected ? selected->GetThick() : m_view.GetObjectManager().m_thickness;
}

void XStyleBar::SetThickness(double thickness)
{
    // leaving the field without a change is no step
    if (thickness == GetThickness() && std::signbit(thickness) == std::signbit(GetThickness()))
        return ShowStyle();
    if (ChangeSelected([thickness](XvcObj& object) { object.SetThick(thickness); })) return;
    m_view.GetObjectManager().m_thickness = thickness;
    Apply();
}

void XStyleBar::Apply()
{
    tagXDrawStyle style;
    style.lineColor = m_view.GetXvcLineColor();
    style.fillColor = m_view.GetXvcForeColor();
    style.line = m_view.GetLineStyle().GetStyle();
    style.fill = m_view.GetFillStyle().GetStyle();
    style.thickness = m_view.GetObjectManager().m_thickness;
    m_settings.SetDrawStyle(style);
    ShowStyle();
}

void XStyleBar::ShowStyle()
{
    const XvcObj* const one = m_getFirst ? m_getFirst() : nullptr;
    m_lineColor->ShowColor(one ? one->GetLineColor() : m_view.GetXvcLineColor(), 100, false);
    m_fillColor->ShowColor(one ? one->GetForeColor() : m_view.GetXvcForeColor(), 100, false);
    m_lineStyle->ShowChoice((one ? one->GetLineStyle() : m_view.GetLineStyle()).GetStyle(), false);
    m_fillStyle->ShowChoice((one ? one->GetFillStyle() : m_view.GetFillStyle()).GetStyle(), false);
    const double thickness = GetThickness();
    m_thickness->ShowLength(XfnToQString(XfnFormatGeneral(std::fabs(thickness), 8)), false,
                            std::signbit(thickness));
}
