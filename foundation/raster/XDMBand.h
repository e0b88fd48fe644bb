#pragma once

#include "foundation/raster/XArr2.h"
#include "foundation/raster/XBand.h"
#include "foundation/raster/XBandAcquisition.h"
#include "foundation/raster/XBandGeometry.h"
#include "foundation/raster/XBandRadar.h"
#include "foundation/raster/XRSGIS.h"
#include "foundation/raster/XTileCache.h"
#include "foundation/reference/XSpatialReference.h"

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <vector>

class XRSFile;
class XThread;
struct tagXSaveControl;

/// The pixel of a raster of `size` that a level of `levelSize` shows at `position`: the one that
/// holds the centre of the level's pixel.
constexpr int XfnPickPixel(int position, int levelSize, int size)
{
    return static_cast<int>((2 * static_cast<std::int64_t>(position) + 1) * size /
                            (2 * static_cast<std::int64_t>(levelSize)));
}

/// What a band shows; 8 and above are no images.
enum XBandType : int {
    kXBandUnknown = 0,
    kXBandPanchromatic = 1,
    kXBandMultispectral = 2,
    kXBandHyperspectral = 3,
    kXBandThermal = 4,
    kXBandRadar = 5,
    kXBandElevation = 6,
    kXBandDerived = 7,
    kXBandClassMap = 8,
    kXBandMask = 9
};

/// A band that can be read: levels, tiles, geometry and everything that describes it.
///
/// Levels: level 0 is full resolution, each further one halves both sides, rounded up, until both
/// are at most 256 pixels. A level is stored in the file (an overview) or virtual: read by taking
/// every n-th pixel of the next finer stored level. Pixel (x, y) of level 0 lies in level l at
/// ((x + 0.5) * levelWidth / width - 0.5), likewise y.
///
/// A derived class defines ReadTile, and WriteTile when it can be written; everything else here
/// stands on tiles, which go through the cache of the process.
///
/// Threads: all reading and writing operations may run in any number of threads at once. Setters belong to the
/// thread that builds the band, before others see it. Lives as long as its XRSFile.
/// Failure: reading answers 0 and throws nothing.
class XAPI XDMBand : public XBand, public XBandAcquisition, public XBandRadar
{
    X_DECLARE_CLASS(XDMBand)
public:
    XDMBand();
    ~XDMBand() override;

    // ---- pixels: XBand.h tells what these do ----

    int ReadLineH(tagXArr2*& block, int level, int row, int start, int count) override;
    int ReadLineH(tagXArr2*& block, int level, int row) override;
    int ReadLineV(tagXArr2*& block, int level, int column, int start, int count) override;
    int ReadLineV(tagXArr2*& block, int level, int column) override;
    int ReadPixel(tagXArr2*& block, int x, int y) override;
    int WriteLineH(const void* data, int row, int start, int count, bool skip,
                   double number) override;
    int WriteLineH(const void* data, int row, bool skip, double number) override;
    int WriteLineH(const tagXArr2* block, int row, int start, int count, bool skip,
                   double number) override;
    int WriteLineH(const tagXArr2* block, int row, bool skip, double number) override;
    int WriteLineV(const void* data, int column, int start, int count, bool skip,
                   double number) override;
    int WriteLineV(const void* data, int column, bool skip, double number) override;
    int WriteLineV(const tagXArr2* block, int column, int start, int count, bool skip,
                   double number) override;
    int WriteLineV(const tagXArr2* block, int column, bool skip, double number) override;
    int WritePixel(const void* data, int x, int y, bool skip, double number) override;
    int WritePixel(const tagXArr2* block, int x, int y, bool skip, double number) override;
    int GetHighestLevelForTarget(double ulX, double ulY, double urX, double urY, double lrX,
                                 double lrY, double llX, double llY, int width,
                                 int height) const override;
    int GetHighestLevelForTarget(int x0, int x1, int y0, int y1, int width,
                                 int height) const override;
    std::int64_t CalcProcessWidthBytes() const override;
    int ReadSubset(void*& data, int& width, int& height, int level, int x0, int x1, int y0, int y1,
                   const std::atomic<int>* abort) override;
    int ReadSubset(tagXArr2*& block, int level, int x0, int x1, int y0, int y1,
                   const std::atomic<int>* abort, XString* message = nullptr) override;
    int WriteSubset(int x0, int x1, int y0, int y1, bool skip, double number) override;
    int WriteSubset(const void* data, int x0, int x1, int y0, int y1, bool skip,
                    double number) override;
    int WriteSubset(const tagXArr2* block, int x0, int x1, int y0, int y1, bool skip,
                    double number) override;
    int GetLevel() const override;
    void GetSubsetInfo(int level, int x0, int x1, int y0, int y1, int& tileX0, int& tileX1,
                       int& tileY0, int& tileY1) const override;
    void GetSubsetPos(int level, int x0, int x1, int y0, int y1, int& levelX0, int& levelX1,
                      int& levelY0, int& levelY1) const override;
    int BuildLowerLevelsForTIP(double nullValue, int x0, int x1, int y0, int y1,
                               bool skip) override;
    int CloneBand(const XDMBand* source) override;
    void SetNullValue(double value) override; ///< bands that are derived from this one follow
    int IsWritable() const override { return 0; }

