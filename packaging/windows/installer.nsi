; SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
; SPDX-License-Identifier: GPL-3.0-or-later
;
; The installer, compiled by scripts/windows/package, which defines VERSION, FILES (the folder with the files of the program),
; SETTINGS (the settings as shipped), SIZE (of the installed files, in KiB), LIST (the commands for each file) and OUTPUT.
;
; Silent modes: /S, /D=FOLDER (last, without quotes), /AUTOSTART; uninstall.exe /S, /REMOVESETTINGS.
; Exit codes: 0 done; 1 cancelled; 2 Windows is too old; 3 the program is running and did not end, nothing was changed;
; 4 a file can't be written, or the copy in another folder can't be removed; 5 the folder has a portable copy.
Unicode true
Target amd64-unicode
RequestExecutionLevel user
ManifestDPIAware true
ManifestLongPathAware true
ManifestSupportedOS Win10
SetCompressor /SOLID lzma
CRCCheck force

!include FileFunc.nsh
!include LogicLib.nsh
!include MUI2.nsh
!include Sections.nsh
!include WinVer.nsh

!define PROGRAM "DuskBeacon.exe"
!define SETTINGS_FOLDER "$LOCALAPPDATA\dusk-beacon"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\DuskBeacon"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
!define RUN_VALUE "DuskBeacon"
!define TOO_OLD 2
!define STILL_RUNNING 3
!define NOT_WRITTEN 4
!define PORTABLE_COPY 5
; Version 1903, the first with the UTF-8 code page of the program's manifest.
!define OLDEST_BUILD 18362

Name "Dusk Beacon"
OutFile "${OUTPUT}"
BrandingText " "
InstallDir "$LOCALAPPDATA\Programs\Dusk Beacon"
; An upgrade goes where the installed copy is.
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Dusk Beacon"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Dusk Beacon installer"
VIAddVersionKey "CompanyName" "Dusk Beacon contributors"
VIAddVersionKey "LegalCopyright" "GNU General Public License, version 3 or later"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\${PROGRAM}"
!define MUI_FINISHPAGE_NOREBOOTSUPPORT
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

!macro Fail code text
  SetErrorLevel ${code}
  MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
  Quit
!macroend

; The functions that end a running program, for the installer and for the uninstaller.
!macro EndingFunctions un
; Sends message $0 with wParam $1 and ENDSESSION_CLOSEAPP to every window of the installed program, as Windows does at the end of
; the session: hidden windows get it too. $2 becomes 0 if a window answers 0.
Function ${un}SendToProgram
  StrCpy $2 1
  StrCpy $3 0
  ${Do}
    System::Call 'user32::FindWindowExW(p 0, p r3, p 0, p 0) p .r3'
    ${If} $3 P= 0
      ${ExitDo}
    ${EndIf}
    System::Call 'user32::GetWindowThreadProcessId(p r3, *i .r4)'
    ; PROCESS_QUERY_LIMITED_INFORMATION
    System::Call 'kernel32::OpenProcess(i 0x1000, i 0, i r4) p .r5'
    ${If} $5 P<> 0
      StrCpy $6 ""
      System::Call 'kernel32::QueryFullProcessImageNameW(p r5, i 0, w .r6, *i ${NSIS_MAX_STRLEN})'
      System::Call 'kernel32::CloseHandle(p r5)'
      ${If} $6 == $9
        ; SMTO_ABORTIFHUNG. Without an answer the result stays 1.
        System::Call 'user32::SendMessageTimeoutW(p r3, i r0, p r1, p 1, i 2, i 3000, *p 1 r7) p .r8'
        ${If} $8 P<> 0
        ${AndIf} $7 P= 0
          StrCpy $2 0
        ${EndIf}
      ${EndIf}
    ${EndIf}
  ${Loop}
FunctionEnd

; $2 becomes 1 if the program's file in the folder $R8 can be replaced: Windows refuses that while the program runs.
Function ${un}IsReplaceable
  StrCpy $2 1
  ${If} ${FileExists} "$R8\${PROGRAM}"
    ClearErrors
    FileOpen $3 "$R8\${PROGRAM}" a
    ${If} ${Errors}
      StrCpy $2 0
    ${Else}
      FileClose $3
    ${EndIf}
  ${EndIf}
