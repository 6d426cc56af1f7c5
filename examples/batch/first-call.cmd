@rem Der erste Aufruf: sendet dem Beispiel-Host einen Text und zeigt, was er antwortet. Vorher den Host starten:
@rem     examples\host\example_host.exe --answer=7
@rem The first call: sends the example host a text and shows its answer. Start the host before, as above.
@cd /d "%~dp0..\.."
start "" /wait quillet.exe -kla=QuilletBeispielHost -copydata=Vorgang-4711
echo %ERRORLEVEL%
@pause
