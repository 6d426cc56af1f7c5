@echo off
rem Runs all tests of Quillet on this machine: by a double click, or from a command line.
rem   /quiet            asks for no key
rem   /suite:NAME       only this one of unit, scripted, program, system, recipes, load; may be repeated
rem   /patience:SECONDS after which a silent test counts as hanging
rem Ends with 0 only when nothing failed; the report is selftest-report.txt.
"%~dp0selftest.exe" %*
exit /b %ERRORLEVEL%
