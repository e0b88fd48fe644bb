#pragma once

#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"
#include "foundation/reference/XSpatialReference.h"

class XRSFile;
class XvcBase;

/// A vector band: vector objects as a layer of a file.
/// Threads: no lock.
class XAPI XDMVand : public XObject
{
    X_DECLARE_CLASS(XDMVand)
public:
    XDMVand() = default;
    XDMVand(const XDMVand&) = delete;
    XDMVand& operator=(const XDMVand&) = delete;
    ~XDMVand() override; ///< destroys the base when the delete-base flag is set

    XRSFile* GetXRSFile() const { return m_file; }
    void SetXRSFile(XRSFile* file) { m_file = file; }
    int GetID() const { return m_id; }
    void SetID(int id) { m_id = id; }
    XvcBase* GetBase() const { return m_base; }
    void SetBase(XvcBase* base); ///< an owned base that is replaced is destroyed
    int GetType() const { return m_type; }
    void SetType(int type) { m_type = type; }
    XSpatialReference* GetSR() { return &m_sr; }
    void SetSR(const XSpatialReference* sr); ///< copies; null clears
    int GetDeleteBaseFlag() const { return m_deleteBaseFlag; }
    void SetDeleteBaseFlag(int flag) { m_deleteBaseFlag = flag; }

    XString GetName() const; ///< of the base; empty without one
    int GetHideFlag() const; ///< of the base; 0 without one
    void SetHideFlag(int flag);
    /// Of the base; leaves its arguments alone without one.
    void GetRange(double& minX, double& minY, double& minZ, double& maxX, double& maxY,
                  double& maxZ) const;

private:
    XRSFile* m_file = nullptr;
    int m_id = 0;
    XvcBase* m_base = nullptr;
    int m_type = 0;
    XSpatialReference m_sr;
    int m_deleteBaseFlag = 0;
};
