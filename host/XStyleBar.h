#pragma once

#include <QToolBar>

class XChoiceWidget;
class XColorButton;
class XHostView;
class XLengthWidget;
class XSessionSettings;

/// The small bar with the look of objects that are drawn next: colour, style and thickness of lines,
/// colour and style of areas. What is chosen goes to the view and is remembered for the next session.
/// Both parts outlive the bar's controls.
class XStyleBar : public QToolBar
{
public:
    XStyleBar(XHostView& view, XSessionSettings& settings, QWidget* parent);

private:
    void Apply();
    void ShowStyle();
    void TakeThickness();

    XHostView& m_view;
    XSessionSettings& m_settings;
    XColorButton* m_lineColor;
    XChoiceWidget* m_lineStyle;
    XLengthWidget* m_thickness;
    XColorButton* m_fillColor;
    XChoiceWidget* m_fillStyle;
};
