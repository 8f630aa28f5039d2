; NSIS runs the uninstaller from a copy in the temporary folder, which it leaves to Windows to remove at the next start;
; and Windows does that for administrators alone. A program cannot remove itself, so the command processor does it as
; soon as this one has ended. Started with _?= (where NSIS makes no copy), there is nothing to remove.
Function un.RemoveTemporaryCopy
  ${GetFileName} "$EXEDIR" $0
  StrCpy $0 $0 4
  ${If} $0 == "~nsu"
    ; A folder in which a program runs cannot be removed.
    SetOutPath "$TEMP"
    StrCpy $0 'del "$EXEPATH" & rd "$EXEDIR" & if not exist "$EXEDIR" exit'
    ExecShell "open" "$SYSDIR\cmd.exe" '/d /c for /l %i in (1,1,20) do ($0 & ping -n 2 127.0.0.1)' SW_HIDE
  ${EndIf}
FunctionEnd
