' Sendet aus Excel, Word oder Access einen Text und gibt die Antwort zurueck.
' Sends a text from Excel, Word or Access and returns the answer.
' Hier nicht erprobt. Not tried here.
Option Explicit

Public Function SendText(ByVal Text As String) As Long
    Const Program As String = "C:\Program Files\Quillet\quillet.exe"
    Const Quote As String = """"
    ' Ein fremder Text kann Schalter enthalten, auch in den Anfuehrungszeichen. Leer ginge eine Benachrichtigung hinaus.
    ' A text of somebody else's can hold switches, inside the quotes, too. An empty one would send a notification.
    If Text = "" Or Text Like "*""*" Or Text Like "* -[A-Za-z?]*" Then
        Err.Raise 5, , "Nicht gesendet: der Text ist leer oder enthaelt, was als Schalter gelten koennte."
    End If
    ' Die eingebaute Funktion Shell wartet nicht; Run mit True als drittem Argument wartet.
    ' The built-in function Shell does not wait; Run with True as its third argument does.
    SendText = CreateObject("WScript.Shell").Run( _
        Quote & Program & Quote & " -kla=QuilletBeispielHost -copydata=" & Quote & Text & Quote, _
        1, True)
End Function
