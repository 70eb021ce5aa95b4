; The installer for Windows. packaging/windows/make gives VERSION, STAGE (the folder that is installed), LISTS (what
; lies in it, as commands) and OUT.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel admin
Name "ORVIN-OSD ${VERSION}"
OutFile "${OUT}"
InstallDir "$PROGRAMFILES64\ORVIN-OSD"
LicenseData "${STAGE}\Licences.txt"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "ORVIN-OSD"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Installer of ORVIN-OSD"
VIAddVersionKey LegalCopyright "The ORVIN-OSD authors"
!include LogicLib.nsh

!define REMOVAL "Software\Microsoft\Windows\CurrentVersion\Uninstall\ORVIN-OSD"
!define SETTINGS "SOFTWARE\Zarn\ORVIN-OSD"
; Owner and all rights: administrators and the system. Everybody else reads. Nothing is taken from the folder above.
!define OWNER "O:BAG:BAD:PAI"
!define FOLDER_RIGHTS "${OWNER}(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)"
!define FILE_RIGHTS "${OWNER}(A;;FA;;;SY)(A;;FA;;;BA)(A;;0x1200a9;;;BU)"
!define OWNER_AND_PROTECTED_RIGHTS 0x80000005

Page license
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Var Root ; the data: ...\ZARN

Function .onInit
    SetShellVarContext all ; $APPDATA is the common folder, the start menu everybody's
    SetRegView 64
    StrCpy $Root "$APPDATA\ZARN"
FunctionEnd

Function un.onInit
    SetShellVarContext all
    SetRegView 64
    StrCpy $Root "$APPDATA\ZARN"
FunctionEnd

!macro Fail words
    SetErrorLevel 2
    DetailPrint "${words}"
    IfSilent +2
    MessageBox MB_ICONSTOP "${words}"
    Abort "${words}"
!macroend

; Gives the path on the stack the rights that are below it on the stack.
Function SetRights
    Exch $0
    Exch
    Exch $1
    Push $2
    Push $3
    System::Call 'advapi32::ConvertStringSecurityDescriptorToSecurityDescriptorW(w r1, i 1, *p .r2, p 0) i .r3'
    ${If} $3 <> 0
        System::Call 'advapi32::SetFileSecurityW(w r0, i ${OWNER_AND_PROTECTED_RIGHTS}, p r2) i .r3'
        System::Call 'kernel32::LocalFree(p r2)'
    ${EndIf}
    ${If} $3 = 0
        !insertmacro Fail "The rights of $0 cannot be set."
    ${EndIf}
    Pop $3
    Pop $2
    Pop $1
    Pop $0
FunctionEnd

!macro Protect path rights
    Push "${rights}"
    Push "${path}"
    Call SetRights
!macroend

; Everybody may make folders below the common data folder, so somebody may have been here first: a link would lead our
; writing elsewhere, and what belongs to another could be changed later. Path on the stack, a folder.
Function ProtectTree
    Exch $0
    Push $1
    Push $2
    Push $3
    System::Call 'kernel32::GetFileAttributesW(w r0) i .r3'
    IntOp $3 $3 & 0x400
    ${If} $3 <> 0
        !insertmacro Fail "$0 is a link. Remove it and install again."
    ${EndIf}
    !insertmacro Protect $0 "${FOLDER_RIGHTS}"
    FindFirst $1 $2 "$0\*"
    ${DoWhile} $2 != ""
        ${If} $2 != "."
        ${AndIf} $2 != ".."
            System::Call 'kernel32::GetFileAttributesW(w "$0\$2") i .r3'
            IntOp $3 $3 & 0x10
            ${If} $3 <> 0
                Push "$0\$2"
                Call ProtectTree
            ${Else}
                !insertmacro Protect "$0\$2" "${FILE_RIGHTS}"
            ${EndIf}
        ${EndIf}
        FindNext $1 $2
    ${Loop}
    FindClose $1
    Pop $3
    Pop $2
    Pop $1
    Pop $0
FunctionEnd

; Programs that run with the overlay hold the library; Windows lets it be renamed all the same.
!macro MakeRoom
    Delete /REBOOTOK "$INSTDIR\ORVIN-OSD64-GL.dll.old"
    Rename "$INSTDIR\ORVIN-OSD64-GL.dll" "$INSTDIR\ORVIN-OSD64-GL.dll.old"
    Delete /REBOOTOK "$INSTDIR\ORVIN-OSD64-GL.dll.old"
    ClearErrors
!macroend

Section "ORVIN-OSD"
    CreateDirectory "$Root\Orvin Deck\ORVIN-OSD\Data"
    Push "$Root"
    Call ProtectTree
    !insertmacro MakeRoom
    !include "${LISTS}\install.nsh"
    ${If} ${Errors}
        !insertmacro Fail "A file cannot be written. Close the programs that run with the overlay and install again."
    ${EndIf}

    ReadRegStr $0 HKLM "${SETTINGS}" "" ; values of an earlier version stay
    EnumRegKey $0 HKLM "${SETTINGS}" 0
    ${If} $0 == ""
        nsExec::Exec '"$SYSDIR\reg.exe" import "$INSTDIR\Settings\settings.reg"'
        Pop $0
        ${If} $0 != 0
            !insertmacro Fail "The settings cannot be imported."
        ${EndIf}
    ${EndIf}

    SetOutPath "$INSTDIR"
    CreateDirectory "$SMPROGRAMS\ORVIN-OSD"
    CreateShortcut "$SMPROGRAMS\ORVIN-OSD\ORVIN-OSD command line.lnk" "$SYSDIR\cmd.exe" '/k orvin-osd --help'
    CreateShortcut "$SMPROGRAMS\ORVIN-OSD\Publish sensors.lnk" "$INSTDIR\orvin-osd.exe" "feed"
    CreateShortcut "$SMPROGRAMS\ORVIN-OSD\Manual.lnk" "$INSTDIR\Manual.txt"
    CreateShortcut "$SMPROGRAMS\ORVIN-OSD\Remove ORVIN-OSD.lnk" "$INSTDIR\uninstall.exe"

    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKLM "${REMOVAL}" DisplayName "ORVIN-OSD"
    WriteRegStr HKLM "${REMOVAL}" DisplayVersion "${VERSION}"
    WriteRegStr HKLM "${REMOVAL}" Publisher "The ORVIN-OSD authors"
    WriteRegStr HKLM "${REMOVAL}" InstallLocation "$INSTDIR"
    WriteRegStr HKLM "${REMOVAL}" UninstallString '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${REMOVAL}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${REMOVAL}" NoModify 1
    WriteRegDWORD HKLM "${REMOVAL}" NoRepair 1
SectionEnd

; Profiles and pictures that somebody made stay, with the folders that they lie in.
Section "Uninstall"
    ExecWait '"$INSTDIR\orvin-osd.exe" unhook'
    !insertmacro MakeRoom
    !include "${LISTS}\remove.nsh"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    RMDir "$Root\Orvin Deck\ORVIN-OSD"
    RMDir "$Root\Orvin Deck"
    RMDir "$Root"
    Delete "$SMPROGRAMS\ORVIN-OSD\*.lnk"
    RMDir "$SMPROGRAMS\ORVIN-OSD"
    DeleteRegKey HKLM "${SETTINGS}"
    DeleteRegKey /ifempty HKLM "SOFTWARE\Zarn"
    DeleteRegKey HKLM "${REMOVAL}"
SectionEnd
