#pragma once

#include "enhance/XPaletteModel.h"
#include "foundation/platform/XMessageWindow.h"
#include "view/XViewDialogs.h"

#include <QDialog>

class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class XPaletteGridWidget;
class XPaletteStripWidget;

/// Colours an image of one band by editing its table of 256 colours.
///
///     dialog->SetXDMComposite(composite);      // or null: the owner fetches the table
///     dialog->SetValueRange(low, high, type);
///     dialog->SetColorTable(red, green, blue, anchors);
///     dialog->Create(owner);
///     dialog->Show();
///
/// Modeless. It opens on the grey ramp; the table that was set waits at "User Defined". The table
/// goes to the composite by Apply, and at every step of a drag over the strip. The owner then gets
/// kMsgApply, and kMsgClose when the window closes, both without parameters.
/// The composite is lent; the owner sets another or null before it goes. Who makes the dialog gives
/// it up by Release, also from within one of its messages; where the owner widget goes first, the
/// dialog goes with it.
/// Keys: Ctrl+Z and Ctrl+Shift+Z undo and redo; see XPaletteGridWidget for those of the grid.
/// Threads: user interface only.
class XAPI XPaletteDlg : public QDialog, public XMessageWindow, public XViewPaletteDlg
{
public:
    static constexpr unsigned kMsgApply = 0x52F;
    static constexpr unsigned kMsgClose = 0x530;

    XPaletteDlg();
    ~XPaletteDlg() override;

    /// Makes the window, hidden, over `owner`, which may be null. @return 0 when there is one already
    int Create(QWidget* owner);
    int Create(QWidget* owner, XHWND window) override; ///< `window` gets the messages
    void Show() override; ///< at the lower right of the owner, unless it was moved before
    void DestroyWindow() override;
    void Release() override;

    void SetXDMComposite(XDMComposite* composite) override;
    XDMComposite* GetXDMComposite() const override { return m_composite; }
    void SetColorTable(const unsigned char* red, const unsigned char* green,
                       const unsigned char* blue, const int* anchors) override;
    /// Writes 256 values to each.
    void GetColorTable(unsigned char* red, unsigned char* green, unsigned char* blue,
                       int* anchors) const;
    void SetValueRange(double low, double high, int dataType) override;
    void SetTitle(const XString& title); ///< "Set Color Table" at first

    void MakePalette(); ///< between the anchors; shows and applies nothing
    void DrawPalette();
    void DrawPaletteItem(int column, int row);
    // One step of the whole table, shown and applied.
    void RotateForward();
    void RotateBackward();
    void PushForward();
    void PushBackward();

    void OnButtonApply();
    void OnButtonEdit();
    void OnButtonLoad();
    void OnButtonSave();
    void OnButtonClose();

    const XPaletteModel& GetModel() const { return m_model; }

    void reject() override; ///< closes

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void Build();
    void FillList();
    void ShowIcon(int position);
    void ConnectParts();
    void ShowModel();   // all controls
    void ShowReadOut(); // those of the current entry
    void ShowStep();
    void Step(void (XPaletteModel::*move)());
    void Point(int entry);
    void PickColor();
    void ChangeAnchor(int (XPaletteModel::*change)());
    void Choose(int position);
    void Restore(XPaletteModel::XRestored restored);
    template <class Ask>
    bool Prompt(const Ask& ask);
    void PlaceOverOwner();
    void KeepOnScreen();

    XPaletteModel m_model; // above the widgets, which use it
    XDMComposite* m_composite = nullptr;
    XHWND m_owner = 0;
    bool m_isCreated = false;
    bool m_isReleased = false;
    int m_prompts = 0; // open over this window
    XPaletteStripWidget* m_strip = nullptr;
    XPaletteGridWidget* m_grid = nullptr;
    QListWidget* m_list = nullptr;
    QLabel* m_image = nullptr;
    QGroupBox* m_pane = nullptr;
    QLineEdit* m_readOuts[5] = {};
    QPushButton* m_edit = nullptr;
};
