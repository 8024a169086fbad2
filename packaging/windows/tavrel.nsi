; The installer. packaging/windows/build gives:
;   VERSION  of the program
;   FILES    folder with all that is installed
;   REMOVE   a file of instructions that remove exactly this again
;   ICON     of the installer
;   SETUP    the installer that is written

Unicode true
; The program is for 64 bits only, and so is its installer.
Target amd64-unicode
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tavrel"
!define PROGRAM "$INSTDIR\tavrel.exe"

Name "Tavrel"
OutFile "${SETUP}"
SetCompressor /SOLID lzma
RequestExecutionLevel admin
InstallDir "$PROGRAMFILES64\Tavrel"
ManifestDPIAware true
BrandingText "Tavrel ${VERSION}"

VIProductVersion "${VERSION}.0.0"
VIAddVersionKey "ProductName" "Tavrel"
VIAddVersionKey "CompanyName" "Brennick"
VIAddVersionKey "LegalCopyright" "Copyright 2026 Brennick"
VIAddVersionKey "FileDescription" "Tavrel"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_FUNCTION run_as_user
; Asked for every time: it becomes that of the program's first start.
!define MUI_LANGDLL_ALWAYSSHOW
!define MUI_LANGDLL_REGISTRY_ROOT HKLM
!define MUI_LANGDLL_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MUI_LANGDLL_REGISTRY_VALUENAME "Language"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES

; The first is for systems in any other language.
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "French"
!insertmacro MUI_RESERVEFILE_LANGDLL

LangString language_code ${LANG_ENGLISH} "en"
LangString language_code ${LANG_FRENCH} "fr"
LangString is_running ${LANG_ENGLISH} "Tavrel is running. Please close it."
LangString is_running ${LANG_FRENCH} "Tavrel est en cours d'utilisation. Veuillez le fermer."
LangString association ${LANG_ENGLISH} "Open .md5 and .sha1 files"
LangString association ${LANG_FRENCH} "Ouvrir les fichiers .md5 et .sha1"
LangString about_program ${LANG_ENGLISH} "The program and its entry in the start menu."
LangString about_program ${LANG_FRENCH} "Le programme et son entrée dans le menu Démarrer."
LangString about_association ${LANG_ENGLISH} "Checksum files open in Tavrel, and every file and folder can be opened in it. The options of the program do the same."
LangString about_association ${LANG_FRENCH} "Les fichiers de sommes s'ouvrent dans Tavrel, et tout fichier ou dossier peut y être ouvert. Les options du programme font de même."
LangString open_verb ${LANG_ENGLISH} "&Verify checksum..."
LangString open_verb ${LANG_FRENCH} "&Vérifier le checksum..."

; A program that runs can neither be replaced nor removed.
!macro WAIT_FOR_END
  ${DoWhile} ${FileExists} "${PROGRAM}"
    ClearErrors
    FileOpen $0 "${PROGRAM}" a
    ${IfNot} ${Errors}
      FileClose $0
      ${ExitDo}
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(is_running)" /SD IDCANCEL IDRETRY +2
    Abort
  ${Loop}
!macroend

; Gives an extension to the program and keeps who had it before.
!macro ASSOCIATE EXTENSION
  ReadRegStr $0 HKCR "${EXTENSION}" ""
  ${If} $0 != "Tavrel"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "Before${EXTENSION}" "$0"
  ${EndIf}
  WriteRegStr HKCR "${EXTENSION}" "" "Tavrel"
!macroend

; Gives it back, unless somebody else has taken it since.
!macro DISSOCIATE EXTENSION
  ReadRegStr $0 HKCR "${EXTENSION}" ""
  ${If} $0 == "Tavrel"
    ReadRegStr $0 HKLM "${UNINSTALL_KEY}" "Before${EXTENSION}"
    ${If} $0 == ""
      DeleteRegValue HKCR "${EXTENSION}" ""
      DeleteRegKey /ifempty HKCR "${EXTENSION}"
    ${Else}
      WriteRegStr HKCR "${EXTENSION}" "" "$0"
    ${EndIf}
  ${EndIf}
!macroend

