; For all users or for the one who starts setup: which registry, which folders, which rights.
Var IsElevated  ; 1 or 0

!macro ReadRights
  UserInfo::GetAccountType
  Pop $IsElevated
  ${If} $IsElevated == "Admin"
    StrCpy $IsElevated 1
  ${Else}
    StrCpy $IsElevated 0
  ${EndIf}
!macroend
${InBoth} ReadRights

!macro ApplyScope
  ${If} $Scope == "all"
    SetShellVarContext all
    StrCpy $ProgramFolder "$PROGRAMFILES64\${PRODUCT}"
  ${Else}
    SetShellVarContext current
    StrCpy $ProgramFolder "$LOCALAPPDATA\Programs\${PRODUCT}"
  ${EndIf}
  ${FullPath} $ProgramFolder
!macroend
${InBoth} ApplyScope

; What was asked for; else what is installed already; else as the rights are. A person may change it on a page.
Function ChooseScope
  ${If} $WantedScope != ""
    StrCpy $Scope $WantedScope
    Return
  ${EndIf}
  StrCpy $Scope "user"
  ReadRegStr $0 HKLM "${APPS_ENTRY}" "DisplayVersion"
  ReadRegStr $1 HKCU "${APPS_ENTRY}" "DisplayVersion"
  ${If} $0 != ""
  ${AndIf} $1 == ""
    StrCpy $Scope "all"
  ${ElseIf} $1 == ""
  ${OrIf} $0 != ""
    ${If} $IsElevated = 1
    ${OrIfNot} ${Silent}
      StrCpy $Scope "all"
    ${EndIf}
  ${EndIf}
  ClearErrors
FunctionEnd

; Starts the program again with administrator's rights, for which Windows asks, and ends this one. A silent run has
; nobody to ask.
!macro Elevate PROGRAM PARAMETERS
  ${If} ${Silent}
    ${Refuse} ${EXIT_ELEVATION_NEEDED} "For all users, administrator's rights are needed. Start it with these."
  ${EndIf}
  ; Where "runas" gives no rights, the programs would start each other for ever.
  SetErrors
  ${If} $WasElevated <> 1
    ${PassTurn}
    ClearErrors
    ExecShell "runas" "${PROGRAM}" "${ELEVATED} ${PARAMETERS}"
  ${EndIf}
  ${If} ${Errors}
    ${Refuse} ${EXIT_ELEVATION_NEEDED} "For all users, administrator's rights are needed, and they were not given."
  ${EndIf}
  !ifdef __UNINSTALL__
    Call un.RemoveTemporaryCopy
  !endif
  Quit
!macroend
!define Elevate "!insertmacro Elevate"

Function ElevateForAllUsers
  ${If} $Scope == "all"
  ${AndIf} $IsElevated = 0
    StrCpy $0 "/AllUsers"
    ${If} $MayDowngrade = 1
      StrCpy $0 "$0 /Downgrade"
    ${EndIf}
    ${If} $IsToUninstall = 1
      StrCpy $0 "$0 /Uninstall"
    ${EndIf}
    ${If} $INSTDIR != ""
      StrCpy $0 "$0 /D=$INSTDIR"
    ${EndIf}
    ${Elevate} "$EXEPATH" $0
  ${EndIf}
FunctionEnd
