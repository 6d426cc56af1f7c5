@echo off
rem Sendet einen Text und wertet die Antwort aus.
rem Aufruf: send-text.cmd "Vorgang 4711"
rem Sends a text and looks at the answer.
setlocal
if not defined QUILLET set "QUILLET=%ProgramFiles%\Quillet\quillet.exe"

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

rem In einer Batchdatei wartet cmd auf das Programm. Interaktiv tut es das nicht:
rem dort gehoert   start "" /wait   davor.
rem In a batch file, cmd waits for the program; at the prompt it does so only with start.
"%QUILLET%" -kla=QuilletBeispielHost -copydata="%~1"
set "CODE=%ERRORLEVEL%"

rem EQU und GEQ rechnen mit Vorzeichen. "if errorlevel 1" fragt nach 1 oder mehr
rem und nimmt alles unter 0 darum als Erfolg.
rem EQU and GEQ know signs. "if errorlevel 1" asks for 1 or more, and so takes all below 0 for success.
if %CODE% EQU -1 echo Abgebrochen.
if %CODE% EQU -2 echo Der Host ist nicht gestartet.
if %CODE% LSS -2 echo Der Host hat den Text nicht angenommen.
if %CODE% GEQ 0 echo Der Host hat mit %CODE% geantwortet.
exit /b %CODE%
