#include "CCmdTarget.h"

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap()
{
    return nullptr; // the root of all classes handles nothing itself
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const
{
    return nullptr;
}

const AFX_MSGMAP_ENTRY* CCmdTarget::FindEntry(UINT message, UINT commandId) const
{
    for (const AFX_MSGMAP* map = GetMessageMap(); map != nullptr; map = map->base)
    {
        for (const AFX_MSGMAP_ENTRY* entry = map->entries; entry->invoke != nullptr; ++entry)
        {
            if (entry->message == message && entry->commandId == commandId)
            {
                return entry;
            }
        }
    }
    return nullptr;
}

BOOL CCmdTarget::OnCmdMsg(UINT id)
{
    const AFX_MSGMAP_ENTRY* entry = FindEntry(WM_COMMAND, id);
    if (entry == nullptr)
    {
        return FALSE;
    }
    entry->invoke(*this, 0, 0);
    return TRUE;
}
