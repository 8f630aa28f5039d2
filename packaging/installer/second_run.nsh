; One setup or uninstaller at a time on this computer: two would take each other's half-written files for their own.
Var Turn  ; the handle that marks a run

!define TURN "Global\QuorvelTypeAgentAI20-setup"
!define ERROR_ACCESS_DENIED 5
!define ERROR_ALREADY_EXISTS 183

; Before the log is begun, which is the other run's.
!macro RefuseSecondRun
  System::Call 'kernel32::CreateMutexW(p 0, i 0, w "${TURN}") p .r0 ?e'
  Pop $1
  StrCpy $Turn $0
  ${If} $1 = ${ERROR_ALREADY_EXISTS}
  ; Another user's.
  ${OrIf} $1 = ${ERROR_ACCESS_DENIED}
    MessageBox MB_OK|MB_ICONSTOP \
      "Setup or the uninstaller of ${PRODUCT} is running already. Wait until it has ended, then start again." /SD IDOK
    ${EndWith} ${EXIT_SECOND_RUN}
  ${EndIf}
!macroend
${InBoth} RefuseSecondRun

; Before this program starts another one that goes on in its place.
!macro PassTurn
  System::Call 'kernel32::CloseHandle(p $Turn)'
!macroend
!define PassTurn "!insertmacro PassTurn"
