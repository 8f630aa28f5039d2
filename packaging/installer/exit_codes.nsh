; How a run ends that does not do what it was started for. 1 (cancelled) and 2 (ended in the middle) are NSIS' own.
!define EXIT_ELEVATION_NEEDED 3
!define EXIT_NO_HOST 4
!define EXIT_SEVERAL_HOSTS 5
!define EXIT_IN_USE 6
!define EXIT_NEWER_INSTALLED 7
!define EXIT_NOT_WRITABLE 8
!define EXIT_COMMAND_LINE 9
!define EXIT_SECOND_RUN 10
!define EXIT_NOT_INSTALLED 11

; ${Refuse} CODE TEXT: says why, in the log as well, and ends. Whatever was begun has been undone by then.
!macro Refuse CODE TEXT
  ${LogRefusal} ${CODE} `${TEXT}`
  MessageBox MB_OK|MB_ICONSTOP `${TEXT}` /SD IDOK
  ${EndWith} ${CODE}
!macroend
!define Refuse "!insertmacro Refuse"

!macro LogRefusal CODE TEXT
  ${Log} `${TEXT}`
  ${Log} "Nothing was changed (exit code ${CODE})."
!macroend
!define LogRefusal "!insertmacro LogRefusal"

!macro EndWith CODE
  !ifdef __UNINSTALL__
    Call un.RemoveTemporaryCopy
  !endif
  SetErrorLevel ${CODE}
  Quit
!macroend
!define EndWith "!insertmacro EndWith"
