{ Stands in for the Windows unit, which Debian does not have: what examples/pascal uses of it, to translate it. }
unit Windows;

interface

type
  HWND = NativeUInt;
  HMENU = NativeUInt;
  UINT = LongWord;
  DWORD = LongWord;
  WPARAM = NativeUInt;
  LPARAM = NativeInt;
  LRESULT = NativeInt;
  BOOL = LongBool;

  TCopyDataStruct = record
    dwData: NativeUInt;
    cbData: DWORD;
    lpData: Pointer;
  end;
  PCopyDataStruct = ^TCopyDataStruct;

  TFNWndProc = function(Window: HWND; Message: UINT; W: WPARAM; L: LPARAM): LRESULT; stdcall;

  TWndClassW = record
    style: UINT;
    lpfnWndProc: TFNWndProc;
    cbClsExtra: Integer;
    cbWndExtra: Integer;
    hInstance: NativeUInt;
    hIcon: NativeUInt;
    hCursor: NativeUInt;
    hbrBackground: NativeUInt;
    lpszMenuName: PWideChar;
    lpszClassName: PWideChar;
  end;

  TMsg = record
    hwnd: HWND;
    message: UINT;
    wParam: WPARAM;
    lParam: LPARAM;
    time: DWORD;
    x, y: LongInt;
  end;

const
  WS_OVERLAPPEDWINDOW = $00CF0000;
  SW_SHOWNORMAL = 1;

var
  HInstance: NativeUInt;

function RegisterClassW(const WindowClass: TWndClassW): Word; stdcall; external;
function CreateWindowExW(ExStyle: DWORD; ClassName, WindowName: PWideChar; Style: DWORD; X, Y, Width, Height: Integer;
  Parent: HWND; Menu: HMENU; Instance: NativeUInt; Param: Pointer): HWND; stdcall; external;
function ShowWindow(Window: HWND; Command: Integer): BOOL; stdcall; external;
function SetWindowTextW(Window: HWND; Text: PWideChar): BOOL; stdcall; external;
function GetClassNameW(Window: HWND; Name: PWideChar; Capacity: Integer): Integer; stdcall; external;
function PostMessageW(Window: HWND; Message: UINT; W: WPARAM; L: LPARAM): BOOL; stdcall; external;
procedure PostQuitMessage(ExitCode: Integer); stdcall; external;
function DefWindowProcW(Window: HWND; Message: UINT; W: WPARAM; L: LPARAM): LRESULT; stdcall; external;
function GetMessageW(var Message: TMsg; Window: HWND; First, Last: UINT): BOOL; stdcall; external;
function DispatchMessageW(const Message: TMsg): LRESULT; stdcall; external;

implementation

end.
