; Finding the hosts of the version that the plug-in is for. What the registry says is only where to look: a host is a
; folder with a program of that version in it, and with a folder for plug-ins.
Var Hosts       ; a file with the folder of a host on each line
Var HostCount
Var FirstHost

!define HOST_PLUGINS "Plug-ins"
!define KEY_OF_HOST "Software\Adobe\Adobe Illustrator\${HOST_MAJOR_VERSION}.0"
!define KEY_OF_PROGRAM "Software\Microsoft\Windows\CurrentVersion\App Paths\${HOST_PROGRAM}"
!define KEY_OF_APPS "Software\Microsoft\Windows\CurrentVersion\Uninstall"

; All values of a key, its subkeys' too: which of them names the folder differs between the host's installers.
!macro ConsiderValuesOf ROOT KEY
  StrCpy $0 "${KEY}"
  StrCpy $1 0
  ${Do}
    StrCpy $2 0
    ${Do}
      ClearErrors
      EnumRegValue $3 ${ROOT} "$0" $2
      ${If} ${Errors}
        ${ExitDo}
      ${EndIf}
      ReadRegStr $4 ${ROOT} "$0" "$3"
      Push $4
      Call ConsiderFolder
      IntOp $2 $2 + 1
    ${Loop}
    EnumRegKey $3 ${ROOT} "${KEY}" $1
    ${If} $3 == ""
      ${ExitDo}
    ${EndIf}
    StrCpy $0 "${KEY}\$3"
    IntOp $1 $1 + 1
  ${Loop}
!macroend

; Where installed apps of the host's name say that they are: the folder itself, or the one above.
!macro ConsiderApps ROOT
  StrCpy $1 0
  ${Do}
    EnumRegKey $3 ${ROOT} "${KEY_OF_APPS}" $1
    ${If} $3 == ""
      ${ExitDo}
    ${EndIf}
    ReadRegStr $4 ${ROOT} "${KEY_OF_APPS}\$3" "DisplayName"
    StrCpy $4 $4 17
    ${If} $4 == "Adobe Illustrator"
      ReadRegStr $4 ${ROOT} "${KEY_OF_APPS}\$3" "InstallLocation"
      Push $4
      Call ConsiderFolder
      Push "$4\${HOST}"
      Call ConsiderFolder
    ${EndIf}
    IntOp $1 $1 + 1
  ${Loop}
!macroend

Function FindHosts
  StrCpy $Hosts "$PLUGINSDIR\hosts.txt"
  Delete "$Hosts"
  StrCpy $HostCount 0
  StrCpy $FirstHost ""
  !insertmacro ConsiderValuesOf HKLM "${KEY_OF_HOST}"
  !insertmacro ConsiderValuesOf HKCU "${KEY_OF_HOST}"
  !insertmacro ConsiderValuesOf HKLM "${KEY_OF_PROGRAM}"
  !insertmacro ConsiderValuesOf HKCU "${KEY_OF_PROGRAM}"
  !insertmacro ConsiderApps HKLM
  !insertmacro ConsiderApps HKCU
  SetRegView 32
  !insertmacro ConsiderApps HKLM
  SetRegView 64
  Push "$PROGRAMFILES64\Adobe\${HOST}"
  Call ConsiderFolder
  ${If} $HostCount = 0
    ${Log} "No ${HOST} was found."
  ${EndIf}
  ClearErrors
FunctionEnd

; Stack: a folder of a host, the folder of its program, or the program; in quotation marks or not ->
Function ConsiderFolder
  Exch $0
  Push $1
  Push $2
  StrCpy $1 $0 1
  ${If} $1 == '"'
    StrCpy $0 $0 "" 1
    ${WordFind} "$0" '"' "+1{" $0
  ${EndIf}
  StrCpy $1 $0 1 1
  ${If} $1 == ":"
    ${FullPath} $0
    Call HostOfPlace
    ${If} $0 != ""
      Call AddHost
    ${EndIf}
  ${EndIf}
  Pop $2
  Pop $1
  Pop $0
FunctionEnd

; $0: such a place -> the folder of the host, or empty
Function HostOfPlace
  ${GetFileName} "$0" $1
  ${If} $1 == "${HOST_PROGRAM}"
    ${GetParent} "$0" $0
  ${EndIf}
  ; With the folder of the program, three folders up.
  ${If} ${FileExists} "$0\${HOST_PROGRAM}"
    ${GetParent} "$0" $0
    ${GetParent} "$0" $0
    ${GetParent} "$0" $0
  ${EndIf}
  Push "$0\${HOST_PROGRAM_FOLDER}\${HOST_PROGRAM}"
  Call MajorVersionOf
  Pop $1
  ${If} $1 != ${HOST_MAJOR_VERSION}
    StrCpy $0 ""
  ${ElseIfNot} ${FileExists} "$0\${HOST_PLUGINS}\*"
    ${Log} "$0 has no folder ${HOST_PLUGINS}, and is passed over."
    StrCpy $0 ""
  ${EndIf}
FunctionEnd

; $0: the folder of a host, which may be known already
Function AddHost
  FileOpen $1 "$Hosts" a
  FileSeek $1 0
  ${Do}
    ClearErrors
    FileReadUTF16LE $1 $2
    ${If} ${Errors}
      ${ExitDo}
    ${EndIf}
    ${If} $2 == "$0$\r$\n"
      FileClose $1
      Return
    ${EndIf}
  ${Loop}
  FileSeek $1 0 END
  FileWriteUTF16LE $1 "$0$\r$\n"
  FileClose $1
  ${Log} "Found ${HOST} in $0"
  IntOp $HostCount $HostCount + 1
  ${If} $FirstHost == ""
    StrCpy $FirstHost $0
  ${EndIf}
FunctionEnd
