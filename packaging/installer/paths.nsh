; One folder has many spellings: with "." and "..", by short names, in another case, through a junction. Each is brought
; to one of them where it is read, so that everything else may compare texts.

!define FILE_SHARE_ALL 7
; Without it, no folder is opened.
!define FILE_FLAG_BACKUP_SEMANTICS 0x02000000

; ${FullPath} VARIABLE: that one spelling of the folder in it, without "\" at the end. Of a folder that does not exist
; yet, it is the one of the part that does, with the rest behind it.
!macro FullPathOf VARIABLE
  Push ${VARIABLE}
  ${CallShared} FullPath
  Pop ${VARIABLE}
!macroend
!define FullPath "!insertmacro FullPathOf"

!macro FullPath
  Exch $0
  Push $1
  Push $2
  Push $3
  StrLen $1 $0
  ${If} $1 = 2
    ; "C:" by itself would be the current folder of that drive.
    StrCpy $0 "$0\"
  ${EndIf}
  ${If} $1 > 0
    System::Call 'kernel32::GetFullPathNameW(w r0, i ${NSIS_MAX_STRLEN}, w .r1, p 0) i .r2'
    ${If} $2 > 0
    ${AndIf} $2 < ${NSIS_MAX_STRLEN}
      StrCpy $0 $1
    ${EndIf}
    Push $0
    ${CallShared} WithoutBackslash
    Pop $0
    ${CallShared} SpellExistingPart
  ${EndIf}
  Pop $3
  Pop $2
  Pop $1
  Exch $0
!macroend
${InBoth} FullPath

; $0: a folder -> with its innermost part that exists as Windows spells it
!macro SpellExistingPart
  StrCpy $1 $0
  StrCpy $2 ""
  ${DoWhile} $1 != ""
    Push $1
    ${CallShared} SpelledByWindows
    Pop $3
    ${If} $3 != ""
      StrCpy $0 "$3$2"
      Return
    ${EndIf}
    ${GetFileName} "$1" $3
    StrCpy $2 "\$3$2"
    ${GetParent} "$1" $1
  ${Loop}
!macroend
${InBoth} SpellExistingPart

; Stack: a folder -> as Windows spells it, or empty when it cannot be opened
!macro SpelledByWindows
  Exch $0
  Push $1
  Push $2
  ; With "\", a drive is its outermost folder, and a file is none.
  StrCpy $1 "$0\"
  StrCpy $0 ""
  System::Call 'kernel32::CreateFileW(w r1, i 0, i ${FILE_SHARE_ALL}, p 0, i ${OPEN_EXISTING}, \
    i ${FILE_FLAG_BACKUP_SEMANTICS}, p 0) p .r2'
  ${If} $2 P<> ${INVALID_HANDLE}
    System::Call 'kernel32::GetFinalPathNameByHandleW(p r2, w .r0, i ${NSIS_MAX_STRLEN}, i 0) i .r1'
    System::Call 'kernel32::CloseHandle(p r2)'
    ${If} $1 = 0
    ${OrIf} $1 >= ${NSIS_MAX_STRLEN}
      StrCpy $0 ""
    ${EndIf}
    ${CallShared} WithoutMark
    Push $0
    ${CallShared} WithoutBackslash
    Pop $0
  ${EndIf}
  Pop $2
  Pop $1
  Exch $0
!macroend
${InBoth} SpelledByWindows

; $0: a path as Windows names it by a handle, \\?\C:\... or \\?\UNC\server\... -> as people write it
!macro WithoutMark
  StrCpy $1 $0 8
  ${If} $1 == "\\?\UNC\"
    StrCpy $0 $0 "" 8
    StrCpy $0 "\\$0"
  ${ElseIf} $0 != ""
    StrCpy $0 $0 "" 4
  ${EndIf}
!macroend
${InBoth} WithoutMark

; Stack: a path -> without "\" at its end
!macro WithoutBackslash
  Exch $0
  Push $1
  StrCpy $1 $0 "" -1
  ${If} $1 == "\"
    StrCpy $0 $0 -1
  ${EndIf}
  Pop $1
  Exch $0
!macroend
${InBoth} WithoutBackslash

; Stack: a path -> 1 when it is a whole one, C:\... or \\server\share\..., of more than a drive or a share; else 0
Function IsWholePath
  Exch $0
  Push $1
  Push $2
  ${GetRoot} "$0" $1
  StrLen $2 $1
  StrCpy $0 $0 2 $2
  StrCpy $2 $0 1
  ${If} $1 != ""
  ${AndIf} $2 == "\"
  ${AndIf} $0 != "\"
    StrCpy $0 1
  ${Else}
    StrCpy $0 0
  ${EndIf}
  Pop $2
  Pop $1
  Exch $0
FunctionEnd
