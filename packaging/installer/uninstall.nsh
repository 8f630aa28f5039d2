; Removes what the installer has made, and nothing else.
Function un.onInit
  SetRegView 64
  ${BeginLog} "Uninstalling ${PRODUCT}"
  Call un.ReadRights
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "${ELEVATED}" $1
  ${IfNot} ${Errors}
    StrCpy $WasElevated 1
  ${EndIf}
  ; Each scope has its own folder for the uninstaller.
  StrCpy $Scope "user"
  Call un.ApplyScope
  ${If} $ProgramFolder != $INSTDIR
    StrCpy $Scope "all"
    Call un.ApplyScope
    ${If} $IsElevated = 0
      ${Elevate} "$ProgramFolder\uninstall.exe" ""
    ${EndIf}
  ${EndIf}
FunctionEnd

Section Uninstall
  ReadRegStr $PluginFolder SHCTX "${APPS_ENTRY}" "PluginFolder"
  Call un.RefuseWhileHostRuns
  ${RefuseWhileFileInUse} "$PluginFolder"
  ClearErrors
  ${If} ${FileExists} "$PluginFolder\${PLUGIN_FILE}"
    Delete "$PluginFolder\${PLUGIN_FILE}"
    ${If} ${Errors}
      ${Refuse} ${EXIT_NOT_WRITABLE} "$PluginFolder\${PLUGIN_FILE} cannot be removed."
    ${EndIf}
  ${EndIf}
  Delete "$ProgramFolder\uninstall.exe"
  Delete "$ProgramFolder\README.txt"
  Delete "$ProgramFolder\${LOG_NAME}"
  Call un.RemoveEmptyFolders
  DeleteRegKey SHCTX "${APPS_ENTRY}"
  Delete "$LogFile"
  SetErrorLevel 0
  ${If} ${Silent}
    Call un.RemoveTemporaryCopy
  ${EndIf}
SectionEnd

; When a person has closed the window.
Function un.onGUIEnd
  Call un.RemoveTemporaryCopy
FunctionEnd
