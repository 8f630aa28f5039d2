; Files are written beside those that they replace and take their names at the end, when nothing else can go wrong:
;   FILE.new      written first; the host takes no file of that ending for a plug-in
;   FILE.old      the one before, until all files have their names

; ${TakeName} FILE: raises the error flag when it cannot; then all is as it was.
!macro TakeName FILE
  Push "${FILE}"
  Call TakeName
!macroend
!define TakeName "!insertmacro TakeName"

Function TakeName
  Exch $0
  Call GiveName
  Pop $0
FunctionEnd

Function GiveName
  ClearErrors
  ${If} ${FileExists} "$0"
    Rename "$0" "$0.old"
    ${ReturnOnErrors}
  ${EndIf}
  Rename "$0.new" "$0"
  ${If} ${Errors}
    Rename "$0.old" "$0"
    SetErrors
  ${EndIf}
FunctionEnd

; ${PutBack} FILE: as it was before, whether it has taken its name by now or not.
!macro PutBack FILE
  Delete "${FILE}.new"
  ${If} ${FileExists} "${FILE}.old"
    Delete "${FILE}"
    Rename "${FILE}.old" "${FILE}"
  ${EndIf}
!macroend
!define PutBack "!insertmacro PutBack"
