# Sendet einen Text und gibt die Antwort als Exitcode weiter.
# Aufruf: powershell -ExecutionPolicy Bypass -File send-text.ps1 "Vorgang 4711"
# Sends a text and passes the answer on as exit code.
# Hier nicht erprobt. Not tried here.
param([Parameter(Mandatory)] [string] $Text)

# Ein fremder Text kann Schalter enthalten, auch in den Anfuehrungszeichen (siehe das Handbuch, Anfuehrungszeichen).
# A text of somebody else's can hold switches, inside the quotes, too.
if ($Text -match '"| -[a-z?]') {
    'Nicht gesendet: der Text enthaelt, was als Schalter gelten koennte.'
    exit -101
}

$program = if ($env:QUILLET) { $env:QUILLET } else { "$env:ProgramFiles\Quillet\quillet.exe" }

# Eine einzige Zeichenkette: sie geht so, wie sie ist, auf die Befehlszeile. Wer dagegen
# & $program schreibt, dem setzt PowerShell die Anfuehrungszeichen neu oder laesst sie weg.
# A single string goes to the command line as it is. After & $program, PowerShell sets the quotes anew or
# leaves them out.
$arguments = '-kla=QuilletBeispielHost -copydata="' + $Text + '"'
$process = Start-Process -FilePath $program -ArgumentList $arguments -Wait -PassThru

switch ($process.ExitCode) {
    (-1)           { 'Abgebrochen.' }
    (-2)           { 'Der Host ist nicht gestartet.' }
    { $_ -lt -2 }  { 'Der Host hat den Text nicht angenommen.' }
    { $_ -ge 0 }   { "Der Host hat mit $_ geantwortet." }
}
exit $process.ExitCode
