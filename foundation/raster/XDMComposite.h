#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XObject.h"
#include "foundation/base/XString.h"
#include "foundation/raster/XDMCompositeChannel.h"
#include "foundation/reference/XSpatialReference.h"

#include <atomic>
#include <memory>

class XBackBuffer;
class XDMBand;
class XDMBandSpatialFilter;
class XDMCompManager;
class XDMVand;
class XDrawHelpers;
class XDrawTableCache;
class XThread;
class XVertBuffer;
struct tagBITMAPINFO;
struct tagXDrawJob;
struct tagXSaveControl;

/// A picture made of up to three bands, or of one vector band, and everything that says how the
/// bands become colours.
///
/// Modes: 0 gray (channel 0), 1 RGB (channel 0 is blue, 1 green, 2 red), 2 HSI (0 hue,
/// 1 saturation, 2 intensity, each 0..255), 3 vector (no channel; shows the vand).
///
/// A sample reaches the screen in this order: histogram matching (a * value + b, when its flag is
/// set), cut range to 0..255 (at or below the minimum 0, at or above the maximum 255, rounded
/// between), LUT, CLT, then alpha over what the surface holds. A gray composite sends one display
/// level through all three CLTs. A cut range that stands upside down shows the negative.
///
/// Pixels without data: a sample that equals its band's null value or is NaN has none. A pixel
/// that has no data in every channel is not drawn; where other channels have data the channel
/// shows its default value, so that a null in one band does not erase the colour of the others. A
/// channel without a band or with its hide flag set shows its default value everywhere and says
/// nothing about data. Infinities are data: they lie above or below every cut range.
///
/// Transparent values count when the transparent flag is set: one by one (a channel whose sample
/// equals its value lets its component of what lies below shine through; in HSI the whole pixel
/// does), or as one (the pixel is transparent where all channels with a value equal theirs).
///
/// Geometry: a channel's warp leads from world coordinates to pixels of its band, centre based.
/// SetBand takes the band's own, so rotated rasters and such with ground control points are drawn
/// in place. Class maps and masks (band types 8 and above) are never interpolated. In a manager whose
/// reference is another map than the band's, the channel is placed there (PlaceInReference).
///
/// Ownership: bands and vands are lent and must outlive the composite.
///
/// Threads: a composite is changed, drawn and read from one thread at a time; only the abort word
/// may be raised from elsewhere. A rendering thread draws a clone (CloneXDMComposite), whose
/// results the owner takes with TakeDrawResults. Reads of pixels may run while clones are drawn.
///
/// A channel outside 0..2 reads as neutral (null, 0, or kXNotSet for numbers) and writes nothing.
class XAPI XDMComposite : public XObject
{
    X_DECLARE_CLASS(XDMComposite)

public:
    explicit XDMComposite(int mode = 0);
    ~XDMComposite() override;
    XDMComposite(const XDMComposite&) = delete;
    XDMComposite& operator=(const XDMComposite&) = delete;

    const XString& GetName() const { return m_name; }
    void SetName(const XString& name) { m_name = name; }
    int GetMode() const { return m_mode; }
    void SetMode(int mode) { m_mode = mode; }

    XDMVand* GetVand() const { return m_vand; }
    void SetVand(XDMVand* vand); ///< the vector picture becomes stale
    XDMBand* GetBand(int ch) const;
    /// Null empties the channel. Takes the band's warps, and its range unless one was chosen.
    void SetBand(XDMBand* band, int ch);
    XDMBand* GetFirstBand() const;   ///< of channels 0, 1, 2 in use; null when none
    int GetNumberOfChannels() const; ///< 1 for gray, 3 for RGB and HSI, 0 for vector

    int GetHideFlag(int ch) const;
    void SetHideFlag(int flag, int ch);
    int GetHideFlagVector() const; ///< of the vand's base; 0 without one
    void SetHideFlagVector(int flag);

    int GetHistogramMatchingFlag() const { return m_isMatching; }
    void SetHistogramMatchingFlag(int flag) { m_isMatching = flag; }
    void GetHistogramMatchingCoeff(double& a, double& b, int ch) const;
    void SetHistogramMatchingCoeff(double a, double b, int ch);

