#pragma once

#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XGCPSets.h"

#include <memory>
#include <vector>

class XDMVand;
class XFile;
class XROI;
class XRSSIG;
class XThread;

/// A raster file: its bands, vector bands, control points, regions, signatures and statistics.
///
/// Owns bands, vector bands, control point sets, regions and signatures; the destructor destroys
/// them, so a file must outlive every composite that shows one of its bands. Filled by XRSFileIO, or
/// by hand for a file in memory, whose path is empty.
/// Threads: the list belongs to the thread that builds it; the bands may be read from any thread.
class XAPI XRSFile : public XObject
{
    X_DECLARE_CLASS(XRSFile)
public:
    XRSFile();
    XRSFile(const XRSFile&) = delete;
    XRSFile& operator=(const XRSFile&) = delete;
    ~XRSFile() override;

    XFile* GetFilePtr() const { return m_filePtr; }
    /// With the attach flag set this object owns `file` and destroys it. The path follows the file.
    /// Loading opens the file for reading and hands it over with the flag 1; the bands read through
    /// handles of their own. Null for a file in memory and for one inside an archive or container.
    void SetFile(XFile* file, int attachFlag);
    int GetAttatchFlag() const { return m_attachFlag; }
    void SetAttatchFlag(int flag) { m_attachFlag = flag; }

    XString GetName() const { return m_name; }
    void SetName(const XString& name) { m_name = name; }
    XString GetFilePath() const; ///< empty for a file in memory
    /// Goes before the path of the open file, until another one is set.
    void SetFilePath(const XString& path) { m_path = path; }
    XString GetFileName() const;  ///< last part of the path
    XString GetFileTitle() const; ///< the name without its extension
    const XString& GetDescription() const { return m_description; }
    void SetDescription(const XString& text) { m_description = text; }
    /// What the file is, in the words of the reader: "GeoTIFF"; empty in memory.
    const XString& GetFormatName() const { return m_formatName; }
    void SetFormatName(const XString& name) { m_formatName = name; }
    int GetVersion() const { return m_version; }
    void SetVersion(int version) { m_version = version; }
    double GetThreshold1() const { return m_threshold1; }
    void SetThreshold1(double value) { m_threshold1 = value; }
    const XString& GetCryptoVaildationInfo() const { return m_cryptoInfo; }
    void SetCryptoVaildationInfo(const XString& text) { m_cryptoInfo = text; }

    int AddBand(XDMBand* band); ///< takes ownership; 0 for null or a band that is there already
    XDMBand* GetBandAt(int index) const; ///< null outside the list
    int GetNumOfBands() const { return static_cast<int>(m_bands.size()); }
    int AddVand(XDMVand* vand);
    XDMVand* GetVandAt(int index) const;
    int GetNumOfVands() const { return static_cast<int>(m_vands.size()); }
    int AddGCPSet(tagGCPSets* set);
    tagGCPSets* GetGCPSetAt(int index) const;
    int GetNumOfGCPSet() const { return static_cast<int>(m_gcpSets.size()); }

    /// Regions of interest; AddROISet takes ownership, 0 for null or a region that is there already.
    int AddROISet(XROI* region);
    XROI* GetROISetAt(int index) const; ///< null outside the list
    int GetNumOfROI() const { return static_cast<int>(m_regions.size()); }
    void RemoveAllROISet(); ///< destroys them; the signatures of this file let them go first
    /// Signatures, whose members are regions of this file as a rule. As above.
    int AddSIGSet(XRSSIG* signature);
    XRSSIG* GetSIGSetAt(int index) const;
    int GetNumOfSIG() const { return static_cast<int>(m_signatures.size()); }
    void RemoveAllSIGSet(); ///< destroys them, and none of the regions

