// A host in C#: takes texts (UTF-16), shows them in its title, and answers with 2.
//   %WINDIR%\Microsoft.NET\Framework64\v4.0.30319\csc.exe /target:winexe SmallHost.cs
//   quillet.exe -seaglob -nam="C#-Host - *" -copydata="Vorgang 4711"
// Translated here, but not run: that needs .NET on Windows.
using System;
using System.Runtime.InteropServices;
using System.Text;
using System.Text.RegularExpressions;
using System.Windows.Forms;

class SmallHost : Form
{
    const int WM_COPYDATA = 0x004A;
    const int WM_USER = 0x0400;
    const int Answer = 2;
    const int LongestText = 2000; // bytes; more is refused, since any web page may be the sender

    [StructLayout(LayoutKind.Sequential)]
    struct COPYDATASTRUCT
    {
        public IntPtr dwData;
        public int cbData;
        public IntPtr lpData;
    }

    [DllImport("user32.dll")]
    static extern bool PostMessage(IntPtr window, int message, IntPtr wParam, IntPtr lParam);

    [DllImport("user32.dll", CharSet = CharSet.Unicode)]
    static extern int GetClassNameW(IntPtr window, StringBuilder name, int capacity);

    protected override void WndProc(ref Message m)
    {
        if (m.Msg != WM_COPYDATA)
        {
            base.WndProc(ref m);
            return;
        }
        var data = (COPYDATASTRUCT)Marshal.PtrToStructure(m.LParam, typeof(COPYDATASTRUCT));
        m.Result = IntPtr.Zero; // refused, unless it turns out to be a text
        if (data.cbData % 2 == 0 && data.cbData >= 0 && data.cbData <= LongestText)
        {
            // Exactly cbData bytes, copied: there is no terminator, and they are gone on return.
            string text = data.cbData == 0 ? "" : Marshal.PtrToStringUni(data.lpData, data.cbData / 2);
            IntPtr dialog = m.WParam; // zero when nobody waits
            BeginInvoke((Action)(() => Take(text, dialog)));
            m.Result = (IntPtr)1;
        }
    }

    // Runs after the handler has returned, when the caller is no longer blocked.
    void Take(string text, IntPtr dialog)
    {
        // Control characters, ends of lines and marks that turn the direction of writing are not shown.
        Text = "C#-Host - " + Regex.Replace(text, @"[\p{Cc}\p{Cf}\p{Zl}\p{Zp}]", ".");
        var name = new StringBuilder(16);
        GetClassNameW(dialog, name, name.Capacity);
        if (name.ToString() == "#32770") // a dialog; the handle may be any number
        {
            PostMessage(dialog, WM_USER + Answer, IntPtr.Zero, IntPtr.Zero);
        }
    }

    [STAThread]
    static void Main()
    {
        // Windows Forms makes up the class name: callers find this host by its text with -seaglob.
        Application.Run(new SmallHost { Text = "C#-Host - bereit" });
    }
}
