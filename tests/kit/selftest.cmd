@echo off
rem Runs all tests of Quillet on this machine: by a double click, or from a command line. LIESMICH.txt tells the switches.
rem Ends with 0 only when nothing failed; the report is selftest-report.txt.
setlocal
set quiet=
set code=3
for %%w in (%*) do if "%%~w" == "/quiet" set quiet=yes
if not exist "%~dp0selftest.exe" (
  echo selftest.exe fehlt: Das ZIP erst ganz entpacken, dann in dem entpackten Ordner selftest.cmd starten.
  goto end
)
echo Selbsttest von Quillet
echo Rund sechs Minuten lang kommen und gehen jetzt Fenster, und Tasten und Maus werden vom Test bedient.
echo Bitte so lange Tastatur und Maus ruhen lassen und den Bildschirm nicht sperren.
if not defined quiet echo Abbrechen mit Strg+C, beginnen:& pause
"%~dp0selftest.exe" %*
set code=%ERRORLEVEL%
if %code% == 2 goto end
if %code% == 0 goto report
if %code% == 1 goto report
echo selftest.exe ist nicht gestartet oder nicht bis zum Ende gelaufen: Fehler %code%
for %%c in (225 226) do if %code% == %%c echo Der Virenschutz laesst es nicht zu.
if %code% == 1260 echo Eine Richtlinie laesst es nicht zu.
if %code% == 4551 echo Smart App Control laesst es nicht zu.
goto end
:report
echo Der Bericht ist selftest-report.txt, in diesem Ordner oder in %%TEMP%%
:end
if not defined quiet pause
exit /b %code%
