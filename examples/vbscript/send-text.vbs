' Sendet einen Text und gibt die Antwort als Exitcode weiter.
' Aufruf: cscript //nologo send-text.vbs "Vorgang 4711"
' Sends a text and passes the answer on as exit code.
Option Explicit

Const NormalWindow = 1
Const WaitForEnd = True
Const Quote = """"

Dim shell, program, code, text, switch
text = WScript.Arguments(0)

' Ein fremder Text kann Schalter enthalten, auch in den Anfuehrungszeichen. Leer ginge eine Benachrichtigung hinaus.
' A text of somebody else's can hold switches, inside the quotes, too. An empty one would send a notification.
Set switch = New RegExp
switch.Pattern = "^$|""| -[A-Za-z?]"
If switch.Test(text) Then
    WScript.Echo "Nicht gesendet: der Text ist leer oder enthaelt, was als Schalter gelten koennte."
    WScript.Quit -101
End If

Set shell = CreateObject("WScript.Shell")
program = shell.Environment("PROCESS")("QUILLET")
If program = "" Then program = shell.ExpandEnvironmentStrings("%ProgramFiles%\Quillet\quillet.exe")

' Run wartet nur, wenn das dritte Argument True ist, und gibt dann den Exitcode.
' Run waits only when its third argument is True, and then gives the exit code.
code = shell.Run(Quote & program & Quote & " -kla=QuilletBeispielHost -copydata=" & _
    Quote & text & Quote, NormalWindow, WaitForEnd)

Select Case code
    Case -1
        WScript.Echo "Abgebrochen."
    Case -2
        WScript.Echo "Der Host ist nicht gestartet."
    Case Else
        If code < 0 Then
            WScript.Echo "Der Host hat den Text nicht angenommen."
        Else
            WScript.Echo "Der Host hat mit " & code & " geantwortet."
        End If
End Select
WScript.Quit code
