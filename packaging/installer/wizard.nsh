; What a person sees. A silent run passes all of it over.
!define MUI_ABORTWARNING
!define MUI_CUSTOMFUNCTION_ABORT DiscardLog
!define MUI_CUSTOMFUNCTION_UNABORT un.DiscardLog

Var ScopeForAll
Var HostList
Var FolderField
Var FinishText

Page custom ShowScopePage LeaveScopePage
Page custom ShowHostsPage LeaveHostsPage
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TITLE "${PRODUCT} is installed"
!define MUI_FINISHPAGE_TEXT "$FinishText"
!define MUI_FINISHPAGE_TEXT_LARGE
!define MUI_PAGE_CUSTOMFUNCTION_PRE SetFinishText
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Function ShowScopePage
  ${If} $WantedScope != ""
    Abort
  ${EndIf}
  !insertmacro MUI_HEADER_TEXT "For whom?" "${PRODUCT} for ${HOST}"
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateRadioButton} 0 10u 100% 12u "&All users of this computer (Windows asks for an administrator)"
  Pop $ScopeForAll
  ${NSD_CreateRadioButton} 0 30u 100% 12u "&Only me (a preference of the host has to be set afterwards)"
  Pop $0
  ${If} $Scope == "all"
    ${NSD_Check} $ScopeForAll
  ${Else}
    ${NSD_Check} $0
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function LeaveScopePage
  ${NSD_GetState} $ScopeForAll $0
  ${If} $0 = ${BST_CHECKED}
    StrCpy $Scope "all"
  ${Else}
    StrCpy $Scope "user"
  ${EndIf}
  Call UseScope
FunctionEnd

; For one user there is nothing to choose.
Function ShowHostsPage
  ${If} $Scope == "user"
    Abort
  ${EndIf}
  !insertmacro MUI_HEADER_TEXT "Where?" "The folder for the plug-in"
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateLabel} 0 0 100% 10u "Copies of ${HOST} on this computer:"
  Pop $0
  ${NSD_CreateListBox} 0 12u 100% 56u ""
  Pop $HostList
  ${NSD_OnChange} $HostList TakeHost
  ${NSD_CreateLabel} 0 76u 100% 10u "The plug-in goes to:"
  Pop $0
  ${NSD_CreateDirRequest} 0 88u 80% 12u "$PluginFolder"
  Pop $FolderField
  ${NSD_CreateBrowseButton} 82% 87u 18% 14u "&Browse..."
  Pop $0
  ${NSD_OnClick} $0 BrowseForFolder
  Call ListHosts
  nsDialogs::Show
FunctionEnd

Function ListHosts
  FileOpen $0 "$Hosts" r
  ${If} $0 != ""
    ${Do}
      ClearErrors
      FileReadUTF16LE $0 $1
      ${If} ${Errors}
        ${ExitDo}
      ${EndIf}
      StrCpy $1 $1 -2
      ${NSD_LB_AddString} $HostList $1
    ${Loop}
    FileClose $0
  ${EndIf}
FunctionEnd

Function TakeHost
  ${NSD_LB_GetSelection} $HostList $0
  ${If} $0 != ""
    ${NSD_SetText} $FolderField "$0\${HOST_PLUGINS}\${OWN_FOLDER}"
  ${EndIf}
FunctionEnd

Function BrowseForFolder
  nsDialogs::SelectFolderDialog "A folder for plug-ins of ${HOST}" "$PROGRAMFILES64"
  Pop $0
  ${If} $0 != error
    ${NSD_SetText} $FolderField "$0"
  ${EndIf}
FunctionEnd

Function LeaveHostsPage
  ${NSD_GetText} $FolderField $PluginFolder
  ${If} $PluginFolder == ""
    MessageBox MB_OK|MB_ICONEXCLAMATION "Choose a copy of ${HOST}, or a folder."
    Abort
  ${EndIf}
  Push $PluginFolder
  Call IsWholePath
  Pop $0
  ${If} $0 = 0
    MessageBox MB_OK|MB_ICONEXCLAMATION "The folder must be a whole path, such as C:\Plug-ins."
    Abort
  ${EndIf}
  ${FullPath} $PluginFolder
FunctionEnd

Function SetFinishText
  ; In a text on a window, one & underlines the letter behind it.
  ${WordReplace} "$PluginFolder" "&" "&&" "+" $0
  ${If} $Scope == "all"
    StrCpy $FinishText "The font manager's commands are in the host's menu when ${HOST} starts the next time."
    StrCpy $FinishText "$FinishText$\r$\n$\r$\nThe plug-in is in $0"
  ${Else}
    StrCpy $FinishText "One thing is left to do. In ${HOST}, set Preferences > Plug-ins && Scratch Disks >"
    StrCpy $FinishText "$FinishText Additional Plug-ins Folder to$\r$\n$\r$\n$0"
    StrCpy $FinishText "$FinishText$\r$\n$\r$\nand start it again."
  ${EndIf}
FunctionEnd
