#pragma once

#include "foundation/base/XColor.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XvcBase.h"
#include "host/XLayerStack.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class XDMCompManager;
class XObList;
class XvcObj;
struct tagXHitFlag;
struct tagXVector3;
struct tagXVectorRead;

/// A layer of an open vector file.
struct tagXVectorLayer
{
    XvcLayer* layer = nullptr; ///< the base's
    int origin = 0;            ///< its place in the file
    tagXColor color = 0;       ///< of all its objects; 0 for several
};

/// One open vector file and how it is shown.
struct tagXVectorFile
{
    std::unique_ptr<XvcBase> base;
    std::vector<tagXVectorLayer> layers; ///< the front one first
    XSpatialReference reference;         ///< the file's own; empty when it tells none
    bool isPlaced = false;               ///< in the view's reference; else at its own numbers
    QStringList notes;                   ///< what could not be taken over
    QString path;
    QString name;          ///< file name, with a number when the file is open twice
    bool isEdited = false; ///< holds what the user would lose
};

/// A file (layer -1) or one of its layers; both count from the front.
struct tagXVectorPlace
{
    int file = -1;
    int layer = -1;

    friend bool operator==(const tagXVectorPlace&, const tagXVectorPlace&) = default;
};

/// The open vector files, the front one first. They lie over all rasters.
///
/// Owns the bases and keeps them in a view's list of external ones, in the order in which they are
/// drawn. The first file with a coordinate system in an otherwise empty view gives the view its own.
/// Observers as in XLayerStack: called after each change, and once before objects are destroyed.
/// The list and the manager outlive the stack. User interface thread.
class XVectorStack
{
public:
    XVectorStack(XObList* shown, XDMCompManager* manager);
    ~XVectorStack(); ///< closes all

    void AddObserver(std::function<void(LayerChange)> observer);

    int GetCount() const { return static_cast<int>(m_files.size()); }
    const tagXVectorFile* GetAt(int file) const;              ///< null out of range
    const tagXVectorLayer* GetLayerAt(tagXVectorPlace) const; ///< null for a file
    bool IsPlace(tagXVectorPlace place) const;
    /// Whether a file stands in the view's reference, which must then be kept.
    bool HasPlaced() const;
    /// What a file has to be read for: the view's reference, empty while anything may give it one.
    XSpatialReference GetWorld() const;
    int GetNextColor() const { return m_nextColor; } ///< of the palette

    /// Adds what was read as the front file.
    void Add(const QString& path, tagXVectorRead& read);
    /// Puts what was read anew in the place of a file: names, colours, order of files, what is hidden
    /// and what is locked stay.
    void Replace(int file, tagXVectorRead& read);
    /// Takes out a file or one layer of it; a file goes with its last layer.
    void Close(tagXVectorPlace place);
    void CloseAll();

    /// Puts a file, or a layer within its file, at another place; `to` counts as before the move.
    void Move(tagXVectorPlace from, int to);
    /// An empty name is refused with false.
    bool Rename(tagXVectorPlace place, const QString& name);
    QString GetName(tagXVectorPlace place) const;
    void SetVisible(tagXVectorPlace place, bool isVisible);
    bool IsVisible(tagXVectorPlace place) const; ///< by its own mark, whatever its file's is
    /// A locked layer is neither picked nor changed; a file is locked when all its layers are.
    void SetLocked(tagXVectorPlace place, bool isLocked);
    bool IsLocked(tagXVectorPlace place) const;
    void SetColor(tagXVectorPlace place, tagXColor color);
    tagXColor GetColor(tagXVectorPlace place) const; ///< 0 when there are several
    void SetSaved(int file); ///< what the user did to it is kept elsewhere now

    /// The box of a file or layer in the view, minimum x, minimum y, maximum x, maximum y.
    bool GetExtent(tagXVectorPlace place, double (&box)[4]) const;

    /// The frontmost object within the tolerances, in layers that are shown and not locked.
    XvcObj* HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                    tagXHitFlag& hit) const;
    /// The layer that an object lies in.
    tagXVectorPlace Find(const XvcObj& object) const;

private:
    tagXVectorFile* Get(int file);
    void Tell(LayerChange change);
    void Fill(tagXVectorFile& file, tagXVectorRead& read);
    void ListBases();
    void GiveReference(tagXVectorFile& file, bool isAsRead);
    QString MakeName(const QString& path) const;
    /// The layer of a place, or all of its file.
    std::vector<tagXVectorLayer*> GetLayers(tagXVectorPlace place);
    std::vector<const tagXVectorLayer*> GetLayers(tagXVectorPlace place) const;

    XObList* m_shown;
    XDMCompManager* m_manager;
    std::vector<std::function<void(LayerChange)>> m_observers;
    std::vector<std::unique_ptr<tagXVectorFile>> m_files;
    int m_nextColor = 0;
};
