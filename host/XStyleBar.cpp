#include "host/XStyleBar.h"

#include "foundation/base/XNumber.h"
#include "foundation/platform/XQtText.h"
#include "host/XHostView.h"
#include "host/XSessionSettings.h"
#include "vecprop/XChoiceWidget.h"
#include "vecprop/XColorButton.h"
#include "vecprop/XLengthWidget.h"

#include <QComboBox>
#include <QLabel>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMostThickness = 1e9;

std::vector<tagXChoice> MakeChoices(int count, const char* (*getName)(int))
{
    std::vector<tagXChoice> choices;
    for (int i = 0; i < count; ++i)
        if (const char* name = getName(i)) choices.push_back({i, name});
    return choices;
}

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
      m_thickness(new XLengthWidget("Thickness of new lines", this)),
      m_fillColor(new XColorButton(this)),
      m_fillStyle(new XChoiceWidget(XChoicePicture::FillStyle, this))
{
    setObjectName("toolbar.style");
    setAccessibleName("Style");
    Name(*m_lineColor, "style.lineColor", "Colour of new lines");
    Name(*m_lineStyle, "style.line", "Style of new lines");
    Name(*m_thickness, "style.thickness", "Thickness of new lines");
    m_thickness->GetNumber().setObjectName("style.thickness.number");
    m_thickness->GetUnit().setObjectName("style.thickness.unit");
    Name(*m_fillColor, "style.fillColor", "Fill colour of new areas");
    Name(*m_fillStyle, "style.fill", "Fill of new areas");
    m_lineStyle->SetChoices(MakeChoices(tagXLineStyle::kPredefinedCount, &tagXLineStyle::GetName),
                            nullptr);
    m_fillStyle->SetChoices(MakeChoices(tagXFillStyle::kPredefinedCount, &tagXFillStyle::GetName),
                            nullptr);
    const int width = fontMetrics().averageCharWidth();
    m_thickness->GetNumber().setMaximumWidth(8 * width);
    m_thickness->setMaximumWidth(26 * width);
    for (XChoiceWidget* list : {m_lineStyle, m_fillStyle}) {
        list->setMaximumWidth(16 * width);
        list->setFocusPolicy(Qt::StrongFocus);
    }
    addWidget(new QLabel(" Line ", this));
    for (QWidget* control : {static_cast<QWidget*>(m_lineColor), static_cast<QWidget*>(m_lineStyle),
                             static_cast<QWidget*>(m_thickness)})
        addWidget(control);
    addWidget(new QLabel(" Fill ", this));
    addWidget(m_fillColor);
    addWidget(m_fillStyle);

    m_lineColor->SetHandler([this](tagXColor color) {
        m_view.SetXvcLineColor(color | kXOpaque);
        Apply();
    });
    m_fillColor->SetHandler([this](tagXColor color) {
        m_view.SetXvcForeColor(color | kXOpaque);
        Apply();
    });
    m_lineStyle->SetHandler([this](int value) {
        m_view.SetLineStyle(tagXLineStyle(value));
        Apply();
    });
    m_fillStyle->SetHandler([this](int value) {
        m_view.SetFillStyle(tagXFillStyle(value));
        Apply();
    });
    m_thickness->SetUnitHandler([this](int) { TakeThickness(); });
    m_thickness->GetNumber().SetStepHandler([this](double steps) {
        double& thickness = m_view.GetObjectManager().m_thickness;
        const double size = std::max(0.0, std::round(std::fabs(thickness) + steps));
        thickness = std::signbit(thickness) ? -size : size;
        Apply();
    });
    QObject::connect(&m_thickness->GetNumber(), &QLineEdit::editingFinished, this,
                     [this] { TakeThickness(); });

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
        m_view.GetObjectManager().m_thickness =
            std::copysign(std::min(size, kMostThickness),
                          m_thickness->GetUnit().currentIndex() == 1 ? -1.0 : 1.0);
    Apply(); // what is no size gives way to the one of before
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
    m_lineColor->ShowColor(m_view.GetXvcLineColor(), 100, false);
    m_fillColor->ShowColor(m_view.GetXvcForeColor(), 100, false);
    m_lineStyle->ShowChoice(m_view.GetLineStyle().GetStyle(), false);
    m_fillStyle->ShowChoice(m_view.GetFillStyle().GetStyle(), false);
    const double thickness = m_view.GetObjectManager().m_thickness;
    m_thickness->ShowLength(XfnToQString(XfnFormatGeneral(std::fabs(thickness), 8)), false,
                            std::signbit(thickness));
}
