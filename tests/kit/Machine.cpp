#include "tests/kit/Machine.h"

#include "tests/support/MarkOfTheWeb.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/RunsUnderWine.h"
#include "tests/support/Utf8.h"

#include <shlobj.h>

#include <array>
#include <cstdlib>
#include <sstream>

namespace
{

/// From the registry, since functions answer what the caller's manifest allows.
template <typename Value>
Value Registered(const wchar_t* name)
{
    Value value{};
    DWORD bytes = sizeof(value);
    ::RegGetValueW(HKEY_LOCAL_MACHINE, LR"(SOFTWARE\Microsoft\Windows NT\CurrentVersion)", name,
                   RRF_RT_REG_SZ | RRF_RT_REG_DWORD, nullptr, &value, &bytes);
    return value;
}

std::string RegisteredText(const wchar_t* name)
{
    return Utf8(Registered<std::array<wchar_t, 128>>(name).data());
}

std::string Version()
{
    std::string name = RegisteredText(L"ProductName");
    const std::string build = RegisteredText(L"CurrentBuildNumber");
    // Which calls itself Windows 10 there.
    constexpr int kFirstOfWindows11 = 22'000;
    if (std::atoi(build.c_str()) >= kFirstOfWindows11 && name.starts_with("Windows 10"))
    {
        name.replace(0, 10, "Windows 11");
    }
    return name + " " + RegisteredText(L"DisplayVersion") + ", build " + build + "." +
           std::to_string(Registered<DWORD>(L"UBR")) + (RunsUnderWine() ? ", by Wine" : "");
}

/// In percent, as a program sees it that knows of it, such as the one under test.
int Scaling()
{
    ::SetProcessDPIAware();
    const HDC screen = ::GetDC(nullptr);
    const int dpi = ::GetDeviceCaps(screen, LOGPIXELSX);
    ::ReleaseDC(nullptr, screen);
    return dpi * 100 / USER_DEFAULT_SCREEN_DPI;
}

} // namespace

std::string DescribeMachine()
{
    std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> locale{};
    ::GetUserDefaultLocaleName(locale.data(), static_cast<int>(locale.size()));
    std::ostringstream facts;
    facts << "Windows: " << Version() << "\nMark of the Web: "
          << (HasMarkOfTheWeb(BuiltProgram(L"quillet.exe")) ? "on quillet.exe" : "none")
          << "\nCode pages: ANSI " << ::GetACP() << ", OEM " << ::GetOEMCP() << ", console "
          << ::GetConsoleOutputCP() << "\nScreen: " << Scaling() << " %, "
          << ::GetSystemMetrics(SM_CXSCREEN) << " x " << ::GetSystemMetrics(SM_CYSCREEN)
          << ", screens: " << ::GetSystemMetrics(SM_CMONITORS)
          << (::GetSystemMetrics(SM_REMOTESESSION) != 0 ? ", remote session" : "")
          << "\nLanguage: " << Utf8(locale.data()) << ", texts of the platform "
          << ::GetUserDefaultUILanguage()
          << "\nAs administrator: " << (::IsUserAnAdmin() ? "yes" : "no") << '\n';
    return facts.str();
}
