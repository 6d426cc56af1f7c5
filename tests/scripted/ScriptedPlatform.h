#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

using Calls = std::vector<std::string>;

/// One sequence out of several.
Calls operator+(Calls first, const Calls& second);

/// What the scripted desktop knows of a window.
struct ScriptedWindow
{
    /// How the record calls it.
    std::string name{};
    DWORD thread = 0;
    LONG style = WS_VISIBLE;
    bool minimised = false;
    std::wstring text{};
    std::wstring windowClass{};
    /// It dies while it is being looked at: queries for text and class write nothing.
    bool dying = false;
    /// Null for windows of other processes.
    WNDPROC procedure = nullptr;
    HWND owner = nullptr;
};

/// The outcome of one conversion by the platform.
struct ScriptedConversion
{
    int result;
    DWORD error;
};

/// Stands in for the platform while it lives, one at a time: the imports that the product calls
/// lead here (see Imports.cpp). It holds a small desktop that a test lays out beforehand, answers
/// from it, and records in order the calls that make up the product's behaviour. What only the
/// framework needs to make its windows work is answered, and not recorded.
class ScriptedPlatform
{
public:
    ScriptedPlatform();
    /// Fails the test when an allocated block has not been freed.
    ~ScriptedPlatform();
    ScriptedPlatform(const ScriptedPlatform&) = delete;
    ScriptedPlatform& operator=(const ScriptedPlatform&) = delete;

    /// The living one, or null.
    static ScriptedPlatform* Current();

    // --- the desktop's state, for tests to set ---

    std::wstring commandLine = L"quillet.exe";
    /// What FindWindowW finds, whatever it is asked for.
    HWND found = nullptr;
    HWND foreground = nullptr;
    /// So many times AttachThreadInput refuses first.
    int attachRefusals = 0;
    BOOL notificationResult = TRUE;
    LRESULT copyDataResult = 1;
    /// What the host does while the product waits for WM_COPYDATA to be handled.
    std::function<void(const COPYDATASTRUCT&)> duringCopyData = [](const COPYDATASTRUCT&) {};
    bool dialogsCanBeMade = true;
    bool hasSystemMenu = true;
    /// The window whose menu is open.
    HWND menuOwner = nullptr;
    /// The window that its user is moving.
    HWND moving = nullptr;
    /// String 101 of the string table.
    std::wstring aboutText = L"About";
    SIZE clientSize{0, 0};
    SIZE iconSize{32, 32};
    /// Taken in order; without one, the real conversion is made.
    std::deque<ScriptedConversion> conversions;
    /// Whether the conversion of two bytes to a unit writes anything.
    bool bytePairsConvert = true;
    /// So many allocations succeed.
    int memoryFailsAfter = INT_MAX;
    /// When set, every text seems to be so long.
    std::optional<std::size_t> textLength;

    /// Adds a window below all others.
    HWND AddWindow(const ScriptedWindow& window);
    /// The handle that the next dialog made from a template will have.
    static HWND DialogHandle(UINT idTemplate);
    ScriptedWindow& Window(HWND window) { return m_windows.at(window); }
    bool IsWindow(HWND window) const { return m_windows.contains(window); }
    void Post(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    /// A message sent by another program: handled at once, not recorded.
    LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

    static HICON Icon() { return reinterpret_cast<HICON>(0x1C0); }

    // --- what was seen ---

    /// Whether exactly these calls were made, in this order; the failure shows both lists.
    testing::AssertionResult Made(const Calls& expected) const;
    void ForgetCalls() { m_calls.clear(); }
    /// Text of the last message box.
    std::wstring messageBoxText;
    /// The window whose screen was asked for last.
    HWND onScreenOf = nullptr;
    /// What the last dialog that was made said: whether the platform is to set the focus.
    INT_PTR answerToInitDialog = -1;
    /// Messages that got a window's default processing.
    std::vector<UINT> defaulted;

    // --- for the fakes ---

    void Record(const std::string& call) { m_calls.push_back(call); }
    std::string NameOf(HWND window) const;
    /// "block n" for a living heap block, "no store" for null, else "inline store".
    std::string NameOf(const void* store) const;
    void AddBlock(const void* block) { m_blocks[block] = ++m_blockCount; }
    /// Whether it was one.
    bool RemoveBlock(const void* block) { return m_blocks.erase(block) != 0; }
    HWND MakeDialog(UINT idTemplate);
    void DestroyWindow(HWND window);
    void Quit() { m_quit = true; }
    /// The next posted message, WM_QUIT after the last one if somebody quits; nothing when a real
    /// program would wait for ever.
    std::optional<MSG> NextMessage();
    const std::vector<HWND>& ZOrder() const { return m_zOrder; }

private:
    Calls m_calls;
    std::map<HWND, ScriptedWindow> m_windows;
    std::vector<HWND> m_zOrder;
    std::deque<MSG> m_queue;
    bool m_quit = false;
    std::map<const void*, int> m_blocks;
    int m_blockCount = 0;
};

/// UTF-8 in double quotes, or NULL.
std::string Quoted(const wchar_t* text);