    /// width x height pixels of a level from its pixel (x0, y0), as ReadSubset gives them.
    int ReadLevelWindow(tagXArr2*& block, int level, int x0, int y0, int width, int height,
                        const std::atomic<int>* abort, XString* message = nullptr) const;
    /// The pixel that covers a world point; 0 outside the band too.
    int ReadPixelAtWorld(tagXArr2*& block, double worldX, double worldY);

    // ---- levels ----

    int GetNumOfLevels() const { return static_cast<int>(m_levels.size()); } ///< at least 1
    virtual int IsVirtualLevel(int level) const;
    /// 0 x 0 for a level that is none.
    void GetLevelSize(int level, int& width, int& height) const;
    void GetTileSize(int level, int& width, int& height) const;

    // ---- tiles ----

    /// A tile of a level, through the cache of the process; decoded in the calling thread when it is
    /// not there. A tile that failed is not tried again for some seconds.
    /// @param abort  may be null
    /// @return null after an abort (`message` is empty), outside the level, or when reading failed
    std::shared_ptr<const XTile> GetTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                         XString& message) const;
    /// 1 while the tiles handed out are what the file held. Who makes something lasting of samples
    /// asks afterwards: a file that is cut while it is mapped gives zeros.
    /// @return 0 with a sentence that names the file in `message`, then for good
    virtual int IsIntact(XString& message) const;
    /// Why some part that was asked for could not be read as it was written, first of all such
    /// complaints since the band was made; empty while there was none.
    XString GetDamage() const;
    /// 1 when numbers of this band are those of the file that now stands at its path: the file is as
    /// it was opened, and the null value is the one in it.
    /// @return 0 with a sentence in `message`
    virtual int IsAsInFile(XString& message) const;
    /// The tile when it is in the cache, else null; decodes nothing.
    std::shared_ptr<const XTile> FindTile(int level, int tx, int ty) const;
    /// 1 when GetTile gives the tile at once, decoding nothing.
    virtual int IsTileAtHand(int level, int tx, int ty) const;
    /// Exact numbers from every pixel at full resolution, which replace the estimates.
    /// @param thread  receives percents; may be null
    /// @return 0 after an abort (`message` is empty), when a part cannot be read, or when the pixels
    ///         or the null value were changed meanwhile; the numbers are then as they were
    int CalcExactStatistics(const std::atomic<int>* abort, XThread* thread, XString& message);
    int CalcExactStatistics(const tagXSaveControl& control, XString& message);

    // ---- geometry ----

    XSpatialReference* GetSR() { return &m_sr; }
    const XSpatialReference* GetSR() const { return &m_sr; }
    double GetULX() const { return m_geometry.GetULX(); }
    double GetULY() const { return m_geometry.GetULY(); }
    double GetXPixelSize() const { return m_geometry.GetXPixelSize(); }
    double GetYPixelSize() const { return m_geometry.GetYPixelSize(); }
    void GetPixelSize(double& x, double& y) const;
    /// Both make the band north-up; numbers that make no sense change nothing.
    void SetUpperLeft(double x, double y);
    void SetPixelSize(double x, double y);
    const XBandGeometry& GetGeometry() const { return m_geometry; }
    void SetGeometry(const XBandGeometry& geometry) { m_geometry = geometry; }
    const XWarp2D& GetWorldToPixel() const { return m_geometry.GetWorldToPixel(); }
    const XWarp2D& GetPixelToWorld() const { return m_geometry.GetPixelToWorld(); }
    void ConvPixelToWorldCoord(double& x, double& y) const;
    void ConvWorldToPixelCoord(double& x, double& y) const;
    /// The pixel edges nearest to a world box, halves away from zero: a box that runs from pixel
    /// (x0, y0) to pixel (x1 + 1, y1 + 1) gives x0, x1 + 1, y0, y1 + 1.
    void ConvWorldToPixelRange(double left, double right, double bottom, double top, int& x0,
                               int& x1, int& y0, int& y1) const;
    void ConvPixelToWorldRange(int x0, int x1, int y0, int y1, double& left, double& right,
                               double& bottom, double& top) const;
    /// World extent between pixel centres.
    void GetBoundRect(double& left, double& right, double& bottom, double& top) const;

    // ---- description ----

    XRSFile* GetXRSFile() const { return m_file; }
    void SetXRSFile(XRSFile* file) { m_file = file; } ///< for XRSFile::AddBand
    int GetBandType() const { return m_bandType; }    ///< XBandType, or a host's above 9
    void SetBandType(int type) { m_bandType = type; }
    /// 0 unknown, 1 grey, 2 colour table, 3 red, 4 green, 5 blue, 6 alpha.
    int GetColorInterpretation() const { return m_colorInterpretation; }
    void SetColorInterpretation(int role) { m_colorInterpretation = role; }
    int IsNormalizedWorld() const { return m_normalizedWorld; }
    void SetNormalizedWorld(int flag) { m_normalizedWorld = flag; }
    int GetUseSensorModel() const { return m_useSensorModel; }
    void SetUseSensorModel(int flag) { m_useSensorModel = flag; }

    int GetNumOfGIS() const { return static_cast<int>(m_classes.size()); }
    tagXRSGIS* GetGISAt(int index); ///< null outside the table
    const tagXRSGIS* GetGISAt(int index) const;
    /// Replaces the class table. With `isColorTable` its colours are those of pixel values.
    void SetGISTable(std::vector<tagXRSGIS> classes, int isColorTable);
    int HasColorTable() const { return m_hasColorTable; }
    /// 256 words, red in the lowest byte, alpha on top, for the pixel values 0..255; values without
    /// a class are transparent black. Null without a colour table. Made by SetGISTable; a change
    /// through GetGISAt shows after UpdateColorTable.
    const std::uint32_t* GetColorTable() const;
    void UpdateColorTable();

