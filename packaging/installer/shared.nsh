; Functions that installer and uninstaller have in common. NSIS wants them twice, and those of the uninstaller under
; names that begin with "un.": a macro holds the code, ${InBoth} makes both functions of it, and ${CallShared} calls the
; right one.
!macro InBoth NAME
  Function ${NAME}
    !insertmacro ${NAME}
  FunctionEnd
  Function un.${NAME}
    !insertmacro ${NAME}
  FunctionEnd
!macroend
!define InBoth "!insertmacro InBoth"

!macro CallShared NAME
  !ifdef __UNINSTALL__
    Call un.${NAME}
  !else
    Call ${NAME}
  !endif
!macroend
!define CallShared "!insertmacro CallShared"

; Out of the function when the error flag is raised, which stays raised: asking for it clears it.
!macro ReturnOnErrors
  ${If} ${Errors}
    SetErrors
    Return
  ${EndIf}
!macroend
!define ReturnOnErrors "!insertmacro ReturnOnErrors"

; Of Windows.
!define INVALID_HANDLE -1
!define OPEN_EXISTING 3
