; What is laid beside the uninstaller to be read: what the folder is, our licence, and the terms of others' code in the
; plug-in.

; ${EachText} DO: does that with the path of each, ${DO} being a macro.
!macro EachText DO
  !insertmacro ${DO} "$ProgramFolder\README.txt"
  !insertmacro ${DO} "$ProgramFolder\LICENSE.txt"
  !insertmacro ${DO} "$ProgramFolder\THIRD-PARTY.txt"
!macroend
!define EachText "!insertmacro EachText"

; With the ending .new. Raises the error flag when one cannot be written.
Function WriteTexts
  File "/oname=$ProgramFolder\README.txt.new" "${TEXTS}/README.txt"
  File "/oname=$ProgramFolder\LICENSE.txt.new" "${TEXTS}/LICENSE.txt"
  File "/oname=$ProgramFolder\THIRD-PARTY.txt.new" "${TEXTS}/THIRD-PARTY.txt"
FunctionEnd
