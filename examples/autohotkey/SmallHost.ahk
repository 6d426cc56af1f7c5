#Requires AutoHotkey v2.0
; A host in AutoHotkey: takes texts (UTF-16), shows them in its title, and answers with 2. Not tried here.
;   quillet.exe -seaglob -nam="AHK-Host - *" -copydata="Vorgang 4711"
#SingleInstance Force

LongestText := 2000 ; bytes; more is refused, since any web page may be the sender

Host := Gui(, "AHK-Host - bereit")
Host.OnEvent("Close", (*) => ExitApp())
Host.Show("w480 h160")
OnMessage(0x004A, OnCopyData)

OnCopyData(Dialog, Data, Message, Window)
{
    Size := NumGet(Data, A_PtrSize, "UInt")
    if (Mod(Size, 2) || Size > LongestText)
        return 0 ; refused: the caller sees -3
    ; Exactly as many units: there is no terminator, and the bytes are gone on return.
    Text := Size ? StrGet(NumGet(Data, 2 * A_PtrSize, "Ptr"), -(Size // 2), "UTF-16") : ""
    ; Control characters, ends of lines and marks that turn the direction of writing are not shown.
    Host.Title := "AHK-Host - " RegExReplace(Text, "[\p{Cc}\p{Cf}\p{Zl}\p{Zp}]", ".")
    ; The dialog that waits, if it is one: the handle may be any number. Post to it, never send.
    if (Dialog && WinExist("ahk_class #32770 ahk_id " Dialog))
        DllCall("PostMessage", "Ptr", Dialog, "UInt", 0x0400 + 2, "Ptr", 0, "Ptr", 0)
    return 1
}
