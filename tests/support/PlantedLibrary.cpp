// A library that nobody is meant to load: it ends the process that does, with a code to know it by.
#include "tests/support/PlantedLibrary.h"

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH)
    {
        ::TerminateProcess(::GetCurrentProcess(), kLoadedPlantedLibrary);
    }
    return TRUE;
}
