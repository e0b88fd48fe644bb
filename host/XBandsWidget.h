#pragma once

#include <QWidget>

#include <functional>

class QComboBox;
class QLabel;
class QRadioButton;
class XBandChoice;
class XLayerStack;
class XMainActions;

/// The bands panel: gray or colour, and a band for each. Acts at once on the current layer.
///
/// The boxes list numbers, names and wavelengths and also take a typed number, name or wavelength;
/// what means no band is taken back.
class XBandsWidget : public QWidget
{
public:
    XBandsWidget(XLayerStack& stack, XMainActions& actions, QWidget* parent);

private:
    QComboBox* MakeBox(const char* objectName, const QString& accessibleName);
    void Change(const std::function<void(XBandChoice&)>& change);
    void TakeBox(QComboBox* box);
    void ShowModel();
    void FillBoxes(const XBandChoice* choice);

    XLayerStack& m_stack;
    QLabel* m_title;
    QRadioButton* m_grayMode;
    QRadioButton* m_colourMode;
    QComboBox* m_gray;
    QComboBox* m_colours[3];
    const XBandChoice* m_filled = nullptr; // whose labels the boxes hold
};
