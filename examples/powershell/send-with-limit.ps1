# Sendet einen Text und wartet hoechstens so viele Sekunden auf die Antwort.
# Aufruf: powershell -ExecutionPolicy Bypass -File send-with-limit.ps1 "Vorgang 4711" 30
# Hier nicht erprobt.
param([Parameter(Mandatory)] [string] $Text, [int] $Seconds = 30)

# Ein fremder Text kann Schalter enthalten, auch in den Anfuehrungszeichen (siehe das Handbuch, Anfuehrungszeichen).
if ($Text -match '"| -[a-z?]') {
    'Nicht gesendet: der Text enthaelt, was als Schalter gelten koennte.'
    exit -101
}

$timedOut = -100 # kein Code von Quillet und keine Antwort eines Hosts
$program = if ($env:QUILLET) { $env:QUILLET } else { "$env:ProgramFiles\Quillet\quillet.exe" }
$arguments = '-kla=QuilletBeispielHost -copydata="' + $Text + '"'
$process = Start-Process -FilePath $program -ArgumentList $arguments -PassThru

if (-not $process.WaitForExit($Seconds * 1000)) {
    $process.Kill() # hinterlaesst -1, was sonst "abgebrochen" heisst: darum ein eigener Code
    'Keine Antwort.'
    exit $timedOut
}
exit $process.ExitCode
