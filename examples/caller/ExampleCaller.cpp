// An example of a caller: starts the program with a command line that arrives exactly as given,
// waits for it, and prints its exit code in full. The program is the one that the environment
// variable QUILLET names, else the one beside this caller, else the one two folders above, where
// the packages have it.
//
//     example_caller SECONDS COMMAND-LINE [TEXT]
//     example_caller 30 "quillet.exe -kla=QuilletBeispielHost -msg=5"
//     example_caller 30 "quillet.exe -kla=QuilletBeispielHost" "Vorgang 4711"
//
// The command line is one argument and begins with the program's name. It is not assembled from
// several arguments: quoting them anew would put a quote before a dash, and then the switch is not
// found. A text of foreign origin is given apart: it could hold switches, and is refused then.
// Ends with 0 when there is an exit code, and with 1 when there is none (text refused, program not
// started, or ended after SECONDS).

#include <windows.h>

#include <cwchar>
#include <filesystem>
#include <regex>
#include <string>

namespace
{

constexpr DWORD kMillisecondsPerSecond = 1000;

// No answer of a host and no code of the tool: whoever looks at the ended process sees that it came
// to no result. The usual 0 or 1 would read as an answer.
constexpr UINT kEndedByCaller = static_cast<UINT>(-100);

std::filesystem::path ProgramPath()
{
    wchar_t text[MAX_PATH] = L"";
    if (GetEnvironmentVariableW(L"QUILLET", text, MAX_PATH) != 0)
    {
        return text;
    }
    GetModuleFileNameW(nullptr, text, MAX_PATH);
    const std::filesystem::path folder = std::filesystem::path(text).parent_path();
    const std::filesystem::path beside = folder / L"quillet.exe";
    return std::filesystem::exists(beside) ? beside
                                           : folder.parent_path().parent_path() / L"quillet.exe";
}

// Switches are found anywhere in the command line, in quotes as well: a blank and a dash before a
// letter or a question mark could be one, and a quote would end the text. An empty text would have
// a notification sent in its place.
bool CouldHoldASwitch(const std::wstring& text)
{
    return text.empty() || std::regex_search(text, std::wregex(L"\"| -[A-Za-z?]"));
}

int WaitForExitCode(HANDLE process, DWORD seconds)
{
    if (WaitForSingleObject(process, seconds * kMillisecondsPerSecond) != WAIT_OBJECT_0)
    {
        TerminateProcess(process, kEndedByCaller);
        std::wprintf(L"keiner (nach %lu Sekunden beendet)\n", seconds);
        return 1;
    }
    DWORD code = 0;
    GetExitCodeProcess(process, &code);
    // Codes below zero are the tool's own; seen as an unsigned number, -2 is 4294967294.
    std::wprintf(L"%ld\n", static_cast<long>(code));
    return 0;
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count != 3 && count != 4)
    {
        std::wprintf(L"example_caller SECONDS COMMAND-LINE [TEXT]\n");
        return 1;
    }
    const DWORD seconds = std::wcstoul(arguments[1], nullptr, 10);
    std::wstring commandLine = arguments[2];
    if (count == 4)
    {
        const std::wstring text = arguments[3];
        if (CouldHoldASwitch(text))
        {
            std::wprintf(L"keiner (nicht gesendet: der Text ist leer oder enthaelt, was als "
                         L"Schalter gelten koennte)\n");
            return 1;
        }
        commandLine += L" -copydata=\"" + text + L'"';
    }

    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(ProgramPath().c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0,
                        nullptr, nullptr, &startup, &process))
    {
        std::wprintf(L"keiner (nicht gestartet: Fehler %lu)\n", GetLastError());
        return 1;
    }
    CloseHandle(process.hThread);
    const int result = WaitForExitCode(process.hProcess, seconds);
    CloseHandle(process.hProcess);
    return result;
}
