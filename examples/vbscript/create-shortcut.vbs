' Legt eine Verknuepfung an, die bei jedem Doppelklick einen Text sendet.
' Aufruf: cscript //nologo create-shortcut.vbs "C:\Users\Public\Desktop\Vorgang 4711.lnk"
' Makes a shortcut that sends a text at each double click.
Option Explicit

Dim shell, program, shortcut
Set shell = CreateObject("WScript.Shell")
program = shell.Environment("PROCESS")("QUILLET")
If program = "" Then program = shell.ExpandEnvironmentStrings("%ProgramFiles%\Quillet\quillet.exe")

Set shortcut = shell.CreateShortcut(WScript.Arguments(0))
shortcut.TargetPath = program
' Nur die Argumente; das Leerzeichen vor dem ersten setzt Windows.
' The arguments only; Windows puts the blank before the first one.
shortcut.Arguments = "-kla=QuilletBeispielHost -copydata=""Vorgang 4711"""
shortcut.Save
