#pragma once

#include "edit/XCommandManager.h"

/// One modification: taken back unless it is committed.
///
///     XModifyScope step(commands);
///     commands.RegisterObjBeforeModify(object);
///     ...change it...
///     commands.RegisterObjAfterModify(object);
///     step.Commit();
///
/// Taken back means that nothing comes on the stack; the objects are left to the caller.
class XModifyScope
{
public:
    explicit XModifyScope(XCommandManager& commands) : m_commands(&commands)
    {
        commands.StartModify();
    }
    ~XModifyScope()
    {
        if (m_commands) m_commands->CancelModify();
    }
    XModifyScope(const XModifyScope&) = delete;
    XModifyScope& operator=(const XModifyScope&) = delete;

    void Commit()
    {
        if (m_commands) m_commands->EndModify();
        m_commands = nullptr;
    }
    void Abandon() { m_commands = nullptr; } ///< the manager has gone meanwhile

private:
    XCommandManager* m_commands;
};
