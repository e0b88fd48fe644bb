#pragma once

#include "foundation/base/XColor.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XvcBase.h"
#include "host/XLayerStack.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

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
    bool isEdited = false;     ///< its objects are not as they were saved or opened
};

/// One open vector file and how it is shown.
struct tagXVectorFile
{
    std::unique_ptr<XvcBase> base;
    std::vector<tagXVectorLayer> layers; ///< the front one first
    XSpatialReference reference;         ///< the file's own; empty when it tells none
    bool isPlaced = false;               ///< in the view's reference; else at its own numbers
    bool canBeDegrees = false;           ///< it tells none, and its numbers can be degrees
    bool isGuessed = false;              ///< for which it was taken and carried over
    bool isNamed = false;                ///< its name was chosen, and is kept when it is saved
    QStringList notes;                   ///< what could not be taken over
    QString path;                        ///< empty for a drawing that was never saved
    QString name; ///< as chosen, else that of the file, with a number when it is open twice
    bool isEdited = false; ///< names, order or layers are not as they were saved or opened
    bool isContentEdited =
        false;                  ///< and reading the file again would lose that: it was put together
                                ///< anew, or restored from a copy of unsaved edits
    unsigned long revision = 0; ///< another one after each change that saving would keep
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
    /// Called with a base or a layer before it is destroyed.
    void SetLeaving(std::function<void(XObList&)> leaving) { m_leaving = std::move(leaving); }

    int GetCount() const { return static_cast<int>(m_files.size()); }
    const tagXVectorFile* GetAt(int file) const;              ///< null out of range
    const tagXVectorLayer* GetLayerAt(tagXVectorPlace) const; ///< null for a file
    bool IsPlace(tagXVectorPlace place) const;
    /// Whether a file stands in the view's reference, which must then be kept.
    bool HasPlaced() const;
    /// What a file has to be read for: the view's reference, empty while anything may give it one.
    XSpatialReference GetWorld() const;
    /// The one that the view has now, whoever gave it.
    const XSpatialReference& GetViewReference() const { return *m_manager->GetSR(); }
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

    /// Adds a base whose coordinates are those of the view as the front file, not saved yet.
    void AddDrawing(std::unique_ptr<XvcBase> base, const QString& name);
    /// The front file was read from a copy of what was not saved: it stands for `path`.
    void SetRestored(const QString& path, const QString& name);
    /// Whether the user would lose something with the file or layer.
    bool IsEdited(tagXVectorPlace place) const;
    bool HasEdited() const;
    /// Tells whether the objects of a layer are other ones than those that were saved, or that names,
    /// order or something else of a file was changed.
    void SetEdited(tagXVectorPlace place, bool isEdited);
    void NoteChange(int file); ///< something is other than at the last autosave
    /// What the user did to it is kept in a file of the library's own now, which it stands for.
    void SetSaved(int file, const QString& path);

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
    QString MakeName(const QString& name, const tagXVectorFile* self = nullptr) const;
    void ListLayers(tagXVectorFile& file, const std::vector<tagXColor>& colors);
    /// The layer of a place, or all of its file.
    std::vector<tagXVectorLayer*> GetLayers(tagXVectorPlace place);
    std::vector<const tagXVectorLayer*> GetLayers(tagXVectorPlace place) const;

    XObList* m_shown;
    XDMCompManager* m_manager;
    std::vector<std::function<void(LayerChange)>> m_observers;
    std::function<void(XObList&)> m_leaving;
    std::vector<std::unique_ptr<tagXVectorFile>> m_files;
    int m_nextColor = 0;
};
