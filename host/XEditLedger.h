#pragma once

#include <map>
#include <vector>

class XCommandManager;
class XObList;
class XPtrArray;
class XVectorStack;
class XvcLayer;

/// Which layers of the open vector files are other than saved, told from the steps of undo that name
/// them: undoing all that was done since the saving takes the mark away again.
///
/// Numbers each step in the first of its reserved fields, because the address of a step that has gone
/// is soon another one's. Both parts outlive it. User interface thread.
class XEditLedger
{
public:
    XEditLedger(XCommandManager& commands, XVectorStack& vectors);

    /// Brings the marks up to date; cheap when nothing happened. To be called after every edit.
    /// @return whether there was a step, or one was undone or done again
    bool Follow();
    void SetSaved(int file);           ///< as it is now; tells the stack nothing
    void Forget(XObList& layerOrBase); ///< that goes

private:
    using Steps = std::vector<int>; // numbers, the newest first

    Steps Number(XPtrArray& stack);
    void Mark();

    XCommandManager& m_commands;
    XVectorStack& m_vectors;
    int m_next = 1;
    Steps m_undo; // as last seen
    std::map<int, std::vector<const XvcLayer*>> m_layersOf;
    std::map<const XvcLayer*, Steps> m_seen;
    std::map<const XvcLayer*, Steps> m_saved; // none: as opened, before all steps
};
