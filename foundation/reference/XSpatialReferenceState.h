#pragma once

#include "foundation/base/XString.h"

#include <memory>
#include <mutex>
#include <string>

class OGRSpatialReference;
struct PJconsts;

/// For the sources of this folder only: what the copies of a reference share.
///
/// The library objects inside build caches even on constant operations, so each use of them holds
/// the lock. What was computed once under it never changes.
struct XSpatialReferenceState
{
    struct Details
    {
        bool isProjected = false;
        bool isGeographic = false;
        int statedCode = 0; // EPSG code that the system itself names
        int unitCode = 0;
        XString name, method, datum, unit;
        double linearUnits = 0.0, angularUnits = 0.0;
        double semiMajor = 0.0, flattening = 0.0;
    };

    explicit XSpatialReferenceState(std::unique_ptr<OGRSpatialReference> system);
    ~XSpatialReferenceState();

    const Details& GetDetails() const;
    int FindCode() const; // stated, else found in the database
    int IsSame(const XSpatialReferenceState& other) const;
    std::unique_ptr<OGRSpatialReference> Clone() const;
    std::string GetWkt2() const; // the complete form; empty on failure

private:
    std::string ExportWkt2() const; // m_lock held
    Details ReadDetails() const;    // m_lock held

    mutable std::mutex m_lock;
    std::unique_ptr<OGRSpatialReference> m_system;
    mutable std::unique_ptr<const Details> m_details;
    mutable int m_foundCode = -1; // -1: not looked for yet
};
