#pragma once

#include <QStatusBar>

class QAction;
class XBusyWidget;
class XReadOutLabel;

/// The status bar: hint of the moment on the left, then the mark of drawing, samples, position, geographic position, scale
/// and coordinate system. Each read-out has the width of the longest text it is made for, whatever it
/// shows, so that nothing jumps while the pointer moves. Where there is not room for all, in a narrow
/// window or while a message shows, the last ones go: system, scale, geographic position. A text that
/// does not fit is cut with dots and stands whole in the tool tip; a number is never cut.
class XStatusWidget : public QStatusBar
{
public:
    explicit XStatusWidget(QWidget* parent);

    void SetHint(const QString& text);
    /// @param detail  the tool tip meanwhile; the text itself when empty
    void ShowNotice(const QString& text, const QString& detail, int ms);
    /// Takes a notice away, since something else is at hand. So does the next press of a key or a mouse
    /// button anywhere in the window.
    void ClearNotice();
    /// Says at once that a file is being opened, without waiting for the event loop. An empty name ends
    /// it and shows what was noticed about the files before the last one.
    void SetOpening(const QString& name);
    void SetSamples(const QString& text);
    /// Makes room for the name of a layer behind the samples, or takes it back.
    void SetLayersNamed(bool isNamed);
    /// A mark shows while the image is being drawn and that takes longer than a blink.
    void SetBusy(bool isBusy);
    void SetPosition(const QString& text);
    void SetGeographic(const QString& text);
    void SetScale(const QString& text);
    void SetSystem(const QString& text);

    /// Entries of the context menus of the read-outs.
    void AddPositionAction(QAction* action);
    void AddScaleAction(QAction* action);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Arrange();
    XReadOutLabel* AddReadOut(const char* objectName, const QString& accessibleName,
                              const char* widest);

    XReadOutLabel* m_hint;
    XBusyWidget* m_busy;
    XReadOutLabel* m_samples;
    XReadOutLabel* m_position;
    XReadOutLabel* m_geographic;
    XReadOutLabel* m_scale;
    XReadOutLabel* m_system;
    QString m_opening;
    QString m_noticed; // since the opening began
    QString m_noticedDetail;
    int m_noticedMs = 0;
};