    // Coverage: 0 whole band, 1 visible region, 2 regions of interest. Cut type: 0 explicit,
    // 1 minimum to maximum, 2 Gaussian 98 %, 3 Gaussian 95 %. Draw turns coverage 1 into a cut
    // range at every change of the visible region, and cut types 1 to 3 of coverage 0 when they
    // were set after the cut range; both write the cut range, where it can be read.

    int GetStretchCoverage(int ch) const;
    void SetStretchCoverage(int coverage, int ch);
    int GetCutType(int ch) const;
    void SetCutType(int type, int ch);
    double GetCutMin(int ch) const;
    double GetCutMax(int ch) const;
    void SetCutMin(double value, int ch);
    void SetCutMax(double value, int ch);
    void SetCutRange(double min, double max, int ch);
    int GetStretchType(int ch) const; ///< as XfnStretchLUT; 0 is shown as linear
    void SetStretchType(int type, int ch);
    unsigned char GetIntensity000(int ch) const;
    unsigned char GetIntensity255(int ch) const;
    void SetIntensity000(unsigned char value, int ch);
    void SetIntensity255(unsigned char value, int ch);

    /// Records are tagXHistPt, ordered by rising position; the list and its records stay ours.
    XPtrList* GetHistPtsList(int ch);
    int GetNumOfHistPts(int ch) const;
    void AddHistPt(int ch, unsigned char value, unsigned char position);
    void RemoveAllHistPts(int ch);

    /// 256 display levels. The table follows the stretch settings and the histogram: what SetLUT
    /// puts there holds until one of them changes, then Draw makes it anew. A cut range and the
    /// numbers of a visible region that Draw itself works out are no such change. GetLUT hands out
    /// the table as it stands; UpdateLUT brings it up to date first.
    const unsigned char* GetLUT(int ch) const;
    void SetLUT(const unsigned char* table, int ch);
    void UpdateLUT(int ch);
    const unsigned char* GetCLT(int ch) const; ///< 256 colour components
    void SetCLT(const unsigned char* table, int ch);

    unsigned char GetDefValue(int ch) const;
    void SetDefValue(unsigned char value, int ch);
    unsigned long GetBackColor() const { return m_backColor; } ///< 0xFFBBGGRR
    void SetBackColor(unsigned long color) { m_backColor = color; }
    unsigned char GetAlpha() const { return m_alpha; }
    void SetAlpha(unsigned char alpha) { m_alpha = alpha; }

    double GetTransparentValue(int ch) const; ///< kXNotSet when the channel has none
    void SetTransparentValue(double value, int ch);
    int GetNumberOfTransparentValue() const; ///< channels that have one
    void ResetTransparentValue();
    int GetTransparentFlag() const { return m_isTransparent; }
    void SetTransparentFlag(int flag) { m_isTransparent = flag; }
    int GetTransparentApplyAsOne() const { return m_isTransparentAsOne; }
    void SetTransparentApplyAsOne(int flag) { m_isTransparentAsOne = flag; }

    /// Positions are band pixels with y = -row, as for a raster without georeference. A warp that was
    /// set is put aside meanwhile.
    int IsPixelBaseMode() const { return m_isPixelBase; }
    void SetPixelBaseMode(int flag);
    int GetDrawBoundaryFlag() const { return m_isBoundaryDrawn; }
    void SetDrawBoundaryFlag(int flag) { m_isBoundaryDrawn = flag; }
    unsigned long GetBoundaryColor() const { return m_boundaryColor; }
    void SetBoundaryColor(unsigned long color) { m_boundaryColor = color; }
    int GetInterpolatePixel() const { return m_isInterpolated; } ///< bilinear when set
    void SetInterpolatePixel(int flag) { m_isInterpolated = flag; }

    /// Types and sizes as tagXSpatialFilter. Draw filters the samples of the level it draws, before
    /// matching and stretch: the level's own pixels are the neighbours, so at 1:1 and magnified the
    /// picture is that of the filtered full resolution, and reduced it is the filtered level.
    /// Channels whose band is complex or a class map are drawn as they are. Readings, statistics and
    /// cut ranges are those of the band itself. Without a filter nothing is done and nothing kept.
    int GetFilterType() const { return m_filterType; }
    void SetFilterType(int type) { m_filterType = type; }
    void SetKernelSize(int size) { m_kernelSize = size; }
    int SetKernelSize() const { return m_kernelSize; } // the getter has this name, hosts call it so

