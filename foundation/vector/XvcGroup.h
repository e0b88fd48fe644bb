#pragma once

#include "foundation/vector/XvcPartsObj.h"

/// Objects of any classes that are picked, moved, turned and scaled as one.
///
/// Members keep attributes of their own. Groups may lie in groups, kMaxDepth of them when they are to
/// be stored. A member of a class that XvcFactory.h does not know is drawn and moved with the others,
/// but neither copied nor to be read from a file. A hit on a member is one on the
/// body of the group. MoveVertex takes the kinds 4 to 7 for the corners of the range (lower left,
/// upper left, upper right, lower right) and scales the members about the opposite corner, so that
/// the range changes by the step; a side without length, or one that the step would take away,
/// is left as it is. The range must be up to date (CalcRange).
class XAPI XvcGroup : public XvcPartsObj
{
    X_DECLARE_CLASS(XvcGroup)
public:
    XvcGroup() = default;

    /// Takes the object. @return its index; -1 for null, which is not added
    int AddObj(std::unique_ptr<XvcObj> object) { return AddPart(std::move(object)); }
    int GetNumOfObjs() const { return GetPartCount(); }
    XvcObj* GetObjAt(int index) const { return GetPartAt(index); }
    /// Takes a member out and gives it away; null for an index that there is not.
    std::unique_ptr<XvcObj> ReleaseObjAt(int index);

    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hitFlag) override;
    using XvcObj::HitTest;
    /// @return the corner moved, as part of the range of before; good until the next call
    tagXVector3* MoveVertex(int hitIndex, double dx, double dy, double dz) override;
    /// One geometry of any kind, or a collection of them: each becomes a member.
    int ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error) override;
    XString ExportToWkt() const override; ///< GEOMETRYCOLLECTION of the members that have a text

protected:
    /// The frontmost member hit, or what it answers for itself.
    XvcObj* HitTestMembers(const tagXVector3& point, double toleranceX, double toleranceY,
                           tagXHitFlag& hitFlag);

private:
    int ImportMembers(const unsigned char* bytes, std::size_t& size, int depth, XString& error);

    tagXVector3 m_corner;
};
