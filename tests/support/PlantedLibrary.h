#pragma once

/// What a process ends with that has loaded planted_library.dll, under whatever name.
inline constexpr int kLoadedPlantedLibrary = 9800;