    // Where the channel stands: its band's own geometry, another reference, or the caller's warp.

    /// World to band pixel and back. Of a channel placed in another reference the polynomials that
    /// come nearest; drawing, reading and converting add what they miss.
    const XWarp2D& GetWarpCoeff(int ch) const;
    const XWarp2D& GetWarpCoeffInv(int ch) const;
    /// The inverse is computed: exactly for an affine warp, else as a fit over the band's pixels.
    /// The channel stays where this puts it, whatever the manager's reference becomes, until
    /// SetBand.
    void SetWarpCoeff(const XWarp2D& warp, int ch);

    /// Places everything in the world of `target`, from now on also each band that SetBand brings.
    /// The manager calls it when the composite joins its list and when its own reference changes.
    ///
    /// A channel gets a way through both references that is true to a tenth of a band pixel, if its
    /// band and `target` have map references that differ; a vector composite gets a cubic polynomial
    /// over its extent. Otherwise, and with null or an empty target, the band's own geometry holds.
    /// So it does where nothing joins the two; GetPlacementMiss then tells. Channels with a warp of
    /// the caller and those in pixel base mode stay as they are. The parts of a band outside the
    /// domain of the target are not drawn; positions there are NaN and read as no data.
    ///
    /// Cost: 5 to 100 ms for each geometry among the bands, nothing when it was placed there before.
    /// A manager takes its composites out of its world only by placing them in another.
    void PlaceInReference(const XSpatialReference* target);
    /// The largest miss of the placement that was measured, in pixels of the bands (for vectors in
    /// thousandths of the extent's longer side); 0 when nothing had to be placed, -1 when a part
    /// could not be and is shown by its own coordinates.
    double GetPlacementMiss() const { return m_placementMiss; }

    /// World extent (in the manager's reference) of all channels, or of the vand, pixel centres to pixel
    /// centres; an extent of
    /// zero is widened by half a pixel on each side. All 0 when there is nothing.
    void GetBoundRect(double& left, double& right, double& bottom, double& top) const;
    int IsBoundValid() const; ///< whether there is anything GetBoundRect could tell of

    /// In place; a channel without a band leaves the point alone. NaN twice where a channel placed in
    /// another reference has no such point.
    void ConvWorldToPixelCoord(double& x, double& y, int ch) const;
    void ConvPixelToWorldCoord(double& x, double& y, int ch) const;

    /// The pixel edges nearest to a world box, as XDMBand::ConvWorldToPixelRange but through the
    /// channel's warp: a box that runs from pixel (x0, y0) to pixel (x1 + 1, y1 + 1) gives x0, x1 +
    /// 1, y0, y1 + 1. Not held inside the band.
    /// @return 0 when the channel has no band or a number is not finite; then nothing is written
    int ConvWorldToPixelRange(double left, double right, double bottom, double top, int& x0,
                              int& x1, int& y0, int& y1, int ch) const;
    /// The world rectangle from the centre of pixel (x0, y0) to that of (x1, y1).
    int ConvPixelToWorldRange(int x0, int x1, int y0, int y1, double& left, double& right,
                              double& bottom, double& top, int ch) const;

    int GetMaxLevel() const; ///< number of the coarsest level; 0 is full resolution
    /// The coarsest level that still gives every pixel of the buffer a pixel of its own when the
    /// buffer shows the range; 0 when there is no band or the arguments make no sense.
    int GetHighestLevelForTarget(XBackBuffer* buffer, double x0, double y0, double x1,
                                 double y1) const;
    int GetDrawLevel() const { return m_drawLevel; }
    void SetDrawLevel(int level) { m_drawLevel = level; }
    void ResetDrawLevel() { m_drawLevel = -1; } ///< the composite chooses by itself

    /// Band value (before matching and stretch) of the pixel at a world position at full
    /// resolution; kXNoData outside, without data, for complex bands, or when the tile cannot be
    /// read.
    double ReadPixel(int ch, double x, double y) const;

    /// The larger of the line's lengths in pixels on the two axes, rounded, plus 1; 0 when nothing
    /// can be read.
    int CalcLineSizeMax(int ch, double x0, double y0, double x1, double y1) const;

    /// `count` evenly spaced samples from the first point to the last, both included; a count of 1
    /// takes the first. Gaps are kXNoData.
    /// @return 0 when nothing could be read (no band, complex band, bad arguments, broken file)
    int ReadLine(int ch, double x0, double y0, double x1, double y1, double* out, int count) const;

