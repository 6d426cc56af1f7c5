#include "tests/scripted/ScriptedPlatform.h"

#include "res/resource.h"

#include <algorithm>
#include <sstream>

namespace
{

ScriptedPlatform* current = nullptr;

HWND HandleFromNumber(UINT_PTR number)
{
    return reinterpret_cast<HWND>(number);
}

/// What the platform does with a message that a window leaves to it. Nothing that matters here.
LRESULT CALLBACK DefaultProcedure(HWND, UINT message, WPARAM, LPARAM)
{
    ScriptedPlatform::Current()->defaulted.push_back(message);
    return 0;
}

void Print(std::ostream& stream, const char* title, const Calls& calls, std::size_t firstDifference)
{
    stream << title << ":\n";
    for (std::size_t i = 0; i < calls.size(); ++i)
    {
        stream << (i == firstDifference ? "  > " : "    ") << calls[i] << '\n';
    }
    if (firstDifference == calls.size())
    {
        stream << "  > (end)\n";
    }
}

} // namespace

Calls operator+(Calls first, const Calls& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

ScriptedPlatform::ScriptedPlatform()
{
    current = this;
}

ScriptedPlatform::~ScriptedPlatform()
{
    EXPECT_TRUE(m_blocks.empty()) << m_blocks.size() << " heap blocks are left";
    current = nullptr;
}

ScriptedPlatform* ScriptedPlatform::Current()
{
    return current;
}

HWND ScriptedPlatform::AddWindow(const ScriptedWindow& window)
{
    const HWND handle = HandleFromNumber(0x10000 + 0x10 * m_zOrder.size());
    m_windows[handle] = window;
    m_zOrder.push_back(handle);
    return handle;
}

HWND ScriptedPlatform::DialogHandle(UINT idTemplate)
{
    return HandleFromNumber(0x20000 + idTemplate);
}

void ScriptedPlatform::Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    m_queue.push_back({window, message, wParam, lParam, 0, {}});
}

LRESULT ScriptedPlatform::Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return Window(window).procedure(window, message, wParam, lParam);
}

testing::AssertionResult ScriptedPlatform::Made(const Calls& expected) const
{
    if (m_calls == expected)
    {
        return testing::AssertionSuccess();
    }
    const auto difference = std::ranges::mismatch(expected, m_calls).in1 - expected.begin();
    std::ostringstream lists;
    Print(lists, "expected calls", expected, static_cast<std::size_t>(difference));
    Print(lists, "calls made", m_calls, static_cast<std::size_t>(difference));
    return testing::AssertionFailure() << lists.str();
}

std::string ScriptedPlatform::NameOf(HWND window) const
{
    const auto entry = m_windows.find(window);
    return window == nullptr          ? "NULL"
           : entry == m_windows.end() ? "unknown window"
                                      : entry->second.name;
}

std::string ScriptedPlatform::NameOf(const void* store) const
{
    const auto entry = m_blocks.find(store);
    return store == nullptr          ? "no store"
           : entry == m_blocks.end() ? "inline store"
                                     : "block " + std::to_string(entry->second);
}

HWND ScriptedPlatform::MakeDialog(UINT idTemplate)
{
    const HWND handle = DialogHandle(idTemplate);
    ScriptedWindow& dialog = m_windows[handle];
    dialog.name = idTemplate == IDD_QUILLET_DIALOG ? "dialog" : "box";
    dialog.procedure = &DefaultProcedure;
    m_zOrder.insert(m_zOrder.begin(), handle);
    return handle;
}

void ScriptedPlatform::DestroyWindow(HWND window)
{
    Send(window, WM_DESTROY);
    Send(window, WM_NCDESTROY);
    std::erase(m_zOrder, window);
    m_windows.erase(window);
}

std::optional<MSG> ScriptedPlatform::NextMessage()
{
    if (!m_queue.empty())
    {
        const MSG message = m_queue.front();
        m_queue.pop_front();
        return message;
    }
    if (m_quit)
    {
        m_quit = false;
        return MSG{nullptr, WM_QUIT, 0, 0, 0, {}};
    }
    return std::nullopt;
}

std::string Quoted(const wchar_t* text)
{
    if (text == nullptr)
    {
        return "NULL";
    }
    return testing::PrintToString(std::wstring(text)).substr(1);
}
