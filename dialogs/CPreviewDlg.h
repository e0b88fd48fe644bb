#pragma once

#include "dialogs/XPreviewLoader.h"

#include <QString>
#include <QWidget>

#include <functional>

class QPlainTextEdit;
class QSplitter;
class QTimer;

/// The preview pane of the raster file dialog: a picture of the file and the report about it.
///
/// Files are read beside the user interface (XPreviewLoader). What was shown before stays for a
/// moment, so that a walk through quick files does not flicker.
class XAPI CPreviewDlg : public QWidget
{
public:
    explicit CPreviewDlg(QWidget* parent = nullptr);

    /// Shows a file; an empty path, or one that is no file, empties the pane. The file that is shown
    /// already is read anew when it has changed.
    void SetFilePath(const XString& path);
    const XString& GetFilePath() const { return m_path; } ///< of what is shown or will be
    /// What tells one state of a file from another: its size and the time of its last change.
    static QString MakeStamp(const XString& path);
    const QString& GetStamp() const { return m_stamp; } ///< of the file when it was asked for
    /// What is known of the file so far.
    const tagXFilePreview& GetPreview() const { return m_preview; }
    /// Called after each change of GetPreview.
    void SetChanged(std::function<void()> changed) { m_changed = std::move(changed); }

    QByteArray SaveLayout() const;
    void RestoreLayout(const QByteArray& layout);

private:
    class XPicture;

    void Show(const tagXFilePreview& preview);

    XPreviewLoader m_loader;
    XString m_path;
    QString m_stamp;
    tagXFilePreview m_preview;
    std::function<void()> m_changed;
    QSplitter* m_splitter;
    XPicture* m_picture;
    QPlainTextEdit* m_report;
    QTimer* m_late; // runs until the pane of a slow file is emptied
};