    /// Size of the block of band pixels under a polygon, held inside the band; 0, 0 when outside.
    void CalcROISizeMax(int ch, const double* xs, const double* ys, int n, int& width,
                        int& height) const;

    /// The block of CalcROISizeMax, row by row: values of the pixels whose centre lies inside the
    /// polygon (even-odd rule), kXNoData elsewhere.
    /// @param width,height  as CalcROISizeMax gave them
    /// @param thread        receives percents and is asked for its stop flag once a tile; may be null
    /// @return 0 on a wrong size, a stop, or when tiles cannot be read
    int ReadROI(int ch, const double* xs, const double* ys, int n, double* out, int width,
                int height, XThread* thread) const;
    /// The same for work that has a stop word but reports its percents by itself.
    int ReadROI(int ch, const double* xs, const double* ys, int n, double* out, int width,
                int height, const tagXSaveControl& control) const;

    /// World range of the last Draw or SetDrawRange; the whole extent before any.
    void GetDrawRange(double& x0, double& y0, double& x1, double& y1) const;
    void SetDrawRange(double x0, double y0, double x1, double y1);

    /// Statistics of a channel over the draw range, from the level that holds a few hundred
    /// thousand of its pixels: exact when that is level 0, an estimate otherwise.
    /// CalcSubsetHistogram computes the statistics first when they are stale.
    /// @return 0 when there is no pixel with a value; then the numbers hold the sentinels
    int CalcSubsetStatistics(int ch);
    int CalcSubsetHistogram(int ch);
    double GetSubsetMin(int ch) const;
    double GetSubsetMax(int ch) const;
    double GetSubsetMean(int ch) const;
    double GetSubsetStd(int ch) const;
    const long long* GetSubsetHistogram(int ch) const;
    long long GetSubsetNumPixels(int ch) const;

    /// Draws the part of the composite inside a world range over what the surface holds.
    ///
    /// A screen pixel shows the raster pixel under its centre, or the bilinear mean around it when
    /// the interpolate-pixel flag is set. Without a draw level the level just finer than the
    /// surface is read. A tile that cannot be read leaves its area as it was, and drawing goes on.
    /// @param buffer  null draws into the own back buffer, which is cleared to the back colour
    ///                first
    /// @param last    1 for the top composite of a view, 0 for those below; kept for hosts
    /// @param first   the composite drawn first, null when only one is drawn; kept for hosts
    /// @param abort   polled between tiles and rows; may be null
    /// @return non-zero when everything was drawn; 0 after an abort, a failed tile, or without a
    ///         surface or a mapping in finite numbers
    int Draw(XBackBuffer* buffer, double x0, double y0, double x1, double y1, int last,
             XDMComposite* first, std::atomic<int>* abort);
    /// Why the last Draw left a part as it was: the sentence of its first tile that failed, with the
    /// file's name. Empty when everything was drawn, after an abort, and before any Draw.
    const XString& GetDrawMessage() const { return m_drawMessage; }
    /// Lends threads that decode ahead of drawings; null (at first): every Draw has its own. With
    /// lent ones Draw may leave a tile of its bands in hand, so bands and abort word stay
    /// until XDrawHelpers' Wait. Copies have none.
    void SetDrawHelpers(XDrawHelpers* helpers) { m_helpers = helpers; }

    XBackBuffer* GetBackBuffer() { return m_backBuffer.get(); }
    int GetDIBits(tagBITMAPINFO& info) const; ///< pixels of the own back buffer

    int IsUpdateNeeded() const { return m_isUpdateNeeded; }
    void UpdateNeeded() { m_isUpdateNeeded = 1; }
    void UpdateCompleted() { m_isUpdateNeeded = 0; }

    XVertBuffer* GetVertexBuffer() { return m_vertexBuffer.get(); }
    XVertBuffer* GetVertexBufferBoundary() { return m_boundaryBuffer.get(); }
    void UpdateVector()
    {
        m_isVectorStale = 1;
        m_clonedHide = -1;
    }
    /// Records the vand into the vertex buffer when it is stale. Draw does so itself; call it
    /// before cloning for another thread, which must not walk the objects.
    void PrepareVector();

