; The installer. scripts/package/make passes the names and the list of files.
;
; It is for the one who runs it and asks for no administrator: kTools writes settings, logs and backups beside
; its program, which "Program Files" would not let it do without one. A folder of the drive's own is open to
; whoever made it, is easy to find for the one who looks for a backup, and its name is the same for every user:
; kTools handles names as 8-bit text, and a user's name in the path might not fit in. Its other users are kept out of the folder that the installer makes.

Target ${STUB}
SetCompressor /SOLID lzma
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include ${FILES}

!define TITLE "Kerno Tools"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${TITLE}"
!define AUTOSTART "Software\Microsoft\Windows\CurrentVersion\Run"
!define SHORTCUT "$SMPROGRAMS\${TITLE}.lnk"
!define PUBLISHER "The Kerno Tools project"
; A name that no other product's has: a program of another product must never be taken for it.
!define UNINSTALLER "kTools-uninstall.exe"
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
VIAddVersionKey CompanyName "${PUBLISHER}"
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
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Supervise the servers after each start of Windows"
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

; How many folders on the way to $INSTDIR are missing, itself included.
Var missing
; The uninstaller of our earlier installation in $INSTDIR, or "".
Var earlier

; Calls a function of the system with a structure, which has gaps before pointers in 64-bit programs only.
!if ${NSIS_PTR_SIZE} > 4
  !define SECURITY_ATTRIBUTES "(i 24, i 0, p r3, i 0, i 0)"
!else
  !define SECURITY_ATTRIBUTES "(i 12, p r3, i 0)"
!endif

; Makes the folder in $0, for its user, the administrators and the system alone. From the very first moment: a
; drive's own folders are open to every user of the computer, and a file that stands here before ours is one of
; theirs.
Function MakePrivateFolder
  StrCpy $2 ""
  System::Call 'kernel32::GetCurrentProcess() p .r1'
  System::Call 'advapi32::OpenProcessToken(p r1, i 8, *p .r1) i .r4'
  ${If} $4 <> 0
    ; TokenUser: a structure that begins with the address of the user's id.
    System::Call 'advapi32::GetTokenInformation(p r1, i 1, p 0, i 0, *i .r4)'
    System::Alloc $4
    Pop $5
    System::Call 'advapi32::GetTokenInformation(p r1, i 1, p r5, i r4, *i .r4)'
    System::Call '*$5(p .r4)'
    System::Call 'advapi32::ConvertSidToStringSidW(p r4, *p .r4) i .r6'
    ${If} $6 <> 0
      System::Call '*$4(&w200 .r2)'
      System::Call 'kernel32::LocalFree(p r4)'
    ${EndIf}
    System::Free $5
    System::Call 'kernel32::CloseHandle(p r1)'
  ${EndIf}
  SetErrors
  ${If} $2 != ""
    System::Call 'advapi32::ConvertStringSecurityDescriptorToSecurityDescriptorW(\
w "D:P(A;OICI;FA;;;$2)(A;OICI;FA;;;BA)(A;OICI;FA;;;SY)", i 1, *p .r3, p 0) i .r4'
    ${If} $4 <> 0
      System::Call '*${SECURITY_ATTRIBUTES} p .r5'
      System::Call 'kernel32::CreateDirectoryW(w r0, p r5) i .r4'
      ${If} $4 <> 0
        ClearErrors
      ${EndIf}
      System::Free $5
      System::Call 'kernel32::LocalFree(p r3)'
    ${EndIf}
  ${EndIf}
FunctionEnd

; Makes $INSTDIR where it is missing, and counts in $missing what was made.
Function MakeFolder
  StrCpy $missing 0
  StrCpy $0 "$INSTDIR"
  ${DoUntil} ${FileExists} "$0\*.*"
    IntOp $missing $missing + 1
    ${GetParent} $0 $0
    ${If} $0 == ""
      ${Break}
    ${EndIf}
  ${Loop}
  ClearErrors
  ${If} $missing > 1
    ${GetParent} $INSTDIR $0
    CreateDirectory $0
  ${EndIf}
  ${If} $missing > 0
    StrCpy $0 "$INSTDIR"
    Call MakePrivateFolder
  ${EndIf}
FunctionEnd

; Takes back what MakeFolder made, as far as nothing is in it.
Function TakeFolderBack
  StrCpy $0 "$INSTDIR"
  ${While} $missing > 0
    RMDir $0
    ${GetParent} $0 $0
    IntOp $missing $missing - 1
  ${EndWhile}
FunctionEnd

!macro Refuse TEXT
  MessageBox MB_OK|MB_ICONEXCLAMATION "${TEXT}" /SD IDOK
  SetErrorLevel ${REFUSED}
  Abort
!macroend

