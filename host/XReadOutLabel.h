#pragma once

#include <QLabel>

/// A label as wide as a given text, whatever it shows; a number makes it wider, since a part of one
/// is another one. A text that does not fit is cut with dots, the whole one is the tool tip. Without a
/// given text it takes what is left, and shows as many of the clauses (between "; ") as there is room for.
class XReadOutLabel : public QLabel
{
public:
    /// @param widest  the text that decides the width
    XReadOutLabel(const QString& widest, QWidget* parent);

    void SetNumber() { m_isNumber = true; } ///< it shows numbers, which are never cut
    /// The text whose width it takes from now on.
    void SetWidest(const QString& text);
    void SetFullText(const QString& text);
    const QString& GetFullText() const { return m_full; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Cut();

    QString m_widest;
    QString m_full;
    bool m_isNumber = false;
};
