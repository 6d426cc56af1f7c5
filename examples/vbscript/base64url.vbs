' Verwandelt einen beliebigen Text in base64url seiner UTF-8-Bytes, fuer -copydata= und Links.
' Aufruf: cscript //nologo base64url.vbs "5 Euro". Die beiden Funktionen gehoeren so auch in ein VBA-Modul.
' Turns any text into base64url of its UTF-8 bytes, for -copydata= and links. The two functions fit into a VBA module, too.
' Hier nicht erprobt. Not tried here.
Option Explicit

Function Utf8(Text)
    Dim position, code, low
    position = 1
    Do While position <= Len(Text)
        code = AscW(Mid(Text, position, 1)) And &HFFFF&
        If code >= &HD800& And code <= &HDFFF& Then ' zwei Einheiten von UTF-16, ein Zeichen
            low = 0
            If position < Len(Text) Then low = AscW(Mid(Text, position + 1, 1)) And &HFFFF&
            If code > &HDBFF& Or low < &HDC00& Or low > &HDFFF& Then
                Err.Raise 5, "Base64Url", "Kein Text: ein halbes Zeichen an Stelle " & position & "."
            End If
            position = position + 1
            code = (code - &HD7C0&) * &H400& + (low And &H3FF&)
        End If
        If code < &H80& Then
            Utf8 = Utf8 & ChrW(code)
        ElseIf code < &H800& Then
            Utf8 = Utf8 & ChrW(&HC0& Or (code \ &H40&)) & ChrW(&H80& Or (code And &H3F&))
        ElseIf code < &H10000 Then
            Utf8 = Utf8 & ChrW(&HE0& Or (code \ &H1000&)) & _
                ChrW(&H80& Or ((code \ &H40&) And &H3F&)) & ChrW(&H80& Or (code And &H3F&))
        Else
            Utf8 = Utf8 & ChrW(&HF0& Or (code \ &H40000)) & _
                ChrW(&H80& Or ((code \ &H1000&) And &H3F&)) & _
                ChrW(&H80& Or ((code \ &H40&) And &H3F&)) & ChrW(&H80& Or (code And &H3F&))
        End If
        position = position + 1
    Loop
End Function

Function Base64Url(Text)
    Const Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_"
    Dim bytes, position, bits, pending
    bytes = Utf8(Text)
    bits = 0
    pending = 0
    For position = 1 To Len(bytes)
        bits = bits * 256 + AscW(Mid(bytes, position, 1))
        pending = pending + 8
        Do While pending >= 6
            pending = pending - 6
            Base64Url = Base64Url & Mid(Digits, bits \ 2 ^ pending + 1, 1)
            bits = bits Mod 2 ^ pending
        Loop
    Next
    If pending > 0 Then Base64Url = Base64Url & Mid(Digits, bits * 2 ^ (6 - pending) + 1, 1)
End Function

WScript.Echo Base64Url(WScript.Arguments(0))
