#include "foundation/raster/XRSFile.h"

#include "foundation/base/XFile.h"
#include "foundation/base/XPath.h"
#include "foundation/raster/XDMVand.h"
#include "foundation/raster/XROI.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/raster/XRSSIG.h"

#include <algorithm>

X_IMPLEMENT_CLASS(XRSFile, XObject)

namespace {

template <class T>
int Add(std::vector<std::unique_ptr<T>>& list, T* item)
{
    const auto isItem = [item](const std::unique_ptr<T>& p) { return p.get() == item; };
    if (!item || std::any_of(list.begin(), list.end(), isItem)) return 0;
    list.emplace_back(item);
    return 1;
}

template <class T>
T* At(const std::vector<std::unique_ptr<T>>& list, int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < list.size()
               ? list[static_cast<std::size_t>(index)].get()
               : nullptr;
}

} // namespace

XRSFile::XRSFile() = default;

XRSFile::~XRSFile()
{
    if (m_attachFlag) delete m_filePtr;
}

void XRSFile::SetFile(XFile* file, int attachFlag)
{
    if (m_attachFlag && m_filePtr != file) delete m_filePtr;
    m_filePtr = file;
    m_attachFlag = attachFlag;
    m_path.Empty();
}

XString XRSFile::GetFilePath() const
{
    return m_path.IsEmpty() && m_filePtr ? m_filePtr->GetFilePath() : m_path;
}

XString XRSFile::GetFileName() const
{
    return XfnGetFileName(GetFilePath());
}

XString XRSFile::GetFileTitle() const
{
    return XfnGetFileTitle(GetFilePath());
}

int XRSFile::AddBand(XDMBand* band)
{
    if (!Add(m_bands, band)) return 0;
    band->SetXRSFile(this);
    return 1;
}

XDMBand* XRSFile::GetBandAt(int index) const
{
    return At(m_bands, index);
}

int XRSFile::AddVand(XDMVand* vand)
{
    if (!Add(m_vands, vand)) return 0;
    vand->SetXRSFile(this);
    return 1;
}

XDMVand* XRSFile::GetVandAt(int index) const
{
    return At(m_vands, index);
}

int XRSFile::AddGCPSet(tagGCPSets* set)
{
    return Add(m_gcpSets, set);
}

tagGCPSets* XRSFile::GetGCPSetAt(int index) const
{
    return At(m_gcpSets, index);
}

int XRSFile::AddROISet(XROI* region)
{
    return Add(m_regions, region);
}

XROI* XRSFile::GetROISetAt(int index) const
{
    return At(m_regions, index);
}

void XRSFile::RemoveAllROISet()
{
    for (const auto& signature : m_signatures)
        for (const auto& region : m_regions)
            signature->Remove(region.get());
    m_regions.clear();
}

int XRSFile::AddSIGSet(XRSSIG* signature)
{
    return Add(m_signatures, signature);
}

XRSSIG* XRSFile::GetSIGSetAt(int index) const
{
    return At(m_signatures, index);
}

void XRSFile::RemoveAllSIGSet()
{
    m_signatures.clear();
}

std::vector<std::uint64_t> XRSFile::ListChanges() const
{
    std::vector<std::uint64_t> changes;
    for (const auto& band : m_bands)
        changes.push_back(band->GetChangeNumber());
    return changes;
}

XRSFile::tagMatrix XRSFile::MakeMatrix(const double* values) const
{
    if (!values) return {};
    return {{values, values + m_bands.size() * m_bands.size()}, ListChanges()};
}

bool XRSFile::IsGood(const tagMatrix& matrix) const
{
    return !matrix.values.empty() && matrix.changes == ListChanges();
}

void XRSFile::SetCorrelationMatrix(const double* values)
{
    m_correlation = MakeMatrix(values);
}

void XRSFile::SetCovarianceMatrix(const double* values)
{
    m_covariance = MakeMatrix(values);
}

int XRSFile::HasValidStatistics() const
{
    return IsGood(m_correlation) && m_correlation.values.front() != kXNotSet;
}

XSpatialReference* XRSFile::GetSR()
{
    if (!m_bands.empty()) return m_bands.front()->GetSR();
    return m_vands.empty() ? &m_noSR : m_vands.front()->GetSR();
}

double XRSFile::GetXPixelSize() const
{
    return m_bands.empty() ? 1.0 : m_bands.front()->GetXPixelSize();
}

double XRSFile::GetYPixelSize() const
{
    return m_bands.empty() ? 1.0 : m_bands.front()->GetYPixelSize();
}

void XRSFile::GetBoundRect(double& left, double& right, double& bottom, double& top) const
{
    left = right = bottom = top = 0.0;
    for (std::size_t i = 0; i < m_bands.size(); ++i) {
        double l, r, b, t;
        m_bands[i]->GetBoundRect(l, r, b, t);
        left = i ? std::min(left, l) : l;
        right = i ? std::max(right, r) : r;
        bottom = i ? std::min(bottom, b) : b;
        top = i ? std::max(top, t) : t;
    }
}

int XRSFile::GetHeaderBands(int (&rgb)[3]) const
{
    for (int i = 0; i < 3; ++i)
        if (m_headerBands[i] < 0 || m_headerBands[i] >= GetNumOfBands()) return 0;
    std::copy(m_headerBands.begin(), m_headerBands.end(), rgb);
    return 1;
}

void XRSFile::SetHeaderBands(const int (&rgb)[3])
{
    std::copy(rgb, rgb + 3, m_headerBands.begin());
}

void XRSFile::AddNote(const XString& sentence)
{
    if (!m_notes.IsEmpty()) m_notes += "\n";
    m_notes += sentence;
}

int XRSFile::LoadFileXDM(const XString& path, XString& error, XThread* thread)
{
    return XRSFileIO::LoadFileRaster(this, kXFormatXDM, path, error, 1, 1, thread);
}

void XRSFile::Clear()
{
    XRSFile empty;
    Swap(empty);
}

void XRSFile::Swap(XRSFile& other)
{
    std::swap(m_filePtr, other.m_filePtr);
    std::swap(m_attachFlag, other.m_attachFlag);
    m_name.Swap(other.m_name);
    m_path.Swap(other.m_path);
    m_description.Swap(other.m_description);
    m_formatName.Swap(other.m_formatName);
    std::swap(m_version, other.m_version);
    std::swap(m_threshold1, other.m_threshold1);
    m_cryptoInfo.Swap(other.m_cryptoInfo);
    m_bands.swap(other.m_bands);
    m_vands.swap(other.m_vands);
    m_gcpSets.swap(other.m_gcpSets);
    m_regions.swap(other.m_regions);
    m_signatures.swap(other.m_signatures);
    m_radarScene.swap(other.m_radarScene);
    std::swap(m_correlation, other.m_correlation);
    std::swap(m_covariance, other.m_covariance);
    std::swap(m_noSR, other.m_noSR);
    std::swap(m_headerBands, other.m_headerBands);
    m_notes.Swap(other.m_notes);
    AdoptAll();
    other.AdoptAll();
}

void XRSFile::AdoptAll()
{
    for (const auto& band : m_bands)
        band->SetXRSFile(this);
    for (const auto& vand : m_vands)
        vand->SetXRSFile(this);
}
