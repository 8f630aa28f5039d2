; The log of a run. It begins in the temporary folder, so that there is one as well when nothing could be installed, and
; is moved beside the uninstaller at the end of an installation. UTF-16 with a mark, which every editor on Windows
; reads.
Var LogFile

!define TEMPORARY_LOG "$TEMP\QuorvelTypeAgentAI20-setup.log"
!define LOG_NAME "install.log"

; ${Log} TEXT. Leaves the error flag cleared.
!macro Log TEXT
  Push `${TEXT}`
  ${CallShared} WriteLog
!macroend
!define Log "!insertmacro Log"

!macro WriteLog
  Exch $0
  Push $1
  DetailPrint "$0"
  FileOpen $1 "$LogFile" a
  FileSeek $1 0 END
  FileWriteUTF16LE /BOM $1 "$0$\r$\n"
  FileClose $1
  ClearErrors
  Pop $1
  Pop $0
!macroend
${InBoth} WriteLog

; ${BeginLog} WHAT
!macro BeginLog WHAT
  StrCpy $LogFile "${TEMPORARY_LOG}"
  Delete "$LogFile"
  ${GetTime} "" "L" $0 $1 $2 $3 $4 $5 $6
  ${Log} "$2-$1-$0 $4:$5:$6 ${WHAT} ${VERSION}"
!macroend
!define BeginLog "!insertmacro BeginLog"

; Of a run that a person has cancelled, before it did anything: nothing is left.
!macro DiscardLog
  Delete "${TEMPORARY_LOG}"
!macroend
${InBoth} DiscardLog

; Appends the log of this run to the one of the installation, which then holds them all.
Function KeepLog
  FileOpen $0 "$LogFile" r
  FileOpen $1 "$ProgramFolder\${LOG_NAME}" a
  FileSeek $1 0 END
  ${Do}
    ClearErrors
    FileReadUTF16LE $0 $2
    ${If} ${Errors}
      ${ExitDo}
    ${EndIf}
    FileWriteUTF16LE /BOM $1 $2
  ${Loop}
  FileClose $0
  FileClose $1
  Delete "$LogFile"
  StrCpy $LogFile "$ProgramFolder\${LOG_NAME}"
  ClearErrors
FunctionEnd
