@echo off
rem Legt eine Aufgabe an, die dem Host werktags um 7 Uhr eine Benachrichtigung schickt.
rem Hier nicht erprobt.
setlocal
if not defined QUILLET set "QUILLET=%ProgramFiles%\Quillet\quillet.exe"

rem /it: nur bei angemeldetem Benutzer, denn auf anderen Desktops ist kein Host zu finden.
schtasks /create /tn "Quillet Morgenmeldung" /sc weekly /d MON,TUE,WED,THU,FRI /st 07:00 /it ^
    /tr "\"%QUILLET%\" -nodlg -kla=QuilletBeispielHost -msg=5"
