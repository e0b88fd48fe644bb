#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XString.h"

#include <QDialog>

class QPlainTextEdit;
struct tagXTextStyle;

/// A text typed where it will stand: a window without borders over a box of a view.
///
/// Enter confirms, and so does a press of the mouse anywhere beside it, which does nothing else;
/// Escape cancels, Shift+Enter or Ctrl+Enter begins a new line. The window grows with the text and stays
/// on the screen.
///
///     CTextInputDlg dialog(view);
///     dialog.SetPosition(x, y, width, height);
///     dialog.SetFont(style, color, height);
///     if (dialog.DoModal() == 1) Use(dialog.GetText());
class XAPI CTextInputDlg : public QDialog
{
public:
    explicit CTextInputDlg(QWidget* parent = nullptr);

    /// Screen pixels, those of the device.
    void SetPosition(int x, int y, int width, int height);
    /// @param color     of the letters; behind them is a ground that it reads on
    /// @param heightPx  of a line, in pixels of the device; 0: that of the style
    void SetFont(const tagXTextStyle& style, tagXColor color, int heightPx);
    XString GetText() const; ///< line ends are "\n"

    /// Returns once it is ended. Nothing else of the program takes the mouse meanwhile, but no window is
    /// modal to the toolkit, which would hide presses beside it.
    /// @return 1 when it was confirmed, else 2, also when it was destroyed meanwhile
    int DoModal();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool IsBeside(const QObject& watched) const;
    void Fit();
    double GetRatio() const;

    QPlainTextEdit* m_edit;
    QRect m_box; // in units of the toolkit
};
