#include "examples/host/EventLog.h"

#include <algorithm>

namespace
{

// Control characters, separators of lines and paragraphs, and the marks that turn the direction of
// writing.
bool IsControl(wchar_t unit)
{
    struct Range
    {
        wchar_t first;
        wchar_t last;
    };
    constexpr Range kRanges[] = {{0x0000, 0x001F}, {0x007F, 0x009F}, {0x061C, 0x061C},
                                 {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};
    return std::ranges::any_of(
        kRanges, [unit](Range range) { return unit >= range.first && unit <= range.last; });
}

// Texts from outside are shown, not obeyed: what they hold must neither break lines nor make them
// read as something else.
std::wstring Printable(std::wstring text)
{
    std::ranges::replace_if(text, IsControl, L'\u00B7');
    return text;
}

std::string ToUtf8(const std::wstring& text)
{
    const int length = static_cast<int>(text.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

void WriteTo(HANDLE file, const std::string& bytes)
{
    if (file != nullptr && file != INVALID_HANDLE_VALUE)
    {
        DWORD written = 0;
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    }
}

} // namespace

EventLog::EventLog(const std::wstring& path)
{
    if (!path.empty())
    {
        m_file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    }
}

EventLog::~EventLog()
{
    if (m_file != INVALID_HANDLE_VALUE)
    {
        CloseHandle(m_file);
    }
}

void EventLog::Write(const std::wstring& line)
{
    const std::wstring shown = Printable(line);
    const std::string bytes = ToUtf8(shown + L"\n");
    WriteTo(GetStdHandle(STD_OUTPUT_HANDLE), bytes);
    WriteTo(m_file, bytes);
    m_text += shown + L"\r\n";
    m_isNew = true;
}

void EventLog::Show()
{
    constexpr std::size_t kMostUnits = 20'000;
    if (m_edit == nullptr || !m_isNew)
    {
        return;
    }
    m_isNew = false;
    if (m_text.size() > kMostUnits)
    {
        m_text.erase(0, m_text.find(L'\n', m_text.size() - kMostUnits / 2) + 1);
    }
    SetWindowTextW(m_edit, m_text.c_str());
    SendMessageW(m_edit, EM_SETSEL, m_text.size(), static_cast<LPARAM>(m_text.size()));
    SendMessageW(m_edit, EM_SCROLLCARET, 0, 0);
}
