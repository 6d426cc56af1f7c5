// Sendet einen Text und gibt die Antwort als Exitcode weiter.
// Aufruf: SendText "Vorgang 4711"
// Uebersetzen mit dem, was Windows an Bord hat:
//     %WINDIR%\Microsoft.NET\Framework64\v4.0.30319\csc.exe SendText.cs
// Hier uebersetzt, aber nicht ausgefuehrt: das braucht .NET unter Windows.
// Sends a text and passes the answer on as exit code. Compiled here, but not run: that needs .NET on Windows.
using System;
using System.Diagnostics;
using System.Text.RegularExpressions;

static class SendText
{
    static int Main(string[] args)
    {
        // Ein fremder Text kann Schalter enthalten, auch in den Anführungszeichen. Leer ginge eine Benachrichtigung hinaus.
        // A text of somebody else's can hold switches, inside the quotes, too. An empty one would send a notification.
        if (Regex.IsMatch(args[0], "^$|\"| -[A-Za-z?]"))
        {
            Console.WriteLine("Nicht gesendet: der Text ist leer oder enthält, was als Schalter gelten könnte.");
            return -101;
        }
        var start = new ProcessStartInfo
        {
            FileName = Environment.GetEnvironmentVariable("QUILLET")
                       ?? @"C:\Program Files\Quillet\quillet.exe",
            // Arguments, nicht ArgumentList: die Liste setzt die Anführungszeichen neu.
            // Arguments, not ArgumentList: the list sets the quotes anew.
            Arguments = "-kla=QuilletBeispielHost -copydata=\"" + args[0] + "\"",
            UseShellExecute = false
        };
        using (var process = Process.Start(start))
        {
            process.WaitForExit();
            return process.ExitCode; // mit Vorzeichen; unter 0 ist es keine Antwort; below 0 it is none
        }
    }
}
