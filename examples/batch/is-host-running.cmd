@echo off
rem Fragt, ob der Host laeuft, ohne bei ihm etwas auszuloesen.
rem Aufruf: is-host-running.cmd
rem Asks whether the host runs, without troubling it.
setlocal
if not defined QUILLET set "QUILLET=%ProgramFiles%\Quillet\quillet.exe"

rem WM_USER ist 1024; mit -1024 ergibt sich die Nachricht 0 (WM_NULL), die jedes Fenster uebergeht.
rem WM_USER is 1024; with -1024 it is the message 0 (WM_NULL), which every window ignores.
"%QUILLET%" -nodlg -kla=QuilletBeispielHost -msg=-1024
set "CODE=%ERRORLEVEL%"

rem Ohne Dialog heisst -1: abgeschickt, das Fenster ist also da.
rem Without a dialog, -1 means sent: so the window is there.
if %CODE% EQU -1 (
    echo Der Host laeuft.
    exit /b 0
)
if %CODE% EQU -2 (
    echo Der Host laeuft nicht.
    exit /b 1
)
echo Unklar, Exitcode %CODE%.
exit /b 2
