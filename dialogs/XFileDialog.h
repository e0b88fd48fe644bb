#pragma once

#include "foundation/base/XPtrArray.h"
#include "foundation/base/XString.h"
#include "foundation/platform/XMessageWindow.h"

#include <QFileDialog>

#include <map>
#include <vector>

class CPreviewDlg;
class XRSFile;
class XThread;

/// The file dialog for rasters: the usual list with a preview of the file under the cursor beside it,
/// and the opening of what was chosen.
///
///     XFileDialog dialog(parent);
///     if (dialog.DoModal() == XFileDialog::kOk) XRSFile* file = dialog.GetXRSFile();
///
/// Without a preview, or with SetComplexAllowed, complex rasters may be chosen; otherwise they are
/// refused with a message and the dialog stays open. Size and layout are remembered for the user.
/// Threads: user interface only, but for the static operations.
class XAPI XFileDialog : public QFileDialog, public XMessageWindow
{
public:
    static constexpr int kOk = 1;
    static constexpr int kCancel = 2;

    /// @param isFull      the filter of all formats, else of the native one and TIFF
    /// @param isMulti     several files may be chosen; folders among them are left out
    /// @param hasPreview  0 leaves the preview pane out
    explicit XFileDialog(QWidget* parent = nullptr, int isFull = 1, int isMulti = 0,
                         int hasPreview = 1);
    ~XFileDialog() override;

    int DoModal(); ///< kOk or kCancel

    void SetFilter(const XString& filter); ///< in place of the given one; see XFileFilter
    void SetFilterIndex(int index); ///< the entry that is chosen; out of range changes nothing
    int GetFilterIndex() const;
    void SetFolder(const XString& folder);
    void SetComplexAllowed(int isAllowed) { m_isComplexAllowed = isAllowed; }
    /// What is chosen, or would be if the dialog were closed now. Folders do not count.
    std::vector<XString> GetFilePaths() const;
    XString GetFirstFileName() const; ///< name of the first one, without its folder
    XString GetFileExtEx() const;     ///< extension of the first one in capitals, without the point
    CPreviewDlg* GetPreviewDlg() const { return m_preview; } ///< null without a preview

    /// The chosen file, opened behind the worker dialog; the caller owns it. Null with multiple
    /// choice, after a failure (GetError tells) and after a cancel.
    XRSFile* GetXRSFile();
    /// Adds every chosen file to `files`, opened behind the worker dialog; the caller owns them. One
    /// that cannot be opened is left out, a cancel leaves out the rest as well.
    /// @return 0 when none was opened
    int GetXRSFiles(XPtrArray& files);
    const XString& GetError() const { return m_error; } ///< a sentence a file that failed

    /// Opens one path by its extension (XFilePreviewModel::Load); the caller owns the result. Any
    /// thread.
    /// @param mode   XFilePreviewModel::XMode
    /// @param error  when given, receives why it is null
    static XRSFile* GetXRSFile(const XString& path, int mode, XThread* thread,
                               XString* error = nullptr);

    /// Asked when files are about to be chosen.
    /// @return non-zero keeps the dialog open
    virtual int OnFileNameOK();
    /// The cursor stands on another file.
    virtual void OnFileNameChange(const XString& path);

protected:
    void accept() override;
    void done(int result) override;

private:
    void AddPreview();
    void RestoreLayout();
    void SaveLayout() const;
    void DropFolders();
    void OnPreview();
    XRSFile* OpenShown(const XString& path, int& isCancelled);

    int m_isMulti;
    int m_isComplexAllowed = 0;
    CPreviewDlg* m_preview = nullptr;
    struct tagKnown
    {
        QString stamp; // of the file that was read
        bool isComplex;
    };
    std::map<XString, tagKnown> m_known; // the files that were previewed
    XString m_awaited;                   // chosen, and not known yet
    XString m_error;
};
