; Folders that the installer makes are remembered in the registry, so that the uninstaller removes these and no others,
; and they only when they are empty: what somebody else put there stays.

; ${MakeFolder} PATH: with all folders above that are missing. Raises the error flag when one cannot be made.
!macro MakeFolder PATH
  Push "${PATH}"
  Call MakeFolder
!macroend
!define MakeFolder "!insertmacro MakeFolder"

Function MakeFolder
  Exch $0
  Push $1
  ClearErrors
  ${IfNot} ${FileExists} "$0\*"
    Call MakeMissingFolder
  ${EndIf}
  Pop $1
  Pop $0
FunctionEnd

Function MakeMissingFolder
  ${GetParent} "$0" $1
  ${If} $1 == ""
    SetErrors
    Return
  ${EndIf}
  ${MakeFolder} "$1"
  ${ReturnOnErrors}
  CreateDirectory "$0"
  ${ReturnOnErrors}
  ReadRegDWORD $1 SHCTX "${APPS_ENTRY}" "MadeFolders"
  IntOp $1 $1 + 1
  ; The value is not there yet when the first folder is made.
  ClearErrors
  WriteRegStr SHCTX "${APPS_ENTRY}" "MadeFolder$1" "$0"
  WriteRegDWORD SHCTX "${APPS_ENTRY}" "MadeFolders" $1
FunctionEnd

; The innermost first. A folder that is not empty stays, and stays remembered.
!macro RemoveEmptyFolders
  Push $0
  Push $1
  ReadRegDWORD $0 SHCTX "${APPS_ENTRY}" "MadeFolders"
  ${DoWhile} $0 > 0
    ReadRegStr $1 SHCTX "${APPS_ENTRY}" "MadeFolder$0"
    ${If} $1 != ""
      ClearErrors
      RMDir "$1"
      ${IfNot} ${Errors}
        DeleteRegValue SHCTX "${APPS_ENTRY}" "MadeFolder$0"
      ${EndIf}
    ${EndIf}
    IntOp $0 $0 - 1
  ${Loop}
  ClearErrors
  Pop $1
  Pop $0
!macroend
${InBoth} RemoveEmptyFolders
