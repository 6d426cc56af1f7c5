# Zeigt Klasse und Text aller sichtbaren Fenster, das oberste zuerst.
# Aufruf: powershell -ExecutionPolicy Bypass -File list-windows.ps1
# Shows class and text of all visible windows, the topmost one first.
# Hier nicht erprobt. Not tried here.
Add-Type -TypeDefinition @'
using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;
using System.Text;

public class TopWindow
{
    public string Klasse { get; set; }       // fuer die genaue Suche; for the exact search
    public string Musterklasse { get; set; } // fuer die Suche mit -seaglob; with it
    public string Text { get; set; }

    delegate bool Visitor(IntPtr window, IntPtr context);

    [DllImport("user32.dll")]
    static extern bool EnumWindows(Visitor visitor, IntPtr context);
    [DllImport("user32.dll")]
    static extern bool IsWindowVisible(IntPtr window);
    [DllImport("user32.dll", CharSet = CharSet.Unicode)]
    static extern int GetClassNameW(IntPtr window, StringBuilder name, int capacity);
    [DllImport("user32.dll", CharSet = CharSet.Unicode)]
    static extern uint RealGetWindowClassW(IntPtr window, StringBuilder name, uint capacity);
    [DllImport("user32.dll", CharSet = CharSet.Unicode)]
    static extern int GetWindowTextW(IntPtr window, StringBuilder text, int capacity);

    public static List<TopWindow> All()
    {
        var windows = new List<TopWindow>();
        EnumWindows((window, context) =>
        {
            if (IsWindowVisible(window))
            {
                var name = new StringBuilder(256);
                var type = new StringBuilder(256);
                var text = new StringBuilder(4096);
                GetClassNameW(window, name, name.Capacity);
                RealGetWindowClassW(window, type, (uint)type.Capacity);
                GetWindowTextW(window, text, text.Capacity);
                windows.Add(new TopWindow
                {
                    Klasse = name.ToString(), Musterklasse = type.ToString(), Text = text.ToString()
                });
            }
            return true;
        }, IntPtr.Zero);
        return windows;
    }
}
'@
[TopWindow]::All() | Format-List Klasse, Musterklasse, Text