protected:
    /// How one level is laid out.
    struct tagLevel
    {
        int width = 0;
        int height = 0;
        int tileWidth = 0;
        int tileHeight = 0;
        int isVirtual = 0;
    };
    /// The sizes of all levels of a raster of this size: level 0 and its halves.
    static std::vector<tagLevel> MakeLevels(int width, int height);
    /// Sets data type, sizes and levels; the tile size of level 0 becomes the band's.
    void SetLevels(int dataType, std::vector<tagLevel> levels);

    /// A derived class that is writable overrides this and IsWritable.
    int WriteTile(int level, int tx, int ty, const tagXTilePiece& piece, XString& message) override;
    /// A bounded part of the pixels for statistics: the coarsest level of at least a million pixels,
    /// whole. @return 1 when it is every pixel
    virtual int GatherSample(std::vector<std::shared_ptr<const XTile>>& tiles,
                             const std::atomic<int>* abort) const;

    tagXBandStatistics CalcBandStatistics(const tagXBandStatistics* known,
                                          const std::atomic<int>* abort) const override;

    void NoteDamage(const XString& message) const; ///< any thread; see GetDamage

    std::uint64_t GetOwnerID() const { return m_ownerID; }
    int GatherLevel(int level, std::vector<std::shared_ptr<const XTile>>& tiles,
                    const std::atomic<int>* abort) const;
    int ChooseSampleLevel() const;
    /// Drops tiles and statistics after the pixels changed; those of the bands that are derived from
    /// this one too. A tile that another thread decodes meanwhile is not kept.
    void DropPixels();
    /// The same for the pixels x0..x1, y0..y1 alone.
    void DropWindow(int x0, int x1, int y0, int y1);
    /// Drops the cached tiles of the levels from `first` on, which come from somewhere else from now
    /// on, here and in the bands that are derived from this one; pixels of level 0 and statistics
    /// stay. A tile decoded meanwhile is not kept.
    void DropLevels(int first);
    /// The band that this one follows got another null value.
    virtual void OnSourceNullValue(double value);
    /// Makes this band follow the changes of `source`, from which its pixels are derived: at each
    /// level what lies within `radius` pixels of a change is dropped. Both have the same size.
    /// Either may go first.
    void Follow(XDMBand* source, int radius);

