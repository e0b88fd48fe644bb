#pragma once

#include "host/XBandChoice.h"
#include "host/XRasterOpener.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

class XDMCompManager;
class XDMComposite;
class XRSFile;

/// One open raster and how it is shown.
struct tagXLayer
{
    std::unique_ptr<XRSFile> file;     ///< outlives the composite
    XDMComposite* composite = nullptr; ///< the manager's
    std::unique_ptr<XBandChoice> bands;
    double miss = 0; ///< of its place in the view's reference, as the composite tells it
    QString path;
    QString name; ///< file name, with a number when the file is open twice
};

/// What changed, for those who show it.
enum class LayerChange {
    Closing,   ///< the current layer is about to go: nobody may keep its file or composite
    List,      ///< layers came, went or changed places
    Current,   ///< another layer is the current one
    Appearance ///< visibility, opacity, bands or stretch of a layer
};

/// The open rasters in the order of the composite manager: index 0 is the top one.
///
/// Owns the files; the composites stand in the manager and go with their layer. Observers are called
/// after each change, and once before a layer is destroyed; who draws or reads composites in another
/// thread must have stopped when that call returns. A change that changes nothing tells nobody.
/// The manager outlives the stack. User interface thread.
class XLayerStack
{
public:
    explicit XLayerStack(XDMCompManager* manager);
    ~XLayerStack(); ///< closes all

    void AddObserver(std::function<void(LayerChange)> observer);
    /// Asked before the first layer gives the view its coordinate system: true keeps that of before.
    void SetIsPlaced(std::function<bool()> isPlaced) { m_isPlaced = std::move(isPlaced); }

    /// Reads the files of layers in the place of plain opening.
    void SetReader(XRasterReader reader) { m_reader = std::move(reader); }

    int GetCount() const { return static_cast<int>(m_layers.size()); }
    const tagXLayer* GetAt(int index) const;     ///< null out of range
    int GetCurrent() const { return m_current; } ///< -1 when there is none
    void SetCurrent(int index);

    /// Opens a raster on top, with the bands and the stretch of a first look, and makes it current.
    /// The first layer gives the view its coordinate system, unless something else that is open has.
    /// @return false with a sentence that does not repeat the path, an empty one when the user gave up;
    ///         the stack is then unchanged
    bool Open(const QString& path, QString& message);
    void Close(int index);
    void CloseAll();

    /// Reads the file of a layer again, as it is on the disk now. Name, place, bands, stretch and all
    /// else of its look stay, as far as the file still has the bands.
    /// @return false with a sentence that does not repeat the path; the layer is then as it was
    bool Reload(int index, QString& message);
    /// An empty name is refused with false.
    bool Rename(int index, const QString& name);

    /// Puts a layer at another place; both indices as they are before the move.
    void Move(int from, int to);
    void SetVisible(int index, bool isVisible);
    bool IsVisible(int index) const;
    void SetOpacity(int index, int percent); ///< held at 0..100
    int GetOpacity(int index) const;
    /// For a change of the file behind a layer that shows: draws it again and tells observers.
    void NoteChanged(int index);
    /// Runs a change of the band choice of a layer and tells observers.
    void ChangeBands(int index, const std::function<void(XBandChoice&)>& change);

    /// The world box of a layer, minimum x, minimum y, maximum x, maximum y.
    bool GetExtent(int index, double (&box)[4]) const;

private:
    void Tell(LayerChange change);
    QString MakeName(const QString& path) const;

    XDMCompManager* m_manager;
    std::vector<std::function<void(LayerChange)>> m_observers;
    std::function<bool()> m_isPlaced;
    XRasterReader m_reader;
    std::vector<std::unique_ptr<tagXLayer>> m_layers;
    int m_current = -1;
};
