; /Uninstall: the installed uninstaller, waited for. Started by itself it goes on in a copy, and nobody hears how it
; ends. That nothing is installed is what was asked for.
Function RunUninstaller
  StrCpy $1 0
  ${If} $PreviousVersion == ""
    ${Log} "Nothing is installed."
  ${Else}
    ReadRegStr $0 SHCTX "${APPS_ENTRY}" "InstallLocation"
    StrCpy $2 ""
    ${If} ${Silent}
      StrCpy $2 "/S"
    ${EndIf}
    ClearErrors
    CopyFiles /SILENT "$0\uninstall.exe" "$PLUGINSDIR\uninstall.exe"
    ${PassTurn}
    ; With _?= NSIS makes no copy of its own.
    ExecWait '"$PLUGINSDIR\uninstall.exe" $2 _?=$0' $1
    ${If} ${Errors}
      ${Refuse} ${EXIT_NOT_WRITABLE} "The uninstaller cannot be started: $0\uninstall.exe"
    ${EndIf}
  ${EndIf}
  SetErrorLevel $1
  Quit
FunctionEnd
