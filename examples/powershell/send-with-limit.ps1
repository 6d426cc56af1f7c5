# Sendet einen Text und wartet hoechstens so viele Sekunden auf die Antwort.
# Aufruf: powershell -ExecutionPolicy Bypass -File send-with-limit.ps1 "Vorgang 4711" 30
# Sends a text and waits for the answer at most so many seconds.
# Hier nicht erprobt. Not tried here.
param([Parameter(Mandatory)] [string] $Text, [int] $Seconds = 30)

# Ein fremder Text kann Schalter enthalten, auch in den Anfuehrungszeichen (siehe das Handbuch, Anfuehrungszeichen).
# A text of somebody else's can hold switches, inside the quotes, too.
if ($Text -match '"| -[a-z?]') {
    'Nicht gesendet: der Text enthaelt, was als Schalter gelten koennte.'
    exit -101
}

$timedOut = -100 # kein Code von Quillet und keine Antwort eines Hosts; neither a code of Quillet nor an answer
$program = if ($env:QUILLET) { $env:QUILLET } else { "$env:ProgramFiles\Quillet\quillet.exe" }
$arguments = '-kla=QuilletBeispielHost -copydata="' + $Text + '"'
$process = Start-Process -FilePath $program -ArgumentList $arguments -PassThru

if (-not $process.WaitForExit($Seconds * 1000)) {
    $process.Kill() # hinterlaesst -1, was sonst "abgebrochen" heisst: darum ein eigener Code; leaves -1, which means cancelled
    'Keine Antwort.'
    exit $timedOut
}
exit $process.ExitCode
