#pragma once

#include "dialogs/XThreadDlg.h"

#include <memory>

class XRSFile;

/// Opens a raster file behind the worker dialog, with "Opening Data..." as its title.
///
///     XThreadDlgOpen dialog(parent);
///     std::unique_ptr<XRSFile> file = dialog.Open(path);
///
/// A file that was opened while the user cancelled is given up again. A cancel does not wait for a
/// reader that hangs: it is left behind with what it uses, and its file is dropped when it comes back.
class XAPI XThreadDlgOpen : public XThreadDlg
{
public:
    explicit XThreadDlgOpen(QWidget* parent = nullptr);
    ~XThreadDlgOpen() override;

    void SetFilePath(const XString& path) { m_path = path; } ///< before DoModal
    const XString& GetFilePath() const { return m_path; }
    XRSFile* GetXRSFile() const { return m_file.get(); } ///< stays ours; null when there is none
    std::unique_ptr<XRSFile> TakeXRSFile();
    /// Why the last file was not opened: a sentence that names it, empty after a cancel.
    const XString& GetError() const { return m_error; }

    /// Sets the path, runs the dialog and hands over the file.
    /// @return null after a failure or a cancel
    std::unique_ptr<XRSFile> Open(const XString& path);

protected:
    int ThreadProcess(void* owner, XString& error, XThread* thread) override;
    void OnCallbackSuccess(void* owner) override;
    void OnCallbackFail(void* owner, const XString& text) override;

private:
    XString m_path;
    XString m_error;
    std::unique_ptr<XRSFile> m_file; // the worker's while it runs
};
