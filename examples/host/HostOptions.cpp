#include "examples/host/HostOptions.h"

#include <windows.h>
#include <shellapi.h>

#include <cwchar>
#include <memory>
#include <optional>
#include <string_view>

const wchar_t kHostUsage[] = L"example_host [Optionen]\n\n"
                             L"--title=TEXT\tFenstertext (Vorgabe: Beispiel-Host - Vorgang 4711)\n"
                             L"--answer=N\tantwortet mit WM_USER + N (Vorgabe: 2)\n"
                             L"--delay=MS\twartet vor der Antwort so viele Millisekunden\n"
                             L"--manual\t\tantwortet erst, wenn »Antworten« gedrückt wird\n"
                             L"--refuse\t\tlehnt WM_COPYDATA ab\n"
                             L"--encoding=NAME\tliest Texte als utf-16 (Vorgabe), utf-8 oder ansi\n"
                             L"--base64url\tzeigt, was Texte als base64url tragen\n"
                             L"--log=DATEI\tschreibt das Protokoll auch in diese Datei (UTF-8)\n";

namespace
{

constexpr int kHighestAnswer = 4096;

// The value of an argument of the form "--name=value"; nothing when it is another one.
std::optional<std::wstring> ValueOf(std::wstring_view argument, std::wstring_view name)
{
    if (!argument.starts_with(name))
    {
        return std::nullopt;
    }
    return std::wstring(argument.substr(name.size()));
}

std::optional<TextEncoding> EncodingNamed(const std::wstring& name)
{
    if (name == L"utf-16")
    {
        return TextEncoding::Utf16;
    }
    if (name == L"utf-8")
    {
        return TextEncoding::Utf8;
    }
    if (name == L"ansi")
    {
        return TextEncoding::Ansi;
    }
    return std::nullopt;
}

// A decimal number from 0 to `highest`; nothing when the text is anything else.
std::optional<int> NumberUpTo(int highest, const std::wstring& text)
{
    wchar_t* end = nullptr;
    const long number = std::wcstol(text.c_str(), &end, 10);
    if (text.empty() || *end != L'\0' || number < 0 || number > highest)
    {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

// Takes one argument into the options; false when it is not understood.
bool Apply(std::wstring_view argument, HostOptions& options)
{
    if (argument == L"--manual")
    {
        options.answersByButton = true;
        return true;
    }
    if (argument == L"--refuse")
    {
        options.refusesCopyData = true;
        return true;
    }
    if (argument == L"--base64url")
    {
        options.decodesBase64Url = true;
        return true;
    }
    if (auto title = ValueOf(argument, L"--title="))
    {
        options.title = *title;
        return true;
    }
    if (auto path = ValueOf(argument, L"--log="))
    {
        options.logFile = *path;
        return true;
    }
    if (auto text = ValueOf(argument, L"--answer="))
    {
        const auto answer = NumberUpTo(kHighestAnswer, *text);
        options.answer = answer.value_or(options.answer);
        return answer.has_value();
    }
    if (auto text = ValueOf(argument, L"--delay="))
    {
        const auto delay = NumberUpTo(USER_TIMER_MAXIMUM, *text);
        options.delayMilliseconds = static_cast<unsigned>(delay.value_or(0));
        return delay.has_value();
    }
    if (auto name = ValueOf(argument, L"--encoding="))
    {
        const auto encoding = EncodingNamed(*name);
        options.encoding = encoding.value_or(options.encoding);
        return encoding.has_value();
    }
    return false;
}

} // namespace

HostOptions ReadHostOptions()
{
    HostOptions options;
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> arguments(
        CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
    for (int index = 1; arguments && index < count; ++index)
    {
        if (!Apply(arguments.get()[index], options))
        {
            options.showsHelp = true;
        }
    }
    return options;
}
