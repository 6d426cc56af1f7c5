' A host in VB.NET: takes texts (UTF-16), shows them in its title, and answers with 2. Not tried here.
'   %WINDIR%\Microsoft.NET\Framework64\v4.0.30319\vbc.exe /target:winexe /r:System.Windows.Forms.dll SmallHost.vb
'   quillet.exe -seaglob -nam="VB-Host - *" -copydata="Vorgang 4711"
Option Strict On
Imports System
Imports System.Runtime.InteropServices
Imports System.Text
Imports System.Text.RegularExpressions
Imports System.Windows.Forms

Class SmallHost
    Inherits Form

    Private Const WM_COPYDATA As Integer = &H4A
    Private Const WM_USER As Integer = &H400
    Private Const Answer As Integer = 2
    Private Const LongestText As Integer = 2000 ' bytes; more is refused, since any web page may be the sender

    <StructLayout(LayoutKind.Sequential)>
    Private Structure COPYDATASTRUCT
        Public dwData As IntPtr
        Public cbData As Integer
        Public lpData As IntPtr
    End Structure

    <DllImport("user32.dll")>
    Private Shared Function PostMessage(window As IntPtr, message As Integer, wParam As IntPtr, lParam As IntPtr) As Boolean
    End Function

    <DllImport("user32.dll", CharSet:=CharSet.Unicode)>
    Private Shared Function GetClassNameW(window As IntPtr, name As StringBuilder, capacity As Integer) As Integer
    End Function

    Protected Overrides Sub WndProc(ByRef m As Message)
        If m.Msg <> WM_COPYDATA Then
            MyBase.WndProc(m)
            Return
        End If
        Dim data = DirectCast(Marshal.PtrToStructure(m.LParam, GetType(COPYDATASTRUCT)), COPYDATASTRUCT)
        m.Result = IntPtr.Zero ' refused: the caller sees -3
        If data.cbData Mod 2 <> 0 OrElse data.cbData < 0 OrElse data.cbData > LongestText Then Return
        ' Exactly cbData bytes, copied: there is no terminator, and they are gone on return.
        Dim received = If(data.cbData = 0, "", Marshal.PtrToStringUni(data.lpData, data.cbData \ 2))
        ' Control characters, ends of lines and marks that turn the direction of writing are not shown.
        Text = "VB-Host - " & Regex.Replace(received, "[\p{Cc}\p{Cf}\p{Zl}\p{Zp}]", ".")
        ' The dialog that waits, if it is one: the handle may be any number. Post to it, never send.
        Dim name As New StringBuilder(16)
        GetClassNameW(m.WParam, name, name.Capacity)
        If name.ToString() = "#32770" Then PostMessage(m.WParam, WM_USER + Answer, IntPtr.Zero, IntPtr.Zero)
        m.Result = CType(1, IntPtr)
    End Sub

    <STAThread>
    Shared Sub Main()
        Application.Run(New SmallHost With {.Text = "VB-Host - bereit"})
    End Sub
End Class
