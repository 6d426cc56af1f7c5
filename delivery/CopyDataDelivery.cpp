#include "delivery/CopyDataDelivery.h"

#include "app/SendRequest.h"
#include "delivery/NarrowTextBuffer.h"

#include <cstring>
#include <cwchar>
#include <optional>

namespace
{

/// The code page that an encoding name asks for; none, and so UTF-16, for every other name. There
/// is deliberately no name for UTF-16 itself, and a misspelt one is no error.
std::optional<UINT> CodePageOf(const std::wstring& encoding)
{
    constexpr struct
    {
        const wchar_t* name;
        UINT codePage;
    } kEncodings[] = {{L"ANSI", CP_ACP}, {L"UTF-8", CP_UTF8}, {L"UTF8", CP_UTF8}};

    for (const auto& [name, codePage] : kEncodings)
    {
        if (::_wcsicmp(encoding.c_str(), name) == 0)
        {
            return codePage;
        }
    }
    return std::nullopt;
}

/// `bytes` is the text without a terminator: the receiver has to go by the size.
bool Send(HWND target, const SendRequest& request, HWND waitDialog, const void* bytes,
          std::size_t size)
{
    COPYDATASTRUCT data{static_cast<ULONG_PTR>(request.wParam), static_cast<DWORD>(size),
                        const_cast<void*>(bytes)};
    return ::SendMessageW(target, WM_COPYDATA, reinterpret_cast<WPARAM>(waitDialog),
                          reinterpret_cast<LPARAM>(&data)) != 0;
}

bool SendText(HWND target, const SendRequest& request, HWND waitDialog)
{
    const std::wstring& text = request.copyData;
    const auto codePage = CodePageOf(request.copyDataEncoding);
    if (!codePage)
    {
        return Send(target, request, waitDialog, text.data(), text.size() * sizeof(wchar_t));
    }
    // Released before the run goes on to the wait.
    const NarrowTextBuffer narrow(text.c_str(), *codePage);
    return Send(target, request, waitDialog, narrow.Bytes(), std::strlen(narrow.Bytes()));
}

} // namespace

ResultCode DeliverCopyData(HWND target, const SendRequest& request, HWND waitDialog)
{
    return SendText(target, request, waitDialog) ? kResultAccepted : kResultSendFailed;
}
