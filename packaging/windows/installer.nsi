; The installer: for the user who runs it, without administrator rights, into a folder of that user's own. The
; program writes the icon of a package into its folder for a moment, which the common program folder would refuse.
;
; Defined by the caller: VERSION, STAGE (what goes in), OUTPUT.
Unicode true
Target amd64-unicode
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh

Name "Orvanta"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Orvanta"
InstallDirRegKey HKCU "Software\Orvanta\Installer" "Folder"
RequestExecutionLevel user
SetCompressor /SOLID lzma
BrandingText "Orvanta ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 "ProductName" "Orvanta"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileDescription" "Installs Orvanta"
VIAddVersionKey /LANG=0 "LegalCopyright" "Copyright (c) 2026 The Orvanta developers"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Orvanta"
!define MUI_ICON "${STAGE}\..\orvanta.ico"
!define MUI_UNICON "${STAGE}\..\orvanta.ico"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\README.txt"
!define MUI_FINISHPAGE_TEXT "Orvanta needs adb.exe in its folder. README.txt tells where it comes from."
!insertmacro MUI_PAGE_LICENSE "${STAGE}\licences\Orvanta.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "SimpChinese"

Section
  SetOutPath "$INSTDIR"
  ; A program that runs cannot be replaced; the installer then asks to try again.
  File "${STAGE}\orvanta.exe"
  File "${STAGE}\aapt-arm-pie"
  ; Another aapt.exe is the user's and stays. Ours is known by its time, which was kept when it was put there.
  ClearErrors
  GetFileTime "$INSTDIR\aapt.exe" $0 $1
  ${If} ${Errors}
    StrCpy $2 "ours"
  ${Else}
    ReadRegStr $2 HKCU "Software\Orvanta\Installer" "Aapt"
    ${If} $2 == "$0 $1"
      StrCpy $2 "ours"
    ${EndIf}
  ${EndIf}
  ${If} $2 == "ours"
    File "${STAGE}\aapt.exe"
    GetFileTime "$INSTDIR\aapt.exe" $0 $1
    WriteRegStr HKCU "Software\Orvanta\Installer" "Aapt" "$0 $1"
  ${EndIf}
  File "${STAGE}\README.txt"
  SetOutPath "$INSTDIR\licences"
  File "${STAGE}\licences\*.*"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\Orvanta.lnk" "$INSTDIR\orvanta.exe"

  WriteRegStr HKCU "Software\Orvanta\Installer" "Folder" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Orvanta"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\orvanta.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" "$0"
SectionEnd

; Takes away what the installer brought and nothing else: adb.exe, another aapt.exe and whatever else lies there are the
; user's, and the folder goes only if it is empty. The settings stay. The file manager's entry goes if it leads here.
Section "Uninstall"
  Delete "$INSTDIR\orvanta.exe"
  IfErrors 0 +3
    MessageBox MB_ICONSTOP "Orvanta is still running. Close it and try again." /SD IDOK
    Abort
  Delete "$INSTDIR\aapt-arm-pie"
  GetFileTime "$INSTDIR\aapt.exe" $0 $1
  ReadRegStr $2 HKCU "Software\Orvanta\Installer" "Aapt"
  ${If} $2 == "$0 $1"
    Delete "$INSTDIR\aapt.exe"
  ${EndIf}
  Delete "$INSTDIR\README.txt"
  Delete "$INSTDIR\licences\*.txt"
  RMDir "$INSTDIR\licences"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Orvanta.lnk"
  StrLen $1 "$INSTDIR\"
  ReadRegStr $0 HKCR "*\shell\Orvanta\Command" ""
  StrCpy $0 $0 $1
  ${If} $0 == "$INSTDIR\"
    ClearErrors
    DeleteRegKey HKCR "*\shell\Orvanta"
    ${If} ${Errors}
      MessageBox MB_ICONINFORMATION "The entry in the menu of APK files can be removed by an administrator only:$\r$\n$\r$\nreg delete HKCR\*\shell\Orvanta /f" /SD IDOK
    ${EndIf}
  ${EndIf}
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  DeleteRegKey HKCU "Software\Orvanta\Installer"
  DeleteRegKey /ifempty HKCU "Software\Orvanta"
SectionEnd
