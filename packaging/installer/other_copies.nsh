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
  Push $0
  Call NoteCopyInFolder
  ; Unless it could be removed from there.
  Push $PreviousFolder
  Call NoteCopyInFolder
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

; Stack: a folder, or empty ->
Function NoteCopyInFolder
  Exch $2
  ${If} $2 != ""
    Push "$2\${PLUGIN_FILE}"
    Call NoteOtherCopy
  ${EndIf}
  Pop $2
FunctionEnd

; Stack: a file, which may be known already ->
Function NoteOtherCopy
  Exch $2
  Push $3
  ${GetFileName} "$2" $3
  ${GetParent} "$2" $2
  ${FullPath} $2
  StrCpy $2 "$2\$3"
  ${If} ${FileExists} "$2"
  ${AndIf} $2 != "$PluginFolder\${PLUGIN_FILE}"
    ClearErrors
    ${WordFind} "$OtherCopies$\r$\n" "$\r$\n$2$\r$\n" "E*" $3
    ${If} ${Errors}
      ${Log} "Warning: another copy of the plug-in is in $2; the host may load both."
      StrCpy $OtherCopies "$OtherCopies$\r$\n$2"
    ${EndIf}
  ${EndIf}
  Pop $3
  Pop $2
FunctionEnd
