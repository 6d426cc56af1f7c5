#pragma once

/// What a process ends with that has loaded planted_library.dll, under whatever name.
inline constexpr int kLoadedPlantedLibrary = 9800;

/// A name that no library of the system has: only a planted one can answer to it.
inline constexpr const wchar_t* kLibraryToLoad = L"quillet_planted.dll";