; Sets $earlier. Only what this user's list of programs names is ours: it may be run.
Function FindEarlier
  StrCpy $earlier ""
  ReadRegStr $0 HKCU "${KEY}" InstallLocation
  ReadRegStr $1 HKCU "${KEY}" UninstallString
  ${If} $0 == $INSTDIR
    ${If} $1 == '"$INSTDIR\${UNINSTALLER}"'
      StrCpy $earlier "$INSTDIR\${UNINSTALLER}"
    ; The name that version 1.0.0 gave it.
    ${ElseIf} $1 == '"$INSTDIR\Uninstall.exe"'
      StrCpy $earlier "$INSTDIR\Uninstall.exe"
    ${EndIf}
  ${EndIf}
FunctionEnd

; A folder of nobody else: no installation by another user, no programs of other products.
Function CheckOthers
  ${If} $earlier != ""
    Return
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\${UNINSTALLER}"
    !insertmacro Refuse "Another user of this computer has installed ${TITLE} in $INSTDIR. Please choose another \
folder, or have it removed there first: ${UNINSTALLER} in that folder does that."
  ${EndIf}
  FindFirst $0 $1 "$INSTDIR\*.exe"
  ${DoWhile} $1 != ""
    ${If} $1 != "kTools.exe"
      FindClose $0
      ${If} ${Cmd} `MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "$INSTDIR holds another program: $1. ${TITLE} \
keeps its settings, logs and backups in its folder, and should have one of its own. Install it there all the same?" \
/SD IDNO IDNO`
        SetErrorLevel ${REFUSED}
        Abort
      ${EndIf}
      Return
    ${EndIf}
    FindNext $0 $1
  ${Loop}
  FindClose $0
FunctionEnd

Function CheckFolder
  Call FindEarlier
  Call CheckOthers
  Call MakeFolder
  ${IfNot} ${Errors}
    GetTempFileName $1 "$INSTDIR"
    ${IfNot} ${Errors}
      Delete $1
      ClearErrors
    ${EndIf}
  ${EndIf}
  ; Whoever turns back now finds no empty folder later.
  ${If} ${Errors}
    Call TakeFolderBack
    !insertmacro Refuse "You may not write in $INSTDIR, so ${TITLE} could not keep its settings there. Please choose \
another folder."
  ${EndIf}
  Call TakeFolderBack
  !insertmacro LeaveWhileRunning
FunctionEnd

Section
  ${If} ${Silent}
    Call CheckFolder
  ${EndIf}
  ; The version that is there knows which of its files are to go and which have been changed and stay.
  ${If} $earlier != ""
  ${AndIf} ${FileExists} $earlier
    ; The start with Windows is the operator's choice, which an upgrade keeps.
    ReadRegStr $8 HKCU "${AUTOSTART}" "${TITLE}"
    ExecWait '"$earlier" /S _?=$INSTDIR'
    ${If} $8 != ""
      WriteRegStr HKCU "${AUTOSTART}" "${TITLE}" $8
    ${EndIf}
    ; A program cannot delete itself while it runs where it stands.
    Delete $earlier
  ${EndIf}
  Call MakeFolder
  ClearErrors
  !insertmacro InstallFiles
  SetOutPath "$INSTDIR"
  SetOverwrite on
  WriteUninstaller "$INSTDIR\${UNINSTALLER}"
  ${If} ${Errors}
    Call TakeFolderBack
    SetErrorLevel ${REFUSED}
    Abort "Not all files could be written to $INSTDIR."
  ${EndIf}
  CreateShortcut "${SHORTCUT}" "$INSTDIR\kTools.exe"
  WriteRegStr HKCU "${KEY}" DisplayName "${TITLE}"
  WriteRegStr HKCU "${KEY}" DisplayVersion "${VERSION}"
  WriteRegStr HKCU "${KEY}" Publisher "${PUBLISHER}"
  WriteRegStr HKCU "${KEY}" DisplayIcon "$INSTDIR\kTools.exe"
  WriteRegStr HKCU "${KEY}" InstallLocation "$INSTDIR"
  WriteRegStr HKCU "${KEY}" UninstallString '"$INSTDIR\${UNINSTALLER}"'
  WriteRegStr HKCU "${KEY}" QuietUninstallString '"$INSTDIR\${UNINSTALLER}" /S'
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
  IntOp $1 $1 | 0
  ${If} "$0 $1" == "$2 $3"
    Delete "$INSTDIR\${FILE}"
  ${EndIf}
!macroend

Section Uninstall
  !insertmacro LeaveWhileRunning
  GetFileTimeLocal "${ANY_FILE}" $2 $3
  ; A half beyond 2^31 is told as a negative number by a 32-bit program, and as itself by the others and here.
  IntOp $3 $3 | 0
  !insertmacro RemoveFiles
  Delete "$INSTDIR\${UNINSTALLER}"
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