    /// Makes this composite show what `source` shows: everything but the own back buffer, the draw
    /// level (it is reset) and the manager. Bands and vand are shared. A clone of a prepared
    /// composite (PrepareVector) draws the recording, hidden or not as the vand was then, without a
    /// look at the vand, until UpdateVector, SetVand or SetHideFlagVector.
    void CloneXDMComposite(const XDMComposite* source);

    /// Stretch, tables, transparency and display flags of `source`, without its mode, bands and
    /// geometry. The composites may have any modes: channels are taken one to one, and a gray
    /// source serves every channel.
    void CopyDisplaySettings(const XDMComposite* source);

    /// What drawing `drawn`, a clone of this composite, worked out: draw range and message,
    /// subset statistics, and the cut range and LUT of channels whose settings are still the same in both.
    void TakeDrawResults(const XDMComposite* drawn);

    XDMCompManager* GetXDMCompManager() const { return m_manager; }
    void SetXDMCompManager(XDMCompManager* manager) { m_manager = manager; } ///< by the manager

    const tagXCompositeChannel& GetChannel(int ch) const; ///< for 0..2 only

private:
    tagXCompositeChannel* Channel(int ch);
    const tagXCompositeChannel* Channel(int ch) const;
    void UpdateWarps(int ch);
    void PlaceAll();
    double PlaceChannel(int ch);
    double PlaceVector();
    XDMBand* GetDrawnBand(int ch);
    int IsRasterChannel(int ch) const;
    int CalcBoundBox(double (&box)[4]) const;
    int UpdateSubset(int ch, const std::atomic<int>* abort);
    int GetReferenceChannel() const;
    void ResolveCutRange(int ch, const std::atomic<int>* abort);
    void UpdateStretch(int ch, const std::atomic<int>* abort);
    void UpdateLUT(int ch, const std::atomic<int>* abort);
    tagXLutKey MakeLutKey(int ch, long long* applied, int& hasApplied,
                          const std::atomic<int>* abort) const;
    int GetAppliedHistogram(int ch, long long* applied, const std::atomic<int>* abort) const;
    int DrawRaster(XBackBuffer& buffer, const std::atomic<int>* abort);
    int GetDrawnLevel(int ch, const XBackBuffer& buffer) const;
    void SetUpChannel(int ch, const XBackBuffer& buffer, tagXDrawJob& job);
    void SetUpTransparency(tagXDrawJob& job) const;
    void SetUpColours(tagXDrawJob& job) const;
    void SetUpShortcut(tagXDrawJob& job, std::uint32_t (&words)[3][256]);
    std::array<std::uint8_t, 256> GetComponents(int ch) const;
    int DrawVector(XBackBuffer& buffer, const std::atomic<int>* abort);
    void DrawBoundary(XBackBuffer& buffer);

    XString m_name;
    int m_mode = 0;
    XDMVand* m_vand = nullptr;
    tagXCompositeChannel m_channels[3];
    int m_isMatching = 0;
    unsigned long m_backColor = 0;
    unsigned char m_alpha = 255;
    int m_isTransparent = 0;
    int m_isTransparentAsOne = 0;
    std::unique_ptr<XBackBuffer> m_backBuffer;
    int m_isUpdateNeeded = 1;
    double m_drawRange[4] = {kXNotSet, kXNotSet, kXNotSet, kXNotSet};
    XString m_drawMessage;
    XDrawHelpers* m_helpers = nullptr;
    std::unique_ptr<XVertBuffer> m_vertexBuffer;
    std::unique_ptr<XVertBuffer> m_boundaryBuffer;
    int m_isVectorStale = 1;
    int m_clonedHide = -1; // of the vand when this was cloned; -1 asks it
    int m_isPixelBase = 0;
    int m_isBoundaryDrawn = 0;
    unsigned long m_boundaryColor = 0xFF00FFFF;
    int m_isInterpolated = 0;
    int m_filterType = 0;
    int m_kernelSize = 3;
    int m_drawLevel = -1;
    XSpatialReference m_target; // empty: everything stands where its own geometry puts it
    double m_placementMiss = 0.0;
    XWarp2D m_vectorWarp; // of the vand's coordinates into the target; not valid: as they are
    std::shared_ptr<XDMBandSpatialFilter> m_filtered[3];
    XDMCompManager* m_manager = nullptr;
    std::unique_ptr<XDrawTableCache> m_tables;
};