; The file manager runs with the rights of the user, which the installer no longer has.
Function run_as_user
  Exec '"$WINDIR\explorer.exe" "$SMPROGRAMS\Tavrel.lnk"'
FunctionEnd

Function un.onInit
  SetRegView 64
  SetShellVarContext all
  !insertmacro MUI_UNGETLANGUAGE
FunctionEnd

Section "Tavrel" section_program
  SectionIn RO
  !insertmacro WAIT_FOR_END
  SetOutPath "$INSTDIR"
  File /r "${FILES}\*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  ; What there are no settings yet for, the program takes from here.
  WriteINIStr "$INSTDIR\first-start.ini" "MainWindow" "lang" "$(language_code)"
  ; It keeps its settings in the folder that it is started in: the one of whoever starts it.
  StrCpy $OUTDIR "%USERPROFILE%"
  CreateShortCut "$SMPROGRAMS\Tavrel.lnk" "${PROGRAM}"
  StrCpy $OUTDIR "$INSTDIR"

  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Tavrel"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "Brennick"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "${PROGRAM},0"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
  SectionGetSize ${section_program} $0
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

; Keys and values are those of "Associer" in the program's options.
Section /o "$(association)" section_association
  !insertmacro ASSOCIATE ".md5"
  !insertmacro ASSOCIATE ".sha1"
  WriteRegStr HKCR "Tavrel" "" "Checksum hash file"
  WriteRegStr HKCR "Tavrel\DefaultIcon" "" "${PROGRAM},0"
  WriteRegStr HKCR "Tavrel\shell" "" "open"
  WriteRegStr HKCR "Tavrel\shell\open" "" "$(open_verb)"
  WriteRegStr HKCR "Tavrel\shell\open\command" "" '"${PROGRAM}" "%1"'
  WriteRegStr HKCR "*\shell\Tavrel" "" "Tavrel"
  WriteRegStr HKCR "*\shell\Tavrel\command" "" '"${PROGRAM}" "%1"'
  WriteRegStr HKCR "Directory\shell\Tavrel" "" "Tavrel"
  WriteRegStr HKCR "Directory\shell\Tavrel\command" "" '"${PROGRAM}" "%1"'
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
SectionEnd

Function .onInit
  SetRegView 64
  SetShellVarContext all
  ReadRegStr $0 HKLM "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 != ""
  ${AndIf} $INSTDIR == "$PROGRAMFILES64\Tavrel"
    StrCpy $INSTDIR $0
  ${EndIf}
  ; for installations without questions: setup.exe /S /ASSOCIATE /LANGUAGE=fr
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/LANGUAGE=" $1
  ${If} ${Errors}
    !insertmacro MUI_LANGDLL_DISPLAY
  ${ElseIf} $1 == "fr"
    StrCpy $LANGUAGE ${LANG_FRENCH}
  ${Else}
    StrCpy $LANGUAGE ${LANG_ENGLISH}
  ${EndIf}
  ClearErrors
  ${GetOptions} $0 "/ASSOCIATE" $1
  ${IfNot} ${Errors}
    SectionSetFlags ${section_association} ${SF_SELECTED}
  ${EndIf}
FunctionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${section_program} "$(about_program)"
  !insertmacro MUI_DESCRIPTION_TEXT ${section_association} "$(about_association)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Section "Uninstall"
  !insertmacro WAIT_FOR_END
  ; An association may be another copy's: then it stays.
  ReadRegStr $0 HKCR "Tavrel\shell\open\command" ""
  ${If} $0 == '"${PROGRAM}" "%1"'
    !insertmacro DISSOCIATE ".md5"
    !insertmacro DISSOCIATE ".sha1"
    DeleteRegKey HKCR "Tavrel"
    DeleteRegKey HKCR "*\shell\Tavrel"
    DeleteRegKey HKCR "Directory\shell\Tavrel"
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
  ${EndIf}

  Delete "$SMPROGRAMS\Tavrel.lnk"
  !include "${REMOVE}"
  ; what the program keeps beside itself when it was started from there with the right to write
  Delete "$INSTDIR\Tavrel.ini"
  Delete "$INSTDIR\first-start.ini"
  Delete "$INSTDIR\uninstall.exe"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
SectionEnd
