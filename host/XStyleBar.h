#pragma once

#include <QToolBar>

#include <functional>

class XChoiceWidget;
class XColorButton;
class XHostView;
class XLengthWidget;
class XSessionSettings;
class XvcObj;

/// The small bar with the look of what is selected, and with nothing selected of objects that are drawn
/// next: colour, style and thickness of lines, colour and style of areas. What is chosen for new objects
/// goes to the view and is remembered for the next session. Both parts outlive the bar's controls.
class XStyleBar : public QToolBar
{
public:
    XStyleBar(XHostView& view, XSessionSettings& settings, QWidget* parent);

    using ChangeFunction = std::function<void(XvcObj&)>;
    /// @param getFirst  answers the first of the selected objects, null for none
    /// @param change    runs something on all of them
    void SetSelection(std::function<const XvcObj*()> getFirst,
                      std::function<void(const ChangeFunction&)> change);
    void ShowStyle(); ///< other objects may be selected

private:
    bool ChangeSelected(const ChangeFunction& change);
    double GetThickness() const;
    void SetThickness(double thickness);
    void Apply();
    void TakeThickness();

    XHostView& m_view;
    XSessionSettings& m_settings;
    std::function<const XvcObj*()> m_getFirst;
    std::function<void(const ChangeFunction&)> m_change;
    XColorButton* m_lineColor;
    XChoiceWidget* m_lineStyle;
    XLengthWidget* m_thickness;
    XColorButton* m_fillColor;
    XChoiceWidget* m_fillStyle;
};
