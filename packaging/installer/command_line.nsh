; The switches, beside NSIS' own: /S (silent), /D=FOLDER (last of all; NSIS takes it off the line and leaves $INSTDIR)
; and /NCRC.
Var WantedScope     ; "all", "user" or empty
Var MayDowngrade    ; 1 or 0
Var IsToUninstall   ; 1 or 0
Var WasElevated     ; 1 when scope.nsh has started this run to get administrator's rights

!define ELEVATED "/Elevated"

Function ReadCommandLine
  StrCpy $WantedScope ""
  StrCpy $MayDowngrade 0
  StrCpy $IsToUninstall 0
  ${GetParameters} $0
  ${Do}
    Call TakeWord
    Pop $1
    ${If} $1 == ""
      ${ExitDo}
    ${ElseIf} $1 == "/AllUsers"
      StrCpy $WantedScope "all"
    ${ElseIf} $1 == "/CurrentUser"
      StrCpy $WantedScope "user"
    ${ElseIf} $1 == "/Downgrade"
      StrCpy $MayDowngrade 1
    ${ElseIf} $1 == "/Uninstall"
      StrCpy $IsToUninstall 1
    ${ElseIf} $1 == "${ELEVATED}"
      StrCpy $WasElevated 1
    ${ElseIf} $1 != "/S"
    ${AndIf} $1 != "/NCRC"
      ; A switch with a typing mistake must not install elsewhere than was meant.
      ${Refuse} ${EXIT_COMMAND_LINE} \
        "Setup does not know $1, but /AllUsers, /CurrentUser, /Downgrade, /Uninstall, /S and, at the end, /D=FOLDER."
    ${EndIf}
  ${Loop}
  Call CheckFolderOnCommandLine
FunctionEnd

; A path that NSIS does not like it drops without a word.
Function CheckFolderOnCommandLine
  System::Call 'kernel32::GetCommandLineW() w .r0'
  ClearErrors
  ${GetOptions} "$0" "/D=" $1
  ${IfNot} ${Errors}
    Push $INSTDIR
    Call IsWholePath
    Pop $1
    ${If} $1 = 0
      ${Refuse} ${EXIT_COMMAND_LINE} "/D= takes a whole path, such as C:\Plug-ins."
    ${EndIf}
  ${EndIf}
FunctionEnd

; Stack: -> the first word of $0, which loses it; empty when there is none
Function TakeWord
  Push $1
  Push $2
  StrCpy $1 ""
  ${Do}
    StrCpy $2 $0 1
    StrCpy $0 $0 "" 1
    ${If} $2 == ""
      ${ExitDo}
    ${ElseIf} $2 != " "
      StrCpy $1 "$1$2"
    ${ElseIf} $1 != ""
      ${ExitDo}
    ${EndIf}
  ${Loop}
  Pop $2
  Exch $1
FunctionEnd
