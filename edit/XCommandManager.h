#pragma once

#include "edit/XLayerRef.h"
#include "edit/XPixelWarehouse.h"
#include "foundation/base/XObList.h"
#include "foundation/base/XPtrArray.h"

#include <memory>
#include <vector>

class XCommandEntries;
class XLayerIndexes;
class XvcBitmap;
class XvcLayer;
class XvcObj;
class XvcRaster;
struct tagCommandSet;

/// Undo and redo of vector edits, the clipboard, and the order of objects within their layer.
///
/// A command is a set of clones with their layer and index. Undo and redo put fresh clones in the
/// place of the live objects, so no address of an object holds across them: that is why they hand
/// out the selection anew. The stacks have no bound; a host empties them.
///
///     manager.StartModify();
///     for each object: manager.RegisterObjBeforeModify(object), change it,
///                      manager.RegisterObjAfterModify(object);
///     manager.EndModify();                // or CancelModify()
///
/// Destroying: pictures and raster patches are counted in two warehouses, since clones share their
/// pixels; wherever this class destroys an object it goes through them. A raster patch without a
/// record, while other patches have one, stays alive until the manager ends. Ownership: sets and
/// clipboard own their clones; layers are lent, and ForgetLayer is called for one that goes before
/// the commands that name it. Selections are lists that the caller owns, of objects that their
/// layers own. Threads: the user interface thread. The view repaints after each operation.
class XAPI XCommandManager
{
public:
    XCommandManager();
    virtual ~XCommandManager();
    XCommandManager(const XCommandManager&) = delete;
    XCommandManager& operator=(const XCommandManager&) = delete;

    // one modification at a time
    void StartModify(); ///< one that is open already never reaches a stack
    /// @return 0 for null, for an object that lies in no layer, and without an open modification
    int RegisterObjBeforeModify(XvcObj* object);
    int RegisterObjAfterModify(XvcObj* object);
    /// The states before and after of many objects, at the cost of one each.
    /// @param before  clones (CloneObject) of the objects as they were, in the same order; they
    ///                pass to the manager. An object whose clone is null is left out
    /// @return how many were entered
    int RegisterModified(const std::vector<XvcObj*>& objects, const std::vector<XvcObj*>& before);
    void EndModify(); ///< becomes a step of undo, whatever it holds
    void CancelModify();
    int IsModifying() const { return m_current != nullptr; }

    /// A new step; the redo stack is emptied. The set passes to the manager.
    void PushUndoStack(tagCommandSet* set);
    /// A step that inserted `object`, the last of `layer`.
    tagCommandSet* PushCommandSetInsert(XvcLayer* layer, XvcObj* object);

    /// A step that changed one object, made beside a modification that may be open.
    /// @param before  a clone (CloneObject) of the object as it was; it passes to the manager
    /// @return null for an object in no layer, or without `before`
    tagCommandSet* PushCommandSetModify(XvcObj* object, XvcObj* before);
    /// Lets the newest step, when it inserted this object and nothing else, hold it as it is now.
    /// @return 0 when it did not
    int RenewCommandSetInsert(XvcObj* object);

    /// The objects that came back, newest entry at the head, become the selection. A text box that
    /// is taken away comes back with what was typed into it meanwhile, for typing is no step; one that
    /// was changed otherwise, or put elsewhere in the order, keeps it.
    void Undo(XObList* selection);
    void Redo(XObList* selection);

    XPtrArray* GetUndoStack() { return &m_undoStack; } ///< of tagCommandSet*, the newest first
    XPtrArray* GetRedoStack() { return &m_redoStack; }
    /// Null for every index that the stack has: reports carry this value and hosts know it.
    tagCommandSet* GetUndoCommandAt(int index) const;
    tagCommandSet* GetRedoCommandAt(int index) const;
    void DeleteLastCommand(); ///< the newest step is forgotten; live objects stay as they are
    void ClearUndoStack();
    void ClearRedoStack();
    void ClearUndoRedoStack(); ///< pictures' warehouse and clipboard too, not the rasters'

    std::vector<tagXLayerRef> GetLayers() const; ///< that steps name, each once
    /// Drops what all steps hold of a layer that goes or has gone; the layer is not read. Steps
    /// that held nothing else go too, those of other layers stay good.
    /// @param number  of the layer; 0: of all that lay at this address
    void ForgetLayer(XvcLayer* layer, std::uint64_t number = 0);

