#include "dialogs/XFileDialog.h"

#include "dialogs/CPreviewDlg.h"
#include "dialogs/XFilePreviewModel.h"
#include "dialogs/XThreadDlgOpen.h"
#include "foundation/base/XPath.h"
#include "foundation/platform/XFileFilter.h"
#include "foundation/platform/XPrompts.h"
#include "foundation/platform/XQtText.h"
#include "foundation/platform/XUserSettings.h"
#include "foundation/raster/XRSFile.h"

#include <QDataStream>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QIODevice>
#include <QItemSelectionModel>
#include <QLayout>
#include <QListView>
#include <QSplitter>
#include <QTreeView>

namespace {

constexpr QSize kFirstSize(1060, 640);
constexpr int kPreviewWidth = 330;

/// The labels as they are written, with the patterns behind them where the dialog looks for them.
QStringList MakeNameFilters(const XFileFilter& filter)
{
    QStringList names;
    for (int i = 0; i < filter.GetCount(); ++i) {
        QStringList patterns;
        for (const XString& pattern : filter.GetAt(i).patterns)
            patterns += pattern == "*.*" ? QString("*") : XfnToQString(pattern);
        names += QString("%1 (%2)").arg(XfnToQString(filter.GetAt(i).label), patterns.join(' '));
    }
    return names;
}

/// Size, type and date as wide as they need to be, the rest for the names.
void FitColumns(const XFileDialog& dialog)
{
    const auto* list = dialog.findChild<QTreeView*>("treeView");
    if (!list) return;
    QHeaderView* header = list->header();
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setStretchLastSection(false);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
}

} // namespace

