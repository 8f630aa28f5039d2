; Whether the host runs, and whether a file is in use.

Var RunningHost  ; the program, or empty

!define TH32CS_SNAPPROCESS 2
; PROCESSENTRY32W of 64-bit Windows. Its third number is the identifier; behind 32 more bytes comes the program's name.
!define PROCESS_ENTRY_SIZE 568
!define PROCESS_QUERY_LIMITED_INFORMATION 0x1000

; Looks for a host of the version that the plug-in is for. Another version does not load the file, and need not be quit.
; A process of another user, which nobody without administrator's rights may look at, is passed over: if it has the file
; loaded, that is found by the file.
!macro FindRunningHost
  Push $0
  Push $1
  Push $2
  Push $3
  Push $4
  StrCpy $RunningHost ""
  System::Call 'kernel32::CreateToolhelp32Snapshot(i ${TH32CS_SNAPPROCESS}, i 0) p .r0'
  ${If} $0 P<> ${INVALID_HANDLE}
    System::Alloc ${PROCESS_ENTRY_SIZE}
    Pop $1
    System::Call '*$1(i ${PROCESS_ENTRY_SIZE})'
    System::Call 'kernel32::Process32FirstW(p r0, p r1) i .r2'
    ${DoWhile} $2 <> 0
      System::Call '*$1(i, i, i .r3, &v32, &w260 .r4)'
      ${If} $4 == "${HOST_PROGRAM}"
        Push $3
        ${CallShared} PathOfProcess
        Pop $4
        Push $4
        ${CallShared} MajorVersionOf
        Pop $3
        ${If} $3 == ${HOST_MAJOR_VERSION}
          StrCpy $RunningHost $4
        ${EndIf}
      ${EndIf}
      System::Call 'kernel32::Process32NextW(p r0, p r1) i .r2'
    ${Loop}
    System::Free $1
    System::Call 'kernel32::CloseHandle(p r0)'
  ${EndIf}
  Pop $4
  Pop $3
  Pop $2
  Pop $1
  Pop $0
!macroend

; Stack: identifier -> path, or empty
!macro PathOfProcess
  Exch $0
  Push $1
  System::Call 'kernel32::OpenProcess(i ${PROCESS_QUERY_LIMITED_INFORMATION}, i 0, i r0) p .r1'
  StrCpy $0 ""
  ${If} $1 P<> 0
    System::Call 'kernel32::QueryFullProcessImageNameW(p r1, i 0, w .r0, *i ${NSIS_MAX_STRLEN})'
    System::Call 'kernel32::CloseHandle(p r1)'
  ${EndIf}
  Pop $1
  Exch $0
!macroend

; Stack: program -> the first part of its version number, or empty
!macro MajorVersionOf
  Exch $0
  Push $1
  ClearErrors
  GetDLLVersion "$0" $0 $1
  ${If} ${Errors}
    StrCpy $0 ""
    ClearErrors
  ${Else}
    IntOp $0 $0 / 0x10000
  ${EndIf}
  Pop $1
  Exch $0
!macroend

${InBoth} PathOfProcess
${InBoth} MajorVersionOf
${InBoth} FindRunningHost

!define GENERIC_WRITE 0x40000000
!define ERROR_SHARING_VIOLATION 32

; Stack: file -> 1 when a program has it open or, as a library, loaded; else 0
!macro FileIsInUse
  Exch $0
  Push $1
  StrCpy $1 0
  ${If} ${FileExists} "$0"
    System::Call 'kernel32::CreateFileW(w r0, i ${GENERIC_WRITE}, i 0, p 0, i ${OPEN_EXISTING}, i 0, p 0) p .r0 ?e'
    Pop $1
    ${If} $0 P<> ${INVALID_HANDLE}
      System::Call 'kernel32::CloseHandle(p r0)'
    ${EndIf}
    ${If} $0 P= ${INVALID_HANDLE}
    ${AndIf} $1 = ${ERROR_SHARING_VIOLATION}
      StrCpy $1 1
    ${Else}
      StrCpy $1 0
    ${EndIf}
  ${EndIf}
  StrCpy $0 $1
  Pop $1
  Exch $0
!macroend
${InBoth} FileIsInUse

; Does not come back while the host runs: a person is asked to quit it, a silent run ends.
!macro RefuseWhileHostRuns
  ${CallShared} FindRunningHost
  ${DoWhile} $RunningHost != ""
    ${Log} "${HOST} is running: $RunningHost"
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
      "${HOST} is running. Quit it, then try again." /SD IDCANCEL IDRETRY again
    ; Who has pressed Cancel has read why.
    ${LogRefusal} ${EXIT_IN_USE} "It was not quit."
    ${EndWith} ${EXIT_IN_USE}
    again:
    ${CallShared} FindRunningHost
  ${Loop}
!macroend
${InBoth} RefuseWhileHostRuns

; The same for the plug-in's file in a folder.
!macro RefuseWhileFileInUse FOLDER
  Push "${FOLDER}\${PLUGIN_FILE}"
  ${CallShared} FileIsInUse
  Pop $0
  ${If} $0 = 1
    ${Refuse} ${EXIT_IN_USE} "${FOLDER}\${PLUGIN_FILE} is in use. Quit the program that uses it, then start again."
  ${EndIf}
!macroend
!define RefuseWhileFileInUse "!insertmacro RefuseWhileFileInUse"
