#pragma once

#include <windows.h>

/// What the fakes hand out and know again: the handles of the one system menu and the one device
/// context there are.
inline const HMENU kSystemMenu = reinterpret_cast<HMENU>(0x3E0);
inline const HDC kPaintContext = reinterpret_cast<HDC>(0xDC0);