FunctionEnd

; Asks the program of the folder $R8 to end, as the session would, and waits for at most some fifteen seconds. The program is
; never killed.
Function ${un}EndProgram
  ${un}ask:
  StrCpy $9 "$R8\${PROGRAM}"
  System::Call 'kernel32::GetLongPathNameW(w r9, w .r9, i ${NSIS_MAX_STRLEN})'
  ; More than once: the list of windows is cut short when a window disappears, and two copies may be running.
  ${ForEach} $R0 1 3 + 1
    Call ${un}IsReplaceable
    ${If} $2 = 1
      Return
    ${EndIf}
    ; WM_QUERYENDSESSION, then WM_ENDSESSION with the answer.
    StrCpy $0 0x11
    StrCpy $1 0
    Call ${un}SendToProgram
    StrCpy $0 0x16
    StrCpy $1 $2
    Call ${un}SendToProgram
    ${ForEach} $R1 1 25 + 1
      Call ${un}IsReplaceable
      ${If} $2 = 1
        Return
      ${EndIf}
      Sleep 200
    ${Next}
  ${Next}
  MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Dusk Beacon is running and did not end, or another program uses its file.$\n$\nRight-click the icon of Dusk Beacon in the notification area and choose Exit, then choose Retry. Nothing has been changed so far." /SD IDCANCEL IDRETRY ${un}ask
  SetErrorLevel ${STILL_RUNNING}
  Quit
FunctionEnd
!macroend
!insertmacro EndingFunctions ""
!insertmacro EndingFunctions "un."

!macro Put folder name
  SetOutPath "$INSTDIR${folder}"
  ClearErrors
  File "${FILES}/${name}"
  ${If} ${Errors}
    !insertmacro Fail ${NOT_WRITTEN} "A file can't be written into $INSTDIR${folder}. Is the disk full?"
  ${EndIf}
!macroend
!macro Remove name
  Delete "$INSTDIR\${name}"
!macroend
!macro RemoveFolder name
  RMDir "$INSTDIR\${name}"
!macroend
!include "${LIST}"

; Leaves the value of another copy, for example of a portable one.
!macro RemoveAutostart
  ReadRegStr $0 HKCU "${RUN_KEY}" "${RUN_VALUE}"
  ${If} $0 == '"$INSTDIR\${PROGRAM}"'
    DeleteRegValue HKCU "${RUN_KEY}" "${RUN_VALUE}"
  ${EndIf}
!macroend

Section "Dusk Beacon" SectionProgram
  SectionIn RO
  Call RefusePortableCopy
  StrCpy $R8 "$INSTDIR"
  Call EndProgram
  Call FindOtherCopy
  ${If} $R9 != ""
    StrCpy $R8 "$R9"
    Call EndProgram
  ${EndIf}
  ; Qt loads every plugin that it finds, also one of an older version.
  Delete "$INSTDIR\platforms\*.dll"
  Delete "$INSTDIR\imageformats\*.dll"
  !insertmacro PutAll
  SetOutPath "$INSTDIR"
  Call PutSettings
  WriteUninstaller "$INSTDIR\uninstall.exe"
  ; After the new copy is complete, and before its entries, which have the names of the old ones.
  Call RemoveOtherCopy
  CreateShortcut "$SMPROGRAMS\Dusk Beacon.lnk" "$INSTDIR\${PROGRAM}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Dusk Beacon"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Dusk Beacon contributors"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\${PROGRAM}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" ${SIZE}
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section /o "Start with Windows" SectionAutostart
SectionEnd

Section
  ${If} ${SectionIsSelected} ${SectionAutostart}
    WriteRegStr HKCU "${RUN_KEY}" "${RUN_VALUE}" '"$INSTDIR\${PROGRAM}"'
  ${Else}
    !insertmacro RemoveAutostart
  ${EndIf}
SectionEnd

; A folder with settings.xml would make the installed program a portable one, and its uninstaller would remove the user's copy.
Function RefusePortableCopy
  ${If} ${FileExists} "$INSTDIR\settings.xml"
  ${AndIfNot} ${FileExists} "$INSTDIR\uninstall.exe"
    !insertmacro Fail ${PORTABLE_COPY} "$INSTDIR has a portable copy of Dusk Beacon. Choose another folder."
  ${EndIf}
