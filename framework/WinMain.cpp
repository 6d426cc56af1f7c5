// The program's entry point.
#include "CWinApp.h"

/// The run-time library's start-up must not expand wildcards among the arguments: nothing here
/// reads them, and a pattern in a switch would make it list folders.
extern "C" {
int _dowildcard = 0;
}

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int)
{
    return AfxWinMain();
}
