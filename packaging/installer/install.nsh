; The installation: all of it or nothing.
Function .onInit
  SetRegView 64
  InitPluginsDir
  Call RefuseSecondRun
  ${BeginLog} "Setup of ${PRODUCT}"
  Call ReadCommandLine
  Call ReadRights
  Call ChooseScope
  ${If} $WantedScope != ""
  ${OrIf} $IsToUninstall = 1
  ${OrIf} ${Silent}
    Call UseScope
  ${EndIf}
FunctionEnd

; Once it is known for whom.
Function UseScope
  Call ElevateForAllUsers
  Call ApplyScope
  ${Log} "Scope: $Scope"
  Call ReadPreviousInstallation
  ${If} $PreviousVersion != ""
    ${Log} "Installed already: version $PreviousVersion in $PreviousFolder"
  ${EndIf}
  ${If} $IsToUninstall = 1
    Call RunUninstaller
  ${EndIf}
  Call RefuseDowngrade
  Call FindHosts
  Call ProposePluginFolder
  ${FullPath} $PluginFolder
FunctionEnd

Section
  Call RefuseWithoutPluginFolder
  Call RefuseWhileHostRuns
  ${RefuseWhileFileInUse} "$PluginFolder"
  ${If} $PreviousFolder != ""
    ${RefuseWhileFileInUse} "$PreviousFolder"
  ${EndIf}
  ${Log} "Installing version ${VERSION} in $PluginFolder"
  Call PutAllRight
  ${If} ${Errors}
    ${Refuse} ${EXIT_NOT_WRITABLE} \
      "What an earlier run has left, a file that ends in .old, cannot be removed from $PluginFolder or $ProgramFolder."
  ${EndIf}
  Call Install
  ${If} ${Errors}
    Call PutAllBack
    ${Refuse} ${EXIT_NOT_WRITABLE} \
      "The plug-in cannot be written to $PluginFolder, or the uninstaller to $ProgramFolder."
  ${EndIf}
  Call TidyUp
  Call WarnOfOtherCopies
  ${Log} "Version ${VERSION} is installed."
  ${If} $Scope == "user"
    ${Log} 'In ${HOST}, set Preferences > Plug-ins & Scratch Disks > Additional Plug-ins Folder to $PluginFolder'
  ${EndIf}
  Call KeepLog
  SetErrorLevel 0
SectionEnd

; Raises the error flag when it gets stuck.
Function PutAllRight
  ${PutRight} "$PluginFolder\${PLUGIN_FILE}"
  ${PutRight} "$ProgramFolder\uninstall.exe"
  ${EachText} PutRight
FunctionEnd

; Raises the error flag when it gets stuck. The plug-in takes its name last: with that, all is done.
Function Install
  ${MakeFolder} "$PluginFolder"
  ${ReturnOnErrors}
  ${MakeFolder} "$ProgramFolder"
  ${ReturnOnErrors}
  File "/oname=$PluginFolder\${PLUGIN_FILE}.new" "${PLUGIN}"
  Call WriteTexts
  WriteUninstaller "$ProgramFolder\uninstall.exe.new"
  ${ReturnOnErrors}
  StrCpy $AreAllWritten 1
  ${EachText} TakeName
  ${TakeName} "$ProgramFolder\uninstall.exe"
  Call WriteAppsEntry
  ${ReturnOnErrors}
  ${TakeName} "$PluginFolder\${PLUGIN_FILE}"
FunctionEnd

Function PutAllBack
  ${PutBack} "$PluginFolder\${PLUGIN_FILE}"
  ${PutBack} "$ProgramFolder\uninstall.exe"
  ${EachText} PutBack
  ${If} $PreviousVersion == ""
    Call RemoveEmptyFolders
    DeleteRegKey SHCTX "${APPS_ENTRY}"
  ${Else}
    Call RemoveEmptyFolders
    WriteRegStr SHCTX "${APPS_ENTRY}" "DisplayVersion" "$PreviousVersion"
    WriteRegStr SHCTX "${APPS_ENTRY}" "PluginFolder" "$PreviousFolder"
  ${EndIf}
FunctionEnd

; What the version before has left.
Function TidyUp
  ${DeleteLeftovers} "$PluginFolder\${PLUGIN_FILE}"
  ${DeleteLeftovers} "$ProgramFolder\uninstall.exe"
  ${EachText} DeleteLeftovers
  ${If} $PreviousFolder != ""
  ${AndIf} $PreviousFolder != $PluginFolder
    Call LeavePreviousFolder
  ${EndIf}
FunctionEnd

; A folder may have two paths that nobody can tell from two folders, as when a share of this computer is one of them. So
; the file is taken away first, to see whether the new one is still there.
Function LeavePreviousFolder
  StrCpy $0 "$PreviousFolder\${PLUGIN_FILE}"
  ${DeleteLeftovers} "$0"
  Rename "$0" "$0.old"
  ${IfNot} ${FileExists} "$PluginFolder\${PLUGIN_FILE}"
    Rename "$0.old" "$0"
    ${Log} "$PluginFolder is $PreviousFolder, where it was before."
    StrCpy $PluginFolder $PreviousFolder
    ${FullPath} $PluginFolder
    WriteRegStr SHCTX "${APPS_ENTRY}" "PluginFolder" "$PluginFolder"
    Return
  ${EndIf}
  ${Log} "Removing it from $PreviousFolder"
  Delete "$0.old"
  ${If} ${FileExists} "$0.old"
    Rename "$0.old" "$0"
  ${EndIf}
  ${If} ${FileExists} "$0"
    ${Log} "$0 cannot be removed."
  ${EndIf}
  Call RemoveEmptyFolders
FunctionEnd
