#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XObject.h"
#include "foundation/reference/XSpatialReference.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

class XDMComposite;

/// The ordered composites of one view and the reference they are shown in. Index 0 is the top one.
///
/// Ownership: with the delete flag set (as after construction) the manager deletes the composites
/// of its list when they are removed all at once or when it dies; without it the host does. A
/// composite made by NewXDMComposite that never entered the list dies with the manager in either
/// case.
///
/// Threads: the user interface thread only.
class XAPI XDMCompManager : public XObject
{
    X_DECLARE_CLASS(XDMCompManager)

public:
    XDMCompManager();
    ~XDMCompManager() override;
    XDMCompManager(const XDMCompManager&) = delete;
    XDMCompManager& operator=(const XDMCompManager&) = delete;

    XDMComposite* NewXDMComposite(int mode); ///< not in the list yet

    /// Null and a composite that stands in the list already are refused with 0. One that another
    /// manager made or lists leaves that manager and belongs to this one.
    int AddXDMComposite(XDMComposite* composite);     ///< in front: it becomes the top one
    int AddXDMCompositeTail(XDMComposite* composite); ///< at the end
    XDMComposite* GetXDMCompositeAt(int index) const; ///< null outside the list
    long GetNumberOfXDMComposite() const;

    /// Takes one out of the list without deleting it; the caller owns it from then on.
    int RemoveXDMComposite(XDMComposite* composite);
    /// Moves a composite to another place of the list. 0 when either is outside.
    int MoveXDMComposite(int from, int to);
    void RemoveXDMCompositeAll();
    /// Called with each composite that has left, before it is deleted if it is; for the view that
    /// lends composites to its windows. It changes nothing here.
    void SetRemoved(std::function<void(XDMComposite*)> removed) { m_removed = std::move(removed); }

    int GetCompositeDeleteFlag() const { return m_isOwner; }
    void SetCompositeDeleteFlag(int flag) { m_isOwner = flag; }

    /// Copied; null empties it. The composites of the list are placed in it (as each that joins
    /// later), which XDMComposite::PlaceInReference tells of.
    void SetSR(const XSpatialReference* reference);
    XSpatialReference* GetSR() { return &m_reference; }

    double GetULX() const; ///< upper left of the total range; 0 when there is none
    double GetULY() const;

    /// Whether CalcTotalRange has a range to tell: a composite with a band or a vector range.
    int IsRangeValid() const;
    /// Union of the extents of all composites. 0 when there is nothing; then the values stay.
    int CalcTotalRange(double& minX, double& minY, double& maxX, double& maxY) const;

    void UpdateNeeded(); ///< marks all composites stale

private:
    int Take(XDMComposite* composite, std::size_t place);
    void LetGo(XDMComposite* composite);
    void TellRemoved(XDMComposite* composite) const;

    std::vector<XDMComposite*> m_list;
    std::vector<std::unique_ptr<XDMComposite>> m_loose; ///< made here, not in the list
    std::function<void(XDMComposite*)> m_removed;
    int m_isOwner = 1;
    XSpatialReference m_reference;
};
