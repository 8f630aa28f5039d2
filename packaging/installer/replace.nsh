; Files are written beside those that they replace and take their names at the end, when nothing else can go wrong:
;   FILE.new      written first; the host takes no file of that ending for a plug-in
;   FILE.old      the one before, until all files have their names
; A run that was killed leaves them behind. They are put right before anything is written: else they would be in the way
; of every later run, and be taken for what that run has replaced.

Var AreAllWritten  ; 1 as soon as each file is there as FILE.new: one that is there no more has taken its name

; ${PutRight} FILE: what an earlier run has left. When it cannot, it ends the function with the error flag raised.
!macro PutRight FILE
  Push "${FILE}"
  Call PutRight
  ${ReturnOnErrors}
!macroend
!define PutRight "!insertmacro PutRight"

Function PutRight
  Exch $0
  ClearErrors
  ${If} ${FileExists} "$0.old"
    ${If} ${FileExists} "$0"
      Delete "$0.old"
    ${Else}
      ; Killed between the two: this is the only one that there is.
      Rename "$0.old" "$0"
    ${EndIf}
    ${If} ${FileExists} "$0.old"
      SetErrors
    ${EndIf}
  ${EndIf}
  Pop $0
FunctionEnd

; ${TakeName} FILE: when it cannot, all is as it was, and it ends the function with the error flag raised.
!macro TakeName FILE
  Push "${FILE}"
  Call TakeName
  ${ReturnOnErrors}
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

; ${PutBack} FILE: as it was before, whether it has taken its name by now or not. A FILE.old is of this run, because
; there was none at its beginning; one that has taken its name without it had none before.
!macro PutBack FILE
  ${If} $AreAllWritten = 1
  ${AndIfNot} ${FileExists} "${FILE}.new"
    Delete "${FILE}"
  ${EndIf}
  Delete "${FILE}.new"
  ${If} ${FileExists} "${FILE}.old"
    Delete "${FILE}"
    Rename "${FILE}.old" "${FILE}"
  ${EndIf}
!macroend
!define PutBack "!insertmacro PutBack"

; ${DeleteLeftovers} FILE
!macro DeleteLeftovers FILE
  Delete "${FILE}.old"
  Delete "${FILE}.new"
!macroend
!define DeleteLeftovers "!insertmacro DeleteLeftovers"

; ${DeleteWithLeftovers} FILE
!macro DeleteWithLeftovers FILE
  Delete "${FILE}"
  ${DeleteLeftovers} "${FILE}"
!macroend
!define DeleteWithLeftovers "!insertmacro DeleteWithLeftovers"
