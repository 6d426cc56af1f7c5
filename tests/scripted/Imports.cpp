// The import pointers, led to the fakes. The product calls the platform through pointers that the
// linker normally takes from the import libraries; an object that defines them comes first. The
// product is linked as it is shipped and knows nothing of it.
#include <windows.h>

#include <cstddef>

/// Declares the fake as the platform declares the original, so that another one does not link.
#define REPLACE_IMPORT(function)                                                                   \
    decltype(::function) Fake##function;                                                           \
    extern "C" {                                                                                   \
    decltype(&::function) __imp_##function = &Fake##function;                                      \
    }

REPLACE_IMPORT(AppendMenuW)
REPLACE_IMPORT(AttachThreadInput)
REPLACE_IMPORT(BeginPaint)
REPLACE_IMPORT(CallWindowProcW)
REPLACE_IMPORT(CreateDialogParamW)
REPLACE_IMPORT(DestroyWindow)
REPLACE_IMPORT(DispatchMessageW)
REPLACE_IMPORT(DrawIcon)
REPLACE_IMPORT(EnableWindow)
REPLACE_IMPORT(EndDialog)
REPLACE_IMPORT(EndPaint)
REPLACE_IMPORT(EnumWindows)
REPLACE_IMPORT(FindWindowW)
REPLACE_IMPORT(GetAncestor)
REPLACE_IMPORT(GetClientRect)
REPLACE_IMPORT(GetCommandLineW)
REPLACE_IMPORT(GetForegroundWindow)
REPLACE_IMPORT(GetGUIThreadInfo)
REPLACE_IMPORT(GetMessageW)
REPLACE_IMPORT(GetSystemMenu)
REPLACE_IMPORT(GetSystemMetrics)
REPLACE_IMPORT(GetWindow)
REPLACE_IMPORT(GetWindowLongW)
REPLACE_IMPORT(GetWindowTextW)
REPLACE_IMPORT(GetWindowThreadProcessId)
REPLACE_IMPORT(IsIconic)
REPLACE_IMPORT(IsWindowEnabled)
REPLACE_IMPORT(LoadIconW)
REPLACE_IMPORT(LoadStringW)
REPLACE_IMPORT(MessageBoxW)
REPLACE_IMPORT(MonitorFromWindow)
REPLACE_IMPORT(MultiByteToWideChar)
REPLACE_IMPORT(PostMessageW)
REPLACE_IMPORT(PostQuitMessage)
REPLACE_IMPORT(RealGetWindowClassW)
REPLACE_IMPORT(SendMessageW)
REPLACE_IMPORT(SendNotifyMessageW)
REPLACE_IMPORT(SetForegroundWindow)
REPLACE_IMPORT(SetWindowLongPtrW)
REPLACE_IMPORT(ShowWindow)
REPLACE_IMPORT(Sleep)
REPLACE_IMPORT(TranslateMessage)
REPLACE_IMPORT(WideCharToMultiByte)

void* FakeRecalloc(void* block, std::size_t count, std::size_t size);
extern "C" {
void* (*__imp__recalloc)(void*, std::size_t, std::size_t) = &FakeRecalloc;
}