XFileDialog::XFileDialog(QWidget* parent, int isFull, int isMulti, int hasPreview)
    : QFileDialog(parent), m_isMulti(isMulti)
{
    setObjectName("raster.file");
    setWindowTitle("Open");
    setOption(QFileDialog::DontUseNativeDialog);
    setOption(QFileDialog::HideNameFilterDetails); // the labels tell the patterns
    setAcceptMode(QFileDialog::AcceptOpen);
    setFileMode(isMulti ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    SetFilter(XFilePreviewModel::GetFilter(isFull));
    if (hasPreview) AddPreview();
    RestoreLayout();
    connect(this, &QFileDialog::currentChanged, this,
            [this](const QString& path) { OnFileNameChange(XfnFromQString(path)); });
    connect(this, &QFileDialog::directoryEntered, this,
            [this](const QString&) { OnFileNameChange(XString()); });
}

XFileDialog::~XFileDialog()
{
    DestroyHandle();
}

void XFileDialog::AddPreview()
{
    auto* splitter = findChild<QSplitter*>("splitter");
    m_preview = new CPreviewDlg(this);
    m_preview->SetChanged([this] { OnPreview(); });
    if (!splitter) { // a style of its own making
        layout()->addWidget(m_preview);
        return;
    }
    splitter->addWidget(m_preview);
    splitter->setStretchFactor(splitter->indexOf(m_preview), 1);
}

void XFileDialog::RestoreLayout()
{
    resize(kFirstSize);
    auto* splitter = findChild<QSplitter*>("splitter");
    if (splitter && m_preview) {
        QList<int> sizes(splitter->count(), 0);
        const int side = kFirstSize.width() / 7;
        sizes[0] = side;
        if (sizes.size() > 1) sizes[1] = kFirstSize.width() - side - kPreviewWidth;
        sizes.back() = kPreviewWidth;
        splitter->setSizes(sizes);
    }
    QDataStream stream(XfnGetFileDialogLayout());
    QSize size;
    QByteArray list, splitters, preview;
    stream >> size >> list >> splitters >> preview;
    const bool isKnown = stream.status() == QDataStream::Ok && !size.isEmpty();
    if (isKnown && !list.isEmpty()) restoreState(list);
    FitColumns(*this);
    if (!isKnown) return;
    resize(size.boundedTo({8192, 8192}));
    if (!m_preview) return;
    if (splitter && !splitters.isEmpty()) splitter->restoreState(splitters);
    m_preview->RestoreLayout(preview);
}

void XFileDialog::SaveLayout() const
{
    if (!m_preview) return; // its splitter has another number of parts
    QByteArray layout;
    QDataStream stream(&layout, QIODevice::WriteOnly);
    const auto* splitter = findChild<QSplitter*>("splitter");
    stream << size() << saveState() << (splitter ? splitter->saveState() : QByteArray())
           << m_preview->SaveLayout();
    XfnSetFileDialogLayout(layout);
}

int XFileDialog::DoModal()
{
    return exec() == QDialog::Accepted ? kOk : kCancel;
}

void XFileDialog::SetFilter(const XString& filter)
{
    setNameFilters(MakeNameFilters(XFileFilter(filter)));
}

void XFileDialog::SetFilterIndex(int index)
{
    if (index >= 0 && index < nameFilters().size()) selectNameFilter(nameFilters()[index]);
}

int XFileDialog::GetFilterIndex() const
{
    return static_cast<int>(nameFilters().indexOf(selectedNameFilter()));
}

void XFileDialog::SetFolder(const XString& folder)
{
    if (!folder.IsEmpty()) setDirectory(XfnToQString(folder));
}

std::vector<XString> XFileDialog::GetFilePaths() const
{
    std::vector<XString> paths;
    for (const QString& path : selectedFiles())
        if (!QFileInfo(path).isDir()) paths.push_back(XfnFromQString(path));
    return paths;
}

XString XFileDialog::GetFirstFileName() const
{
    const std::vector<XString> paths = GetFilePaths();
    return paths.empty() ? XString() : XfnGetFileName(paths.front());
}

XString XFileDialog::GetFileExtEx() const
{
    return XFilePreviewModel::GetExtension(GetFirstFileName());
}

XRSFile* XFileDialog::GetXRSFile(const XString& path, int mode, XThread* thread, XString* error)
{
    XString ignored;
    return XFilePreviewModel::Load(path, mode, thread, error ? *error : ignored).release();
}

XRSFile* XFileDialog::OpenShown(const XString& path, int& isCancelled)
{
    XThreadDlgOpen dialog(parentWidget());
    XRSFile* const file = dialog.Open(path).release();
    isCancelled = !file && dialog.GetError().IsEmpty();
    if (!dialog.GetError().IsEmpty())
        m_error += m_error.IsEmpty() ? dialog.GetError() : "\n" + dialog.GetError();
    return file;
}

XRSFile* XFileDialog::GetXRSFile()
{
    m_error.Empty();
    const std::vector<XString> paths = GetFilePaths();
    int isCancelled = 0;
    return m_isMulti || paths.empty() ? nullptr : OpenShown(paths.front(), isCancelled);
}

int XFileDialog::GetXRSFiles(XPtrArray& files)
{
    m_error.Empty();
    int opened = 0;
    int isCancelled = 0;
    for (const XString& path : GetFilePaths()) {
        XRSFile* const file = OpenShown(path, isCancelled);
        if (isCancelled) break;
        if (!file) continue;
        files.Add(file);
        ++opened;
    }
    return opened;
}

int XFileDialog::OnFileNameOK()
{
    m_awaited.Empty();
    if (!m_preview || m_isComplexAllowed) return 0;
    for (const XString& path : GetFilePaths()) {
        if (!QFileInfo(XfnToQString(path)).isFile()) continue; // the list itself tells of it
        const auto known = m_known.find(path);
        if (known == m_known.end() || known->second.stamp != CPreviewDlg::MakeStamp(path)) {
            m_awaited = path; // its preview comes back here
            m_preview->SetFilePath(path);
            return 1;
        }
        if (!known->second.isComplex) continue;
        XPrompts::Get()->Message(GetHWND(), "Data Type is complex.!!!");
        return 1;
    }
    return 0;
}

void XFileDialog::OnPreview()
{
    const tagXFilePreview& preview = m_preview->GetPreview();
    if (!preview.isOpened && !preview.isDone) return;
    m_known[preview.path] = {m_preview->GetStamp(), preview.isComplex};
    if (!(m_awaited == preview.path) || m_awaited.IsEmpty()) return;
    m_awaited.Empty();
    accept();
}

void XFileDialog::OnFileNameChange(const XString& path)
{
    m_awaited.Empty();
    if (m_preview) m_preview->SetFilePath(path);
}

// A folder among chosen files would be entered, and the choice lost.
void XFileDialog::DropFolders()
{
    const auto* list = findChild<QListView*>("listView");
    QItemSelectionModel* selection = list ? list->selectionModel() : nullptr;
    if (!selection) return;
    QModelIndexList folders;
    const QModelIndexList rows = selection->selectedRows();
    for (const QModelIndex& row : rows)
        if (QFileInfo(row.data(QFileSystemModel::FilePathRole).toString()).isDir())
            folders.append(row);
    if (folders.size() == rows.size()) return; // a folder alone is meant to be entered
    for (const QModelIndex& folder : folders)
        selection->select(folder, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
}

void XFileDialog::accept()
{
    if (m_isMulti) DropFolders();
    if (!OnFileNameOK()) QFileDialog::accept();
}

void XFileDialog::done(int result)
{
    SaveLayout();
    QFileDialog::done(result);
}
