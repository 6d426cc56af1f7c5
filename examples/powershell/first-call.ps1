# Der erste Aufruf: sendet dem Beispiel-Host einen Text und zeigt, was er antwortet. Vorher den Host starten:
#     examples\host\example_host.exe --answer=7
# The first call: sends the example host a text and shows its answer. Start the host before, as above.
# Hier nicht erprobt. Not tried here.
Set-Location "$PSScriptRoot\..\.."
(Start-Process .\quillet.exe '-kla=QuilletBeispielHost -copydata=Vorgang-4711' -Wait -PassThru).ExitCode