FunctionEnd

; Only one copy is installed: with /D an upgrade may go to another folder. $R9 becomes the folder of the other copy, or empty.
Function FindOtherCopy
  ReadRegStr $R9 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $R9 == $INSTDIR
  ${OrIfNot} ${FileExists} "$R9\uninstall.exe"
    StrCpy $R9 ""
    Return
  ${EndIf}
  ; One folder may have two names, for example through a link: then a file in one is in the other.
  CreateDirectory "$INSTDIR"
  GetTempFileName $0 "$INSTDIR"
  ${GetFileName} "$0" $1
  ${If} ${FileExists} "$R9\$1"
    StrCpy $R9 ""
  ${EndIf}
  Delete "$0"
FunctionEnd

; Removes the copy in the folder $R9, if that is not empty.
Function RemoveOtherCopy
  ${If} $R9 == ""
    Return
  ${EndIf}
  ClearErrors
  ; With _? the uninstaller runs from its own folder, and its exit code can be read; it can't delete itself then.
  ExecWait '"$R9\uninstall.exe" /S _?=$R9' $1
  ${If} ${Errors}
  ${OrIf} $1 <> 0
    !insertmacro Fail ${NOT_WRITTEN} "Dusk Beacon in $R9 can't be removed and stays installed. Remove it and start this installer again."
  ${EndIf}
  Delete "$R9\uninstall.exe"
  RMDir "$R9"
FunctionEnd

; The program never creates its settings: a missing file is put there, an existing one stays. A rename, so that there is either
; the complete file or none.
Function PutSettings
  ${If} ${FileExists} "${SETTINGS_FOLDER}\settings.xml"
    Return
  ${EndIf}
  CreateDirectory "${SETTINGS_FOLDER}"
  ClearErrors
  File "/oname=${SETTINGS_FOLDER}\settings.xml.installed" "${SETTINGS}"
  Rename "${SETTINGS_FOLDER}\settings.xml.installed" "${SETTINGS_FOLDER}\settings.xml"
  ${If} ${Errors}
    Delete "${SETTINGS_FOLDER}\settings.xml.installed"
    !insertmacro Fail ${NOT_WRITTEN} "The settings can't be put into ${SETTINGS_FOLDER}. Is the disk full?"
  ${EndIf}
FunctionEnd

Function .onInit
  ${IfNot} ${AtLeastWin10}
  ${OrIfNot} ${AtLeastBuild} ${OLDEST_BUILD}
    !insertmacro Fail ${TOO_OLD} "Dusk Beacon needs Windows 10 version 1903 or later."
  ${EndIf}
  ; An upgrade offers what was chosen for the installed copy.
  ReadRegStr $0 HKCU "${RUN_KEY}" "${RUN_VALUE}"
  ReadRegStr $3 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/AUTOSTART" $2
  ${IfNot} ${Errors}
  ${OrIf} $0 == '"$3\${PROGRAM}"'
    !insertmacro SelectSection ${SectionAutostart}
  ${EndIf}
FunctionEnd

Section "un.Dusk Beacon"
  SectionIn RO
  StrCpy $R8 "$INSTDIR"
  Call un.EndProgram
  !insertmacro RemoveAll
  ; Written by the program.
  Delete "$INSTDIR\temp.html"
  Delete "$INSTDIR\uninstall.exe"
  ; Only if it is empty: the user may have chosen a folder with other files.
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Dusk Beacon.lnk"
  !insertmacro RemoveAutostart
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd

Section /o "un.My places, options and volume" SectionRemoveSettings
  Delete "${SETTINGS_FOLDER}\settings.xml"
  Delete "${SETTINGS_FOLDER}\volume"
  ; Of a save that was killed.
  Delete "${SETTINGS_FOLDER}\*.saving-??????"
  RMDir "${SETTINGS_FOLDER}"
SectionEnd

Function un.onInit
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/REMOVESETTINGS" $2
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${SectionRemoveSettings}
  ${EndIf}
FunctionEnd
