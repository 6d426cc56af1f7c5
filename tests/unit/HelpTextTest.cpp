#include "app/HelpText.h"

#include "tests/support/LongTexts.h"

#include <gtest/gtest.h>

namespace
{

constexpr const wchar_t* kParts[] = {
    L"\n\n",
    L"  -?\t\tHilfe\n",
    L"  -nodlg\t\tDialog nicht anzeigen und nur Message senden\n",
    L"  -msg=...\tOffset der WM_USER-Message\n",
    L"  -copydata=\"...\"\tSende einen String mit WM_COPYDATA\n\t\tanstatt mit WM_USER-Message\n",
    L"  -copydataencoding=\"...\"\tFormat des String in WM_COPYDATA\n\t\tANSI/UTF-8/UNICODE(Def)\n",
    L"  -lparam=...\tWert f\u00FCr den LParameter der Message \n",
    L"  -wparam=...\tWert f\u00FCr den WParameter der Message \n",
    L"  -kla=\"...\"\tString f\u00FCr den Klassennamen\n",
    L"  -nam=\"...\"\tString f\u00FCr den Fenstertext\n",
    L"  -activatewindow\tActiviert das Zielfenster\n",
    L"  -seaglob\tSucht nach den Globstyleregeln\n\t\tbei -kla=\"...\" und -nam=\"...\"\n\n",
    L"  Returnwerte:\n",
    L"  \t>=0\tOffset zur WM_USER\n",
    L"  \t-1\tAbbruch\n",
    L"  \t-2\tFenster nicht gefunden\n",
    L"  \t-3\tFehler beim Senden der Message\n\n\n",
};
static_assert(std::size(kParts) == 17);

TEST(HelpText, IsTheCommandLineAndSeventeenParts)
{
    const std::wstring commandLine = L"\"C:\\\u00C4 b\\Quillet.exe\"  -?  -Kla=X";
    const std::wstring help = BuildHelpText(commandLine);

    ASSERT_TRUE(help.starts_with(commandLine));
    std::size_t position = commandLine.size();
    for (const wchar_t* part : kParts)
    {
        EXPECT_EQ(help.substr(position, std::wcslen(part)), part);
        position += std::wcslen(part);
    }
    EXPECT_EQ(help.size(), position);
}

TEST(HelpText, KeepsTheLongestCommandLineWhole)
{
    const std::wstring commandLine(kLongestCommandLine, L'x');
    EXPECT_TRUE(BuildHelpText(commandLine).starts_with(commandLine + kParts[0] + kParts[1]));
}

// It is for handlers of a URL scheme, not for people.
TEST(HelpText, DoesNotNameTheUrlSwitch)
{
    EXPECT_EQ(BuildHelpText(L"").find(L"-url"), std::wstring::npos);
}

} // namespace
