#include "tests/kit/Machine.h"

#include "tests/kit/Utf8.h"
#include "tests/support/ForegroundLock.h"
#include "tests/support/MarkOfTheWeb.h"
#include "tests/support/ProgramPath.h"

#include <array>
#include <optional>
#include <vector>

namespace
{

template <typename Function>
Function* NtFunction(const char* name)
{
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), name)));
}

constexpr const wchar_t* kVersionKey = LR"(SOFTWARE\Microsoft\Windows NT\CurrentVersion)";

std::wstring RegisteredText(const wchar_t* name)
{
    std::array<wchar_t, 128> text{};
    DWORD bytes = sizeof(text) - sizeof(wchar_t);
    ::RegGetValueW(HKEY_LOCAL_MACHINE, kVersionKey, name, RRF_RT_REG_SZ, nullptr, text.data(),
                   &bytes);
    return text.data();
}

DWORD RegisteredNumber(const wchar_t* name)
{
    DWORD number = 0;
    DWORD bytes = sizeof(number);
    ::RegGetValueW(HKEY_LOCAL_MACHINE, kVersionKey, name, RRF_RT_REG_DWORD, nullptr, &number,
                   &bytes);
    return number;
}

// The platform's usual question for its version answers what the caller's manifest allows; this one
// answers the truth.
std::string Version()
{
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    if (auto* const ask = NtFunction<LONG(OSVERSIONINFOW*)>("RtlGetVersion"))
    {
        ask(&version);
    }
    std::string text =
        Utf8(RegisteredText(L"ProductName")) + " " + Utf8(RegisteredText(L"DisplayVersion")) +
        ", version " + std::to_string(version.dwMajorVersion) + "." +
        std::to_string(version.dwMinorVersion) + ", build " +
        std::to_string(version.dwBuildNumber) + "." + std::to_string(RegisteredNumber(L"UBR"));
    if (auto* const wine = NtFunction<const char * CDECL()>("wine_get_version"))
    {
        text += std::string(", by Wine ") + wine();
    }
    return text;
}

std::string CodePages()
{
    return "ANSI " + std::to_string(::GetACP()) + ", OEM " + std::to_string(::GetOEMCP()) +
           ", console " + std::to_string(::GetConsoleOutputCP());
}

std::string Language()
{
    std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
    ::GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size()));
    return Utf8(name.data()) + ", texts of the platform " +
           std::to_string(::GetUserDefaultUILanguage());
}

/// The system's scaling as a program sees it that knows of it, such as the one under test.
std::string Screen()
{
    ::SetProcessDPIAware();
    const HDC screen = ::GetDC(nullptr);
    const int dpi = ::GetDeviceCaps(screen, LOGPIXELSX);
    ::ReleaseDC(nullptr, screen);
    constexpr int kUnscaled = 96;
    return std::to_string(dpi) + " DPI (" + std::to_string(dpi * 100 / kUnscaled) + " %), " +
           std::to_string(::GetSystemMetrics(SM_CXSCREEN)) + " x " +
           std::to_string(::GetSystemMetrics(SM_CYSCREEN)) + ", " +
           "screens: " + std::to_string(::GetSystemMetrics(SM_CMONITORS)) +
           (::GetSystemMetrics(SM_REMOTESESSION) != 0 ? ", remote session" : "");
}

/// The last part of the level's identifier, as the platform's headers number it.
DWORD IntegrityOf(HANDLE token)
{
    DWORD size = 0;
    ::GetTokenInformation(token, TokenIntegrityLevel, nullptr, 0, &size);
    std::vector<BYTE> bytes(size);
    if (bytes.empty() ||
        !::GetTokenInformation(token, TokenIntegrityLevel, bytes.data(), size, &size))
    {
        return 0;
    }
    const PSID level = reinterpret_cast<const TOKEN_MANDATORY_LABEL*>(bytes.data())->Label.Sid;
    return *::GetSidSubAuthority(level, *::GetSidSubAuthorityCount(level) - DWORD{1});
}

std::string Integrity()
{
    HANDLE token = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token))
    {
        return "unknown";
    }
    const DWORD level = IntegrityOf(token);
    ::CloseHandle(token);
    const char* const name = level >= SECURITY_MANDATORY_SYSTEM_RID   ? "system"
                             : level >= SECURITY_MANDATORY_HIGH_RID   ? "high"
                             : level >= SECURITY_MANDATORY_MEDIUM_RID ? "medium"
                             : level >= SECURITY_MANDATORY_LOW_RID    ? "low"
                                                                      : "untrusted or unknown";
    return std::string(name) + " (" + std::to_string(level) + ")";
}

std::optional<ForegroundLock> foregroundLock;
UINT foundCodePage = 0;

/// Also called when the user breaks off; the platform's own handler then ends the process.
BOOL WINAPI Restore(DWORD)
{
    foregroundLock->Restore();
    ::SetConsoleOutputCP(foundCodePage);
    return FALSE;
}

} // namespace

std::vector<std::string> DescribeMachine()
{
    return {"Windows:                 " + Version(),
            "Code pages:              " + CodePages(),
            "Language:                " + Language(),
            "Scaling and screen:      " + Screen(),
            "Integrity level:         " + Integrity(),
            std::string("Mark of the Web:         ") +
                (HasMarkOfTheWeb(BuiltProgram(L"quillet.exe")) ? "on quillet.exe" : "none")};
}

TestConditions::TestConditions()
{
    foundCodePage = ::GetConsoleOutputCP();
    foregroundLock.emplace(0);
    ::SetConsoleCtrlHandler(&Restore, TRUE);
    ::SetConsoleOutputCP(::GetOEMCP());
    ::SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED | ES_DISPLAY_REQUIRED);
}

TestConditions::~TestConditions()
{
    ::SetThreadExecutionState(ES_CONTINUOUS);
    ::SetConsoleCtrlHandler(&Restore, FALSE);
    Restore(0);
    foregroundLock.reset();
}

std::string TestConditions::DescribeForeground() const
{
    const DWORD now = ForegroundLockTimeout();
    return "Foreground lock timeout: " + std::to_string(foregroundLock->Found()) + " ms, " +
           (now == 0 ? "0 while the tests run"
                     : "and it stays at " + std::to_string(now) +
                           " ms: tests that need the foreground are skipped");
}