private:
    struct tagFailure
    {
        XString message;
        std::int64_t timeMs;
    };
    int IsInside(int level, int tx, int ty) const;
    int FillLevelWindow(unsigned char* out, int level, int x0, int y0, int width, int height,
                        const std::atomic<int>* abort, XString* message) const;
    int IsWindowInside(int x0, int x1, int y0, int y1) const;
    int WritePlain(const unsigned char* samples, std::size_t rowBytes, int x0, int y0, int width,
                   int height, bool skip, double number);
    int WriteBlock(const tagXArr2* block, int x0, int y0, int width, int height, bool skip,
                   double number);
    int BuildLevelTile(int level, int tx, int ty, const int (&window)[4], double nullValue,
                       XString& message);
    void StopFollowing();
    template <class F>
    void ForEachFollower(F&& take);
    void RemoveTiles(int x0, int x1, int y0, int y1);
    std::uint64_t GetPixelGeneration() const;
    int FindFailure(const tagXTileKey& key, XString& message) const;
    void NoteFailure(const tagXTileKey& key, const XString& message) const;

    std::uint64_t m_ownerID;
    std::vector<tagLevel> m_levels;
    XRSFile* m_file = nullptr;
    int m_bandType = kXBandUnknown;
    int m_colorInterpretation = 0;
    int m_normalizedWorld = 0;
    int m_useSensorModel = 0;
    XSpatialReference m_sr;
    XBandGeometry m_geometry;
    std::vector<tagXRSGIS> m_classes;
    int m_hasColorTable = 0;
    std::array<std::uint32_t, 256> m_colorTable{};

    struct tagFollower;
    std::mutex m_writeMutex;                // one writer at a time
    mutable std::shared_mutex m_pixelMutex; // the next two
    std::uint64_t m_pixelGeneration = 0;    // a tile decoded before a change is not cached after it
    std::vector<std::weak_ptr<tagFollower>> m_followers;
    std::shared_ptr<tagFollower> m_following;
    int m_reach = 0; // pixels of a level that a change of the source reaches

    mutable std::mutex m_failureMutex;
    mutable std::unordered_map<tagXTileKey, tagFailure> m_failures;
    mutable XString m_damage; // under the same
};
