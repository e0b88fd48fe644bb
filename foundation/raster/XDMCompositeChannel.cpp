#include "foundation/raster/XDMCompositeChannel.h"

#include <atomic>
#include <numeric>

tagXCompositeChannel::tagXCompositeChannel()
{
    std::iota(lut.begin(), lut.end(), static_cast<unsigned char>(0));
    clt = lut;
}

tagXCompositeChannel::~tagXCompositeChannel()
{
    RemovePoints();
}

tagXCompositeChannel::tagXCompositeChannel(const tagXCompositeChannel& other)
{
    *this = other;
}

tagXCompositeChannel& tagXCompositeChannel::operator=(const tagXCompositeChannel& other)
{
    if (this == &other) return *this;
    CopyDisplay(other);
    band = other.band;
    warp = other.warp;
    warpInv = other.warpInv;
    isWarpChosen = other.isWarpChosen;
    chosenWarp = other.chosenWarp;
    chosenInv = other.chosenInv;
    subset = other.subset;
    return *this;
}

void tagXCompositeChannel::CopyDisplay(const tagXCompositeChannel& other)
{
    if (this == &other) return;
    RemovePoints();
    for (const tagXHistPt& point : other.ListPoints())
        InsertPoint(point);
    hide = other.hide;
    matchA = other.matchA;
    matchB = other.matchB;
    coverage = other.coverage;
    cutType = other.cutType;
    cutMin = other.cutMin;
    cutMax = other.cutMax;
    isCutChosen = other.isCutChosen;
    isCutPending = other.isCutPending;
    changes = other.changes;
    stretchType = other.stretchType;
    intensity000 = other.intensity000;
    intensity255 = other.intensity255;
    lut = other.lut;
    lutKey = other.lutKey;
    isLutSet = other.isLutSet;
    clt = other.clt;
    defValue = other.defValue;
    transparent = other.transparent;
}

void tagXCompositeChannel::NoteChange()
{
    static std::atomic<std::uint64_t> last{0};
    changes = ++last;
}

void tagXCompositeChannel::ForgetRange()
{
    if (isCutChosen == 1) return;
    isCutChosen = 0;
    cutMin = 0.0;
    cutMax = 255.0;
    isCutPending = 1;
}

void tagXCompositeChannel::RemovePoints()
{
    for (__POSITION* pos = points.GetHeadPosition(); pos;)
        delete static_cast<tagXHistPt*>(points.GetNext(pos));
    points.RemoveAll();
}

void tagXCompositeChannel::InsertPoint(tagXHistPt point)
{
    for (__POSITION* pos = points.GetHeadPosition(); pos;) {
        __POSITION* const here = pos;
        auto* known = static_cast<tagXHistPt*>(points.GetNext(pos));
        if (known->position == point.position) {
            *known = point;
            return;
        }
        if (known->position > point.position) {
            points.InsertBefore(here, new tagXHistPt(point));
            return;
        }
    }
    points.AddTail(new tagXHistPt(point));
}

std::vector<tagXHistPt> tagXCompositeChannel::ListPoints() const
{
    std::vector<tagXHistPt> list;
    for (__POSITION* pos = points.GetHeadPosition(); pos;)
        list.push_back(*static_cast<const tagXHistPt*>(points.GetNext(pos)));
    return list;
}
