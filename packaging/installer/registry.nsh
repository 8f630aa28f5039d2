; The entry in Windows' list of installed apps. It holds all that setup and uninstaller have to remember; there is no
; other key. SHCTX is HKLM or HKCU, as scope.nsh says.
!define APPS_ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\QuorvelTypeAgentAI20"

; What is installed already in this scope; empty when nothing is.
Var PreviousVersion
Var PreviousFolder

Function ReadPreviousInstallation
  ReadRegStr $PreviousVersion SHCTX "${APPS_ENTRY}" "DisplayVersion"
  ReadRegStr $PreviousFolder SHCTX "${APPS_ENTRY}" "PluginFolder"
  ${FullPath} $PreviousFolder
  ClearErrors
FunctionEnd

; Raises the error flag when a value cannot be written.
Function WriteAppsEntry
  ClearErrors
  WriteRegStr SHCTX "${APPS_ENTRY}" "DisplayName" "${PRODUCT} for ${HOST}"
  WriteRegStr SHCTX "${APPS_ENTRY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${APPS_ENTRY}" "Publisher" "${PUBLISHER}"
  WriteRegStr SHCTX "${APPS_ENTRY}" "DisplayIcon" "$ProgramFolder\uninstall.exe"
  WriteRegStr SHCTX "${APPS_ENTRY}" "InstallLocation" "$ProgramFolder"
  WriteRegStr SHCTX "${APPS_ENTRY}" "PluginFolder" "$PluginFolder"
  WriteRegStr SHCTX "${APPS_ENTRY}" "UninstallString" '"$ProgramFolder\uninstall.exe"'
  WriteRegStr SHCTX "${APPS_ENTRY}" "QuietUninstallString" '"$ProgramFolder\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${APPS_ENTRY}" "EstimatedSize" ${SIZE_IN_KB}
  WriteRegDWORD SHCTX "${APPS_ENTRY}" "NoModify" 1
  WriteRegDWORD SHCTX "${APPS_ENTRY}" "NoRepair" 1
FunctionEnd
