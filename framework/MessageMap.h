// Message maps: per class a table that names the handler of each message or command, linked to the
// table of its base class. A class declares its map with DECLARE_MESSAGE_MAP and fills it between
// BEGIN_MESSAGE_MAP and END_MESSAGE_MAP.
#pragma once

#include <windows.h>

class CCmdTarget;

struct AFX_MSGMAP_ENTRY
{
    UINT message;
    /// The command's identifier for WM_COMMAND, otherwise 0.
    UINT commandId;
    /// Unpacks the message's parameters and calls the handler on `target`.
    LRESULT (*invoke)(CCmdTarget& target, WPARAM wParam, LPARAM lParam);
};

struct AFX_MSGMAP
{
    /// The base class's map; null at the root.
    const AFX_MSGMAP* base;
    /// Ends with an entry that has no `invoke`.
    const AFX_MSGMAP_ENTRY* entries;
};

#define DECLARE_MESSAGE_MAP()                                                                      \
protected:                                                                                         \
    static const AFX_MSGMAP* GetThisMessageMap();                                                  \
    const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                     \
    const AFX_MSGMAP* theClass::GetMessageMap() const                                              \
    {                                                                                              \
        return GetThisMessageMap();                                                                \
    }                                                                                              \
    const AFX_MSGMAP* theClass::GetThisMessageMap()                                                \
    {                                                                                              \
        using ThisClass [[maybe_unused]] = theClass;                                               \
        using BaseClass = baseClass;                                                               \
        static constexpr AFX_MSGMAP_ENTRY kEntries[] = {

#define END_MESSAGE_MAP()                                                                          \
    {                                                                                              \
        0, 0, nullptr                                                                              \
    }                                                                                              \
    }                                                                                              \
    ;                                                                                              \
    static const AFX_MSGMAP kMap{BaseClass::GetThisMessageMap(), kEntries};                        \
    return &kMap;                                                                                  \
    }

#define ON_COMMAND(id, memberFunction)                                                             \
    {WM_COMMAND, static_cast<UINT>(id), [](CCmdTarget& target, WPARAM, LPARAM) -> LRESULT {        \
         (static_cast<ThisClass&>(target).*(memberFunction))();                                    \
         return 0;                                                                                 \
     }},

#define ON_WM_SYSCOMMAND()                                                                         \
    {WM_SYSCOMMAND, 0, [](CCmdTarget& target, WPARAM wParam, LPARAM lParam) -> LRESULT {           \
         static_cast<ThisClass&>(target).OnSysCommand(static_cast<UINT>(wParam), lParam);          \
         return 0;                                                                                 \
     }},

#define ON_WM_PAINT()                                                                              \
    {WM_PAINT, 0, [](CCmdTarget& target, WPARAM, LPARAM) -> LRESULT {                              \
         static_cast<ThisClass&>(target).OnPaint();                                                \
         return 0;                                                                                 \
     }},

#define ON_WM_QUERYDRAGICON()                                                                      \
    {WM_QUERYDRAGICON, 0, [](CCmdTarget& target, WPARAM, LPARAM) -> LRESULT {                      \
         return reinterpret_cast<LRESULT>(static_cast<ThisClass&>(target).OnQueryDragIcon());      \
     }},
