#include "app/HelpText.h"

std::wstring BuildHelpText(const std::wstring& rawCommandLine)
{
    return rawCommandLine +
           L"\n\n"
           L"  -?\t\tHilfe\n"
           L"  -nodlg\t\tDialog nicht anzeigen und nur Message senden\n"
           L"  -msg=...\tOffset der WM_USER-Message\n"
           L"  -copydata=\"...\"\tSende einen String mit WM_COPYDATA\n\t\tanstatt mit "
           L"WM_USER-Message\n"
           L"  -copydataencoding=\"...\"\tFormat des String in "
           L"WM_COPYDATA\n\t\tANSI/UTF-8/UNICODE(Def)\n"
           L"  -lparam=...\tWert für den LParameter der Message \n"
           L"  -wparam=...\tWert für den WParameter der Message \n"
           L"  -kla=\"...\"\tString für den Klassennamen\n"
           L"  -nam=\"...\"\tString für den Fenstertext\n"
           L"  -activatewindow\tActiviert das Zielfenster\n"
           L"  -seaglob\tSucht nach den Globstyleregeln\n\t\tbei -kla=\"...\" und -nam=\"...\"\n\n"
           L"  Returnwerte:\n"
           L"  \t>=0\tOffset zur WM_USER\n"
           L"  \t-1\tAbbruch\n"
           L"  \t-2\tFenster nicht gefunden\n"
           L"  \t-3\tFehler beim Senden der Message\n\n\n";
}
