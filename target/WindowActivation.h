#pragma once

#include <windows.h>

/// Brings the target window to the foreground and restores it when it is minimised. Does what the
/// platform allows and reports nothing: the request is delivered either way. A hidden target, and
/// one that is already in the foreground, are left alone.
void ActivateTarget(HWND target);