    /// bands x bands values, row-major; null when not computed, and when the bands have changed
    /// since: their number, their pixels or a null value.
    double* GetCorrelationMatrix()
    {
        return IsGood(m_correlation) ? m_correlation.values.data() : nullptr;
    }
    double* GetCovarianceMatrix()
    {
        return IsGood(m_covariance) ? m_covariance.values.data() : nullptr;
    }
    /// Copy GetNumOfBands() squared values; null drops the matrix.
    void SetCorrelationMatrix(const double* values);
    void SetCovarianceMatrix(const double* values);
    /// 1 when there is a correlation matrix whose first element is not kXNotSet.
    int HasValidStatistics() const;
    /// Computes both matrices and sets them, over the pixels that have a value in every band that
    /// takes part; see tagXJointMoments for method, divisor and singular cases. A band of another
    /// grid gives the pixel under the first one's. Bands that take no part, because they are complex
    /// or have no pixel with a value, have kXNotSet in their rows and columns.
    /// @param step     every step-th row and column counts; 1 is the whole image
    /// @param thread   gets percents and is asked for its stop flag; may be null
    /// @param message  why it failed; empty after a stop
    /// @return 0 after a stop, when a part cannot be read, or when a band was changed meanwhile; the
    ///         matrices are then as they were
    int CalcMatrices(int step, XThread* thread, XString& message);

    /// The record of a radar scene, null when there is none. It travels with the file; nothing here
    /// computes on it.
    const std::shared_ptr<XObject>& GetRadarScene() const { return m_radarScene; }
    void SetRadarScene(std::shared_ptr<XObject> record) { m_radarScene = std::move(record); }

    /// Of the file as a whole. Without bands the reference is empty, sizes are 1 and the box 0.
    XSpatialReference* GetSR();
    double GetXPixelSize() const; ///< of the first band
    double GetYPixelSize() const;
    /// The union of the bands' extents between pixel centres.
    void GetBoundRect(double& left, double& right, double& bottom, double& top) const;

    /// The bands that the file's header names for red, green and blue, from 0.
    /// @return 0 when it names none
    int GetHeaderBands(int (&rgb)[3]) const;
    void SetHeaderBands(const int (&rgb)[3]);

    /// What was wrong with the file but did not keep it from opening, a sentence a line: a
    /// georeference that makes no sense, for instance.
    const XString& GetNotes() const { return m_notes; }
    void AddNote(const XString& sentence);

    /// Loads a file of the native format, whatever its extension; XRSFileIO opens the others. What
    /// this object held is replaced. The tiles of its bands are read when they are asked for.
    /// @param thread  may be null; with its stop flag up the result is 0 and `error` is empty
    /// @return 0 with a sentence that names the file in `error`; this object is then as it was
    int LoadFileXDM(const XString& path, XString& error, XThread* thread);

    /// Empties the file: everything owned is destroyed, the attributes are as in a new one.
    void Clear();
    /// Swaps everything with `other`; bands learn their new owner.
    void Swap(XRSFile& other);

private:
    void AdoptAll();

    /// Numbers of all pairs of bands, good for the bands as they were then.
    struct tagMatrix
    {
        std::vector<double> values;
        std::vector<std::uint64_t> changes; // XBand::GetChangeNumber of each band
    };
    std::vector<std::uint64_t> ListChanges() const;
    tagMatrix MakeMatrix(const double* values) const;
    bool IsGood(const tagMatrix& matrix) const;

    XFile* m_filePtr = nullptr;
    int m_attachFlag = 0;
    XString m_name;
    XString m_path;
    XString m_description;
    XString m_formatName;
    int m_version = 0;
    double m_threshold1 = kXNotSet;
    XString m_cryptoInfo;
    std::vector<std::unique_ptr<XDMBand>> m_bands;
    std::vector<std::unique_ptr<XDMVand>> m_vands;
    std::vector<std::unique_ptr<tagGCPSets>> m_gcpSets;
    std::vector<std::unique_ptr<XROI>> m_regions;
    std::vector<std::unique_ptr<XRSSIG>> m_signatures; // destroyed before the regions they name
    tagMatrix m_correlation;
    tagMatrix m_covariance;
    std::shared_ptr<XObject> m_radarScene;
    XSpatialReference m_noSR;
    std::array<int, 3> m_headerBands{-1, -1, -1};
    XString m_notes;
};
