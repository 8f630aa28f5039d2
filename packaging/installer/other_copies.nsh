; Copies of the plug-in elsewhere, by the other scope or by hand. The host would load each of them, and the font
; manager's items would stand in its menu twice. What this setup did not install it does not remove: it says where it
; is.
Var OtherCopies

Function WarnOfOtherCopies
  StrCpy $OtherCopies ""
  ${If} $Scope == "all"
    ReadRegStr $0 HKCU "${APPS_ENTRY}" "PluginFolder"
  ${Else}
    ReadRegStr $0 HKLM "${APPS_ENTRY}" "PluginFolder"
  ${EndIf}
  Push "$0\${PLUGIN_FILE}"
  Call NoteOtherCopy
  FileOpen $0 "$Hosts" r
  ${If} $0 != ""
    ${Do}
      ClearErrors
      FileReadUTF16LE $0 $1
      ${If} ${Errors}
        ${ExitDo}
      ${EndIf}
      StrCpy $1 $1 -2
      ; Also the diagnostic plug-in, which is the same code.
      ${Locate} "$1\${HOST_PLUGINS}" "/L=F /M=QuorvelTypeAgentAI20*.aip" NoteLocatedCopy
    ${Loop}
    FileClose $0
  ${EndIf}
  ClearErrors
  ${If} $OtherCopies != ""
    MessageBox MB_OK|MB_ICONEXCLAMATION \
      "There is another copy of the plug-in. The host may load both. Remove:$OtherCopies" /SD IDOK
  ${EndIf}
FunctionEnd

Function NoteLocatedCopy
  Push $R9
  Call NoteOtherCopy
  ; What ${Locate} expects to go on.
  Push ""
FunctionEnd

; Stack: a file ->
Function NoteOtherCopy
  Exch $2
  ${If} ${FileExists} "$2"
  ${AndIf} $2 != "$PluginFolder\${PLUGIN_FILE}"
  ${AndIf} $2 != "$PreviousFolder\${PLUGIN_FILE}"
    ${Log} "Warning: another copy of the plug-in is in $2; the host may load both."
    StrCpy $OtherCopies "$OtherCopies$\r$\n$2"
  ${EndIf}
  Pop $2
FunctionEnd
