{ A host in Delphi or Free Pascal: takes texts (UTF-16), shows them in its title, and answers with 2.
    fpc -Twin64 -Mdelphiunicode -WG SmallHost.pas      dcc64 SmallHost.pas
    quillet.exe -kla=PascalHost -copydata="Vorgang 4711"
  Translated here against a stand-in for its Windows units, but not run. }
program SmallHost;

uses
  Windows, Messages;

const
  Answer = 2;
  LongestText = 2000; { bytes; more is refused, since any web page may be the sender }

{ False when the message carries no text. Copied: there is no terminator, and it is gone on return. }
function TextOf(const Data: TCopyDataStruct; out Text: UnicodeString): Boolean;
begin
  Result := (Data.cbData mod SizeOf(WideChar) = 0) and (Data.cbData <= LongestText);
  if Result then
    SetString(Text, PWideChar(Data.lpData), Integer(Data.cbData) div SizeOf(WideChar));
end;

{ Makes control characters, ends of lines and marks that turn the direction of writing visible. }
function Printable(const Text: UnicodeString): UnicodeString;
var
  I: Integer;
begin
  Result := Text;
  for I := 1 to Length(Result) do
    case Ord(Result[I]) of
      0..$1F, $7F..$9F, $61C, $200E..$200F, $2028..$202E, $2066..$2069: Result[I] := '.';
    end;
end;

{ The handle may be any number: see that it is a dialog. }
function IsDialog(Window: HWND): Boolean;
var
  Name: array[0..15] of WideChar;
begin
  Name[0] := #0;
  GetClassNameW(Window, Name, Length(Name));
  Result := UnicodeString(PWideChar(@Name)) = '#32770';
end;

function WindowProc(Window: HWND; Message: UINT; WParam: WPARAM; LParam: LPARAM): LRESULT; stdcall;
var
  Text: UnicodeString;
begin
  case Message of
    WM_COPYDATA:
      begin
        Result := 0; { refused: the caller sees -3 }
        if TextOf(PCopyDataStruct(LParam)^, Text) then
        begin
          SetWindowTextW(Window, PWideChar('Pascal-Host - ' + Printable(Text)));
          if IsDialog(HWND(WParam)) then { the dialog that waits; post to it, never send }
            PostMessageW(HWND(WParam), WM_USER + Answer, 0, 0);
          Result := 1;
        end;
      end;
    WM_DESTROY:
      begin
        PostQuitMessage(0);
        Result := 0;
      end;
  else
    Result := DefWindowProcW(Window, Message, WParam, LParam);
  end;
end;

var
  HostClass: TWndClassW;
  Window: HWND;
  Message: TMsg;
begin
  FillChar(HostClass, SizeOf(HostClass), 0);
  HostClass.lpfnWndProc := @WindowProc;
  HostClass.hInstance := HInstance;
  HostClass.lpszClassName := 'PascalHost';
  RegisterClassW(HostClass);
  Window := CreateWindowExW(0, 'PascalHost', 'Pascal-Host - bereit', WS_OVERLAPPEDWINDOW, 100, 100, 480, 200, 0, 0,
    HInstance, nil);
  ShowWindow(Window, SW_SHOWNORMAL);
  while GetMessageW(Message, 0, 0, 0) do
    DispatchMessageW(Message);
end.
