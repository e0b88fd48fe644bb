#pragma once

#include "vecprop/XObjectField.h"

#include <QComboBox>

/// A list of named entries with pictures of what they stand for: shapes of points and line ends,
/// line and fill styles, symbols and the like (XChoicePicture).
///
/// Pictures are drawn in the colours of the palette, and anew when it changes. The wheel changes the
/// entry only while the list has the focus.
class XAPI XChoiceWidget : public QComboBox
{
public:
    explicit XChoiceWidget(XChoicePicture picture, QWidget* parent = nullptr);

    void SetHandler(std::function<void(int value)> handler); ///< called when the user chose
    /// @param like  an object that own patterns and symbols come from, lent; may be null
    void SetChoices(const std::vector<tagXChoice>& choices, const XvcObj* like);
    void ShowChoice(int value, bool isMixed);
    int GetValue() const; ///< of the current entry; 0 when there is none
    /// Closed it shows the picture without the name, which then is told by the list and the tool
    /// tip: for tool bars.
    void SetPictureOnly();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void showPopup() override;

protected:
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void DrawPictures();

    XChoicePicture m_picture;
    std::vector<tagXChoice> m_choices;
    const XvcObj* m_like = nullptr;
    bool m_isPictureOnly = false;
};
