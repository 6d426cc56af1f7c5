@echo off
rem Legt eine Aufgabe an, die dem Host werktags um 7 Uhr eine Benachrichtigung schickt.
rem Makes a task that sends the host a notification at 7 on weekdays.
rem Hier nicht erprobt. Not tried here.
setlocal
if not defined QUILLET set "QUILLET=%ProgramFiles%\Quillet\quillet.exe"

rem /it: nur bei angemeldetem Benutzer, denn auf anderen Desktops ist kein Host zu finden.
rem /it: only while the user is logged on, since no host is found on other desktops.
schtasks /create /tn "Quillet Morgenmeldung" /sc weekly /d MON,TUE,WED,THU,FRI /st 07:00 /it ^
    /tr "\"%QUILLET%\" -nodlg -kla=QuilletBeispielHost -msg=5"
