' A script host: makes the blocks of a job, calls the class late-bound, with variables and with
' literals, and writes what the blocks hold in the end.
' usage: cscript client.vbs JOB DUMP
Option Explicit
Dim host, plugin, usb, number, warning

Sub Check(what)
    If Err.Number <> 0 Then
        WScript.Echo "failed: " & what & ": " & Err.Description
        WScript.Quit 1
    End If
End Sub

Sub MustFail(what)
    If Err.Number = 0 Then
        WScript.Echo "failed: " & what & " was taken"
        WScript.Quit 1
    End If
    Err.Clear
End Sub

On Error Resume Next
Set host = CreateObject("Keld2Test.Host"): Check "the host"
host.open WScript.Arguments(0): Check "the job"
Set plugin = CreateObject("tq5keld2.ClsKELD2"): Check "the class"
number = 0: warning = 0: usb = True
plugin.bufcomkeld2 number: Check "bufcomkeld2 with a variable"
plugin.bufcomkeld2 0: Check "bufcomkeld2 with a literal"
plugin.sinitkeld2: Check "sinitkeld2"
plugin.keld2warn warning: Check "keld2warn with a variable"
plugin.keld2warn 0: Check "keld2warn with a literal"
plugin.keld2warn "some": MustFail "a text for a number"
plugin.keld2warn: MustFail "a call without its argument"
plugin.nosuchmethod: MustFail "a method that there is none of"
If WScript.Arguments.Count > 2 Then
    plugin.runKeld2Prg True: Check "runKeld2Prg with a literal"
Else
    plugin.runKeld2Prg usb: Check "runKeld2Prg with a variable"
End If
host.dump WScript.Arguments(1): Check "the dump"
plugin.freesharebufferkeld2: Check "freesharebufferkeld2"
WScript.Echo "done"
WScript.Quit 0