    // objects
    /// A copy with its range calculated, in no layer. Null for a class that is not editable.
    XvcObj* CloneObject(const XvcObj* object);
    static int CanClone(const XvcObj* object);
    void DestroyObject(XvcObj* object); ///< through the warehouses; null does nothing
    void AddBitmapToWarehouse(const XvcBitmap* bitmap);
    void AddRasterToWarehouse(const XvcRaster* raster);
    void DeleteBitmapAtWarehouse(XvcBitmap* bitmap); ///< destroys the bitmap
    void DeleteRasterAtWarehouse(XvcRaster* raster); ///< destroys it, save for the case told above
    void ClearBitmapWarehouse() { m_bitmaps.Clear(); }
    void ClearRasterWarehouse() { m_rasters.Clear(); }
    const XPixelWarehouse& GetBitmapWarehouse() const { return m_bitmaps; }
    const XPixelWarehouse& GetRasterWarehouse() const { return m_rasters; }
    /// Raster patches that were destroyed without a record and so are alive still.
    int GetKeptRasterCount() const { return static_cast<int>(m_keptRasters.size()); }

    // clipboard, within the program; clones of classes that are not editable are null
    void Copy(const XObList* list); ///< adds to what is there
    void Cut(XObList* list);        ///< Copy, then Delete
    void Delete(XObList* list);     ///< one step; the list, the selection as a rule, ends empty
    /// Moves what lies in the clipboard by (dx, -dy), so that each paste lands one step further,
    /// and adds a copy to the layer and the selection.
    void Paste(double dx, double dy, XObList* selection, XvcLayer* layer);
    void ClearClipboard();
    XObList* GetClipboard() { return &m_clipboard; }

    // z-order; a step each. The first two stop at the first object that cannot move further: then
    // nothing is pushed, and what moved before it stays moved
    void MoveToFront(XObList* list);
    void MoveToRear(XObList* list);
    void MoveToFrontmost(XObList* list);
    void MoveToRearmost(XObList* list);

    // places in a list
    static int GetIndexOfList(const XObList* list, const XObject* object); ///< -1: not there
    static __POSITION* GetPositionOfList(const XObList* list, const XObject* object);
    static XObject* GetAtList(const XObList* list, int index);
    static __POSITION* GetPositionFromListIndex(const XObList* list, int index);
    static void InsertAtList(XvcLayer* list, int index,
                             XvcObj* object);                  ///< beyond the count: nothing
    void SetAtList(XvcLayer* list, int index, XvcObj* object); ///< destroys what stood there
    /// The list that holds the object, looked for in bases, layers and plain lists below `list`.
    static XObList* GetParentList(XObList* list, const XObject* object);

private:
    void AddEntry(XCommandEntries& entries, int index, XvcObj* object, XvcLayer* layer);
    int Register(XvcObj* object);
    void DestroyEntries(const XCommandEntries& entries);
    void DestroySet(tagCommandSet* set);
    void ClearStack(XPtrArray& stack);
    void ForgetLayerIn(XPtrArray& stack, const tagXLayerRef& list);
    void Push(const XCommandEntries& entries);
    XvcObj* Bring(const tagCommandSet& set, int entry, XLayerIndexes& indexes);
    void Take(const tagCommandSet& set, int entry, XLayerIndexes& indexes);
    void KeepTyping(tagCommandSet& set, int entry, XLayerIndexes& indexes);
    void KeepTypingBeside(const tagCommandSet& set, int from, int to, XLayerIndexes& indexes);
    void Exchange(const tagCommandSet& set, int entry, XLayerIndexes& indexes, XObList& selection);
    void Reorder(const tagCommandSet& set, int from, int to, XLayerIndexes& indexes,
                 XObList& selection);
    void MoveByOne(XObList* list, bool towardsFront);
    void MoveToEnd(XObList* list, bool towardsFront);

    XPtrArray m_redoStack; // of tagCommandSet*, index 0 is the top
    XPtrArray m_undoStack;
    XPixelWarehouse m_bitmaps;
    XPixelWarehouse m_rasters;
    XObList m_clipboard;
    std::unique_ptr<XCommandEntries> m_current;                // the open modification
    std::vector<std::unique_ptr<XCommandEntries>> m_forgotten; // opened and never closed
    std::vector<std::unique_ptr<XvcRaster>> m_keptRasters;     // destroyed without a record
};
