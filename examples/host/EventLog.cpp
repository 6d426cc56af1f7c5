#include "examples/host/EventLog.h"

namespace
{

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

void AppendTo(HWND edit, const std::wstring& line)
{
    const int end = GetWindowTextLengthW(edit);
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(end), end);
    SendMessageW(edit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>((line + L"\r\n").c_str()));
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
    const std::string bytes = ToUtf8(line + L"\n");
    WriteTo(GetStdHandle(STD_OUTPUT_HANDLE), bytes);
    WriteTo(m_file, bytes);
    if (m_edit != nullptr)
    {
        AppendTo(m_edit, line);
    }
}
