; The installer. scripts/package/make passes the names and the list of files.
;
; It is for the one who runs it and asks for no administrator: kTools writes settings, logs and backups beside
; its program, which "Program Files" would not let it do without one. A folder of the drive's own is open to
; whoever made it, is easy to find for the one who looks for a backup, and its name is the same for every user:
; kTools handles names as 8-bit text, and a user's name in the path might not fit in.

Target ${STUB}
SetCompressor /SOLID lzma
!include MUI2.nsh
!include LogicLib.nsh
!include ${FILES}

!define TITLE "Kerno Tools"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${TITLE}"
!define AUTOSTART "Software\Microsoft\Windows\CurrentVersion\Run"
!define SHORTCUT "$SMPROGRAMS\${TITLE}.lnk"
; Exit status of a silent run that could not do its work.
!define REFUSED 2

Name "${TITLE}"
OutFile "${SETUP}"
RequestExecutionLevel user
; The folder of an earlier installation, else the suggestion.
InstallDir "C:\${TITLE}"
InstallDirRegKey HKCU "${KEY}" InstallLocation
SetDateSave on
ManifestDPIAware true
BrandingText "${TITLE} ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${TITLE}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileDescription "${TITLE} installer"
VIAddVersionKey FileVersion "${VERSION}"
; makensis warns where this one is missing.
VIAddVersionKey LegalCopyright ""

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${SIDE}"
!define MUI_DIRECTORYPAGE_TEXT_TOP "${TITLE} keeps its settings, logs and backups in its own folder, so choose one \
in which you may write. Settings, logs and backups that are there already stay."
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE CheckFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\kTools.exe"
; The page's second check box.
!define MUI_FINISHPAGE_SHOWREADME
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Supervise the servers from the tray after each start of Windows"
!define MUI_FINISHPAGE_SHOWREADME_FUNCTION StartWithWindows
!insertmacro MUI_PAGE_FINISH
!define MUI_UNCONFIRMPAGE_TEXT_TOP "${TITLE} will be removed from this folder. Settings, logs, backups and the maps \
that you added or changed stay."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; A program that runs cannot be written to. There is a second try for the one who ends it now.
!macro LeaveWhileRunning
  ${Do}
    ${IfNot} ${FileExists} "$INSTDIR\kTools.exe"
      ${Break}
    ${EndIf}
    ClearErrors
    FileOpen $0 "$INSTDIR\kTools.exe" a
    ${IfNot} ${Errors}
      FileClose $0
      ${Break}
    ${EndIf}
    ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$INSTDIR\kTools.exe is in use. Please exit ${TITLE} \
(its tray icon may be hidden), then try again." /SD IDCANCEL IDCANCEL`
      SetErrorLevel ${REFUSED}
      Abort
    ${EndIf}
  ${Loop}
!macroend

Function StartWithWindows
  WriteRegStr HKCU "${AUTOSTART}" "${TITLE}" '"$INSTDIR\kTools.exe" /supervise'
FunctionEnd

Function CheckFolder
  ClearErrors
  CreateDirectory "$INSTDIR"
  GetTempFileName $0 "$INSTDIR"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONEXCLAMATION "You may not write in $INSTDIR, so ${TITLE} could not keep its settings \
there. Please choose another folder." /SD IDOK
    SetErrorLevel ${REFUSED}
    Abort
  ${EndIf}
  Delete $0
  !insertmacro LeaveWhileRunning
FunctionEnd

Section
  ${If} ${Silent}
    Call CheckFolder
  ${EndIf}
  ; The version that is there knows which of its files are to go and which have been changed and stay.
  ${If} ${FileExists} "$INSTDIR\Uninstall.exe"
    ExecWait '"$INSTDIR\Uninstall.exe" /S _?=$INSTDIR'
  ${EndIf}
  ClearErrors
  !insertmacro InstallFiles
  SetOutPath "$INSTDIR"
  SetOverwrite on
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  ${If} ${Errors}
    SetErrorLevel ${REFUSED}
    Abort "Not all files could be written to $INSTDIR."
  ${EndIf}
  CreateShortcut "${SHORTCUT}" "$INSTDIR\kTools.exe"
  WriteRegStr HKCU "${KEY}" DisplayName "${TITLE}"
  WriteRegStr HKCU "${KEY}" DisplayVersion "${VERSION}"
  WriteRegStr HKCU "${KEY}" DisplayIcon "$INSTDIR\kTools.exe"
  WriteRegStr HKCU "${KEY}" InstallLocation "$INSTDIR"
  WriteRegStr HKCU "${KEY}" UninstallString '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${KEY}" QuietUninstallString '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${KEY}" EstimatedSize ${SIZE}
  WriteRegDWORD HKCU "${KEY}" NoModify 1
  WriteRegDWORD HKCU "${KEY}" NoRepair 1
SectionEnd

!macro Remove FILE
  Delete "$INSTDIR\${FILE}"
!macroend

; All files of the packages have the same time of last change.
!macro RemoveUnlessChanged FILE
  GetFileTime "$INSTDIR\${FILE}" $0 $1
  ${If} "$0 $1" == "$2 $3"
    Delete "$INSTDIR\${FILE}"
  ${EndIf}
!macroend

Section Uninstall
  !insertmacro LeaveWhileRunning
  GetFileTimeLocal "${ANY_FILE}" $2 $3
  !insertmacro RemoveFiles
  Delete "$INSTDIR\Uninstall.exe"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"
  ; A later installation in another folder owns the menu entry now.
  ReadRegStr $0 HKCU "${KEY}" InstallLocation
  ${If} $0 == $INSTDIR
    Delete "${SHORTCUT}"
    DeleteRegValue HKCU "${AUTOSTART}" "${TITLE}"
    DeleteRegKey HKCU "${KEY}"
  ${EndIf}
SectionEnd
