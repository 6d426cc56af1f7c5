#pragma once

#include "MessageMap.h"

/// Standard command: help. Handled by the application object.
inline constexpr UINT ID_HELP = 0xE146;

/// An object that commands can be sent to: the base of windows and of the application object.
class CCmdTarget
{
public:
    CCmdTarget(const CCmdTarget&) = delete;
    CCmdTarget& operator=(const CCmdTarget&) = delete;
    virtual ~CCmdTarget() = default;

    /// Gives a command to the first handler that the object's message map names for it, derived
    /// classes first. FALSE when there is none.
    virtual BOOL OnCmdMsg(UINT id);

protected:
    CCmdTarget() = default;

    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;

    /// The map entry for a message, and for WM_COMMAND a command; null when there is none.
    const AFX_MSGMAP_ENTRY* FindEntry(UINT message, UINT commandId) const;
};
