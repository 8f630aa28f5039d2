; Removes what the installer has made, and nothing else.
Function un.onInit
  SetRegView 64
  Call un.RefuseSecondRun
  ${BeginLog} "Uninstalling ${PRODUCT}"
  Call un.ReadRights
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "${ELEVATED}" $1
  ${IfNot} ${Errors}
    StrCpy $WasElevated 1
  ${EndIf}
  ${FullPath} $INSTDIR
  ; Each scope has its own folder for the uninstaller.
  StrCpy $Scope "user"
  Call un.ApplyScope
  ${If} $ProgramFolder != $INSTDIR
    StrCpy $Scope "all"
    Call un.ApplyScope
    ; Else another user's, started by this one, would remove what is there for all.
    ${If} $ProgramFolder != $INSTDIR
      ${Refuse} ${EXIT_NOT_INSTALLED} \
        "Nothing is installed in $INSTDIR for this user or for all. Start it as the user for whom it was installed."
    ${EndIf}
    ${If} $IsElevated = 0
      ${Elevate} "$ProgramFolder\uninstall.exe" ""
    ${EndIf}
  ${EndIf}
FunctionEnd

Section Uninstall
  ReadRegStr $PluginFolder SHCTX "${APPS_ENTRY}" "PluginFolder"
  ${If} $PluginFolder == ""
    ${Refuse} ${EXIT_NOT_INSTALLED} \
      "The registry does not tell where the plug-in is. Install it again, then remove it."
  ${EndIf}
  Call un.RefuseWhileHostRuns
  ${RefuseWhileFileInUse} "$PluginFolder"
  Delete "$PluginFolder\${PLUGIN_FILE}"
  ${If} ${FileExists} "$PluginFolder\${PLUGIN_FILE}"
    ${Refuse} ${EXIT_NOT_WRITABLE} "$PluginFolder\${PLUGIN_FILE} cannot be removed."
  ${EndIf}
  ${DeleteLeftovers} "$PluginFolder\${PLUGIN_FILE}"
  ${DeleteWithLeftovers} "$ProgramFolder\uninstall.exe"
  ${EachText} DeleteWithLeftovers
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
