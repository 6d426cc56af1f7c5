@echo off
rem Schickt eine Benachrichtigung, ohne Dialog und ohne auf eine Antwort zu warten.
rem Aufruf: notify.cmd
rem Sends a notification, without a dialog and without waiting for an answer.
setlocal
if not defined QUILLET set "QUILLET=%ProgramFiles%\Quillet\quillet.exe"

start "" /wait "%QUILLET%" -nodlg -kla=QuilletBeispielHost -msg=5 -wparam=4711 -lparam=-1
set "CODE=%ERRORLEVEL%"

rem Ohne Dialog endet eine abgeschickte Benachrichtigung immer mit -1: kein Fehler.
rem Without a dialog, a notification that was sent always ends with -1: no error.
if %CODE% EQU -1 (
    echo Abgeschickt.
    exit /b 0
)
echo Nicht abgeschickt, Exitcode %CODE%.
exit /b 1
