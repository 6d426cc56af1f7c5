@echo off
rem Sendet einen Text; laeuft der Host nicht, wird er gestartet und der Aufruf wiederholt, bis er gefunden ist.
rem Aufruf: start-and-send.cmd "Vorgang 4711"
rem Sends a text; starts the host if it does not run, and repeats the call until it is found.
setlocal
if not defined QUILLET set "QUILLET=%ProgramFiles%\Quillet\quillet.exe"
if not defined HOST set "HOST=%ProgramFiles%\Quillet\examples\host\example_host.exe"
if not defined ATTEMPTS set ATTEMPTS=30
set STARTED=

rem Ein fremder Text kann Schalter enthalten, auch in den Anfuehrungszeichen. Abgelehnt werden darum " und ein
rem Strich, vor dem ein Leerzeichen steht und dahinter keines. Leer ginge eine Benachrichtigung hinaus.
rem A text of somebody else's can hold switches, inside the quotes, too. Refused are therefore " and a
rem dash that has a blank before it and none behind. An empty one would send a notification.
set "CHECK=%~1"
set "CHECK=%CHECK: - = %"
set "CHECK=%CHECK:"= -x%"
if not "%CHECK: -=%"=="%CHECK%" (
    echo Nicht gesendet: der Text ist leer oder enthaelt, was als Schalter gelten koennte.
    exit /b -101
)

:send
"%QUILLET%" -kla=QuilletBeispielHost -copydata="%~1"
set "CODE=%ERRORLEVEL%"
if not %CODE% EQU -2 exit /b %CODE%

if not defined STARTED start "" "%HOST%"
set STARTED=1
set /a ATTEMPTS-=1
if %ATTEMPTS% LEQ 0 (
    echo Der Host ist nicht erschienen.
    exit /b -2
)
rem Eine Sekunde Pause; timeout geht nicht, wenn die Eingabe umgeleitet ist.
rem A second's pause; timeout does not work when the input is redirected.
ping -n 2 127.0.0.1 >nul
goto send
