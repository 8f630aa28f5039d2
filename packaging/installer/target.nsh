; The folder that the plug-in goes to.
!define OWN_FOLDER "${PRODUCT}"

; What stands to reason; empty when a person has to choose. $INSTDIR is what /D= says.
Function ProposePluginFolder
  StrCpy $PluginFolder ""
  ${If} $INSTDIR != ""
    StrCpy $PluginFolder $INSTDIR
    Return
  ${EndIf}
  ${If} $PreviousFolder != ""
    ; Where it is now, unless the host was removed from there.
    ${GetParent} "$PreviousFolder" $0
    ${If} ${FileExists} "$0\*"
      StrCpy $PluginFolder $PreviousFolder
      Return
    ${EndIf}
  ${EndIf}
  ${If} $Scope == "user"
    ; A user may not write into the host's folder. The host has a preference for one more.
    StrCpy $PluginFolder "$ProgramFolder\${HOST_PLUGINS}"
  ${ElseIf} $HostCount = 1
    StrCpy $PluginFolder "$FirstHost\${HOST_PLUGINS}\${OWN_FOLDER}"
  ${EndIf}
FunctionEnd

Function RefuseWithoutPluginFolder
  ${If} $PluginFolder != ""
    Return
  ${EndIf}
  ${If} $HostCount = 0
    ${Refuse} ${EXIT_NO_HOST} \
      "No ${HOST} was found. Name the folder for its plug-ins with /D=, or install for one user with /CurrentUser."
  ${EndIf}
  ${Refuse} ${EXIT_SEVERAL_HOSTS} \
    "There are $HostCount copies of ${HOST}. Name the folder for the plug-ins of one with /D=."
FunctionEnd

Function RefuseDowngrade
  ${If} $PreviousVersion == ""
  ${OrIf} $MayDowngrade = 1
    Return
  ${EndIf}
  ${VersionCompare} "$PreviousVersion" "${VERSION}" $0
  ${If} $0 = 1
    ${Refuse} ${EXIT_NEWER_INSTALLED} \
      "Version $PreviousVersion is installed, which is newer than ${VERSION}. To go back, start setup with /Downgrade."
  ${EndIf}
FunctionEnd
