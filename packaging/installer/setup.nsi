; The installer of the plug-in. packaging/setup_program.py calls makensis and defines:
;   VERSION     the version number, three parts
;   PLUGIN      the plug-in's file as it is shipped
;   TEXTS       the folder of the texts that are laid beside the uninstaller: texts.nsh names them
;   OUTPUT      the program to be written
;   SIZE_IN_KB  of what is installed, for the list of installed apps
;   SIGN        optional: a command that signs the file whose name follows, for the uninstaller inside
;
; docs/installing.md says what it does; tests/packages/ tries it.

; Else the program is a 32-bit one. Those see other folders and another registry than the host does.
Target amd64-unicode

!define PRODUCT "Quorvel Type Agent"
!define PUBLISHER "Quorvel"
!define PLUGIN_FILE "QuorvelTypeAgentAI20.aip"
!define HOST "Adobe Illustrator CC 2015.3"
!define HOST_MAJOR_VERSION 20
!define HOST_PROGRAM "Illustrator.exe"
!define HOST_PROGRAM_FOLDER "Support Files\Contents\Windows"

Name "${PRODUCT}"
OutFile "${OUTPUT}"
BrandingText "${PRODUCT} ${VERSION}"
; Starts without administrator's rights; scope.nsh asks for them when they are needed.
RequestExecutionLevel user
ManifestSupportedOS Win10
ManifestDPIAware true
SetCompressor /SOLID lzma
; The same files give the same installer, whenever they were made.
SetDateSave off
; A file that cannot be written raises the error flag and shows no box of its own.
SetOverwrite try
ShowInstDetails show
ShowUninstDetails show

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey /LANG=1033 "ProductName" "${PRODUCT}"
VIAddVersionKey /LANG=1033 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileDescription" "Installs ${PRODUCT} for ${HOST}"
VIAddVersionKey /LANG=1033 "CompanyName" "${PUBLISHER}"
VIAddVersionKey /LANG=1033 "LegalCopyright" "Copyright the ${PRODUCT} authors"

!ifdef SIGN
  !uninstfinalize `${SIGN} "%1"` = 0
!endif

!include FileFunc.nsh
!include LogicLib.nsh
!include MUI2.nsh
!include nsDialogs.nsh
!include WinMessages.nsh
!include WordFunc.nsh

; What nearly every file speaks of; the others declare what is theirs.
Var Scope          ; "all" or "user"
Var ProgramFolder  ; of the uninstaller, the log and the texts
Var PluginFolder   ; of the plug-in, which lies elsewhere

; From the bottom upwards: each may use what stands above it.
!include shared.nsh
!include log.nsh
!include temporary_copy.nsh
!include exit_codes.nsh
!include second_run.nsh
!include paths.nsh
!include registry.nsh
!include folders.nsh
!include in_use.nsh
!include command_line.nsh
!include scope.nsh
!include hosts.nsh
!include target.nsh
!include other_copies.nsh
!include replace.nsh
!include texts.nsh
!include wizard.nsh
!include run_uninstaller.nsh
!include install.nsh
!include uninstall.nsh
