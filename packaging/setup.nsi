; The set-up program: installs for the present user alone, without an administrator's password. scripts/package gives
;   VERSION  the version ("4.0.0")         SOURCE  the folder with what is installed
;   OUTPUT   the set-up program to write   SIZE    kilobytes that are installed
;   ICON     its icon                      SIDE    the picture beside the last page
;   FILES    an include file whose macro ForEachFile does something with each file of SOURCE
;
; Command line: /S installs silently, /DESKTOPICON adds an icon on the desktop, /WAIT=seconds is how long a silent
; set-up waits for a program that runs (60), /D=folder, last and without quotation marks, is where to. The uninstaller
; knows /S, /WAIT=seconds and /REMOVEDATA, which takes logs, lists and settings along.
;
; Exit codes, which scripts and package managers see:
!define EXIT_CANCELLED 1  ; NSIS's own, when the user leaves
!define EXIT_NOT_WRITTEN 2  ; a file could not be written; the files of an earlier version are still whole
!define EXIT_RUNNING 3  ; the program runs
!define EXIT_WRONG_WINDOWS 4
!define EXIT_WRONG_FOLDER 5  ; the folder cannot be used

!define PRODUCT "Marlok Backup Utility"
!define SHORT "Marlok Backup"
!define PROGRAM "Marlok Backup.exe"
!define ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${SHORT}"
!define SETTINGS_PARENT "Software\Marlok Software"
!define SETTINGS "${SETTINGS_PARENT}\Fenwold"
!define CLAIM "Global\Marlok Backup Utility"  ; held by the program while it runs
!define FRESH "~Marlok Backup.setup"  ; where files are unpacked before they take the place of others

!define ERROR_ALREADY_EXISTS 183

Target amd64-unicode
Unicode true
SetCompressor /SOLID /FINAL lzma
CRCCheck on
RequestExecutionLevel user
ManifestDPIAware true
ManifestDPIAwareness "PerMonitorV2,PerMonitor"
ManifestLongPathAware true
ManifestSupportedOS Win10
AllowSkipFiles off

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh
!include WinVer.nsh
!include WordFunc.nsh
!include x64.nsh

!include "${FILES}"

Name "${PRODUCT}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${SHORT}"
InstallDirRegKey HKCU "${ENTRY}" InstallLocation
BrandingText "${PRODUCT} ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 ProductName "${PRODUCT}"
VIAddVersionKey /LANG=0 ProductVersion "${VERSION}"
VIAddVersionKey /LANG=0 FileDescription "${PRODUCT} set-up"
VIAddVersionKey /LANG=0 FileVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 CompanyName "Marlok"
VIAddVersionKey /LANG=0 LegalCopyright "See LICENSE"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${SIDE}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "Start ${PRODUCT}"
!define MUI_FINISHPAGE_RUN_FUNCTION StartProgram
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE CheckFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Var Claim  ; the mutex that stands for a running program
Var Wait  ; how many more seconds a silent run waits for the program

; ---- while the program runs ----

; Claims the mutex of the program, and holds it until this process ends: nothing starts the program in the middle of an
; installation, its own restart program included. $Claim is 0 when the program runs. One that belongs to another account
; cannot be opened, and counts as running as well.
!macro ClaimFunctions un
Function ${un}Claim
    System::Call 'kernel32::CreateMutexW(p 0, i 0, w "${CLAIM}") p .r0 ?e'
    Pop $1
    ${If} $0 P<> 0
    ${AndIf} $1 = ${ERROR_ALREADY_EXISTS}
        System::Call 'kernel32::CloseHandle(p r0)'
        StrCpy $0 0
    ${EndIf}
    StrCpy $Claim $0
FunctionEnd

; Goes on when the program does not run; else asks for its end, or waits for it and leaves when the time is over.
Function ${un}ClaimOrLeave
    ${GetParameters} $R0
    ClearErrors
    ${GetOptions} $R0 "/WAIT=" $Wait
    ${If} ${Errors}
        StrCpy $Wait 60
    ${EndIf}
    ${Do}
        Call ${un}Claim
        ${If} $Claim P<> 0
            Return
        ${EndIf}
        ${If} ${Silent}
            IntOp $Wait $Wait - 1
            ${If} $Wait < 0
                SetErrorLevel ${EXIT_RUNNING}
                Quit
            ${EndIf}
            Sleep 1000
        ${ElseIf} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "${PRODUCT} is running.$\r$\n$\r$\nLet a backup come to its end, close the program, and press Retry." IDCANCEL`
            SetErrorLevel ${EXIT_RUNNING}
            Quit
        ${EndIf}
    ${Loop}
FunctionEnd
!macroend
!insertmacro ClaimFunctions ""
!insertmacro ClaimFunctions "un."

; ---- where to ----

; $R9 = 1 when $INSTDIR is a folder of the system's, or in one. There a program of the user's cannot write its logs,
; even though a set-up that was started as administrator could write the program.
!macro IsBelow folder
    StrLen $1 "${folder}"
    ${If} $1 > 0
        StrCpy $0 "$INSTDIR\" $1
        StrCpy $2 "$INSTDIR\" 1 $1
        ${If} $0 == "${folder}"
        ${AndIf} $2 == "\"
            StrCpy $R9 1
        ${EndIf}
    ${EndIf}
!macroend

; $R9 = 2 when a file of that name is in $INSTDIR.
!macro IsTaken name
    ${If} ${FileExists} "$INSTDIR\${name}"
        StrCpy $R9 2
    ${EndIf}
!macroend

; Whether $INSTDIR can be used: $R9 is 0, or 1 when it cannot be written to, or 2 when files of others are there under the
; names of ours: they would be replaced. A folder with the program is its own, and so is one in which a set-up was broken
; off. Leaves nothing behind.
Function TryFolder
    StrCpy $R9 0
    ${IfNot} ${FileExists} "$INSTDIR\${PROGRAM}"
    ${AndIfNot} ${FileExists} "$INSTDIR\${FRESH}\*.*"
        !insertmacro ForEachFile IsTaken
        !insertmacro IsTaken "Uninstall.exe"
        !insertmacro IsTaken "Restart.exe"
        ${If} $R9 <> 0
            Return
        ${EndIf}
    ${EndIf}
    !insertmacro IsBelow "$PROGRAMFILES64"
    !insertmacro IsBelow "$PROGRAMFILES32"
    !insertmacro IsBelow "$WINDIR"
    ${If} $R9 <> 0
        Return
    ${EndIf}
    StrCpy $R8 0
    ${IfNot} ${FileExists} "$INSTDIR\*.*"
        StrCpy $R8 1
        CreateDirectory "$INSTDIR"
    ${EndIf}
    ClearErrors
    FileOpen $0 "$INSTDIR\~Marlok Backup.try" w
    ${If} ${Errors}
        StrCpy $R9 1
    ${Else}
        FileClose $0
        Delete "$INSTDIR\~Marlok Backup.try"
    ${EndIf}
    ${If} $R8 = 1
        RMDir "$INSTDIR"
    ${EndIf}
FunctionEnd

; Says why $INSTDIR cannot be used; without a word when it can, or when the set-up is silent.
Function TryFolderAloud
    Call TryFolder
    ${If} $R9 = 1
        MessageBox MB_OK|MB_ICONEXCLAMATION "The program cannot be installed in$\r$\n$INSTDIR$\r$\n$\r$\nIt keeps its logs and lists beside itself, so it needs a folder that you may write to. Choose another one." /SD IDOK
    ${ElseIf} $R9 = 2
        MessageBox MB_OK|MB_ICONEXCLAMATION "The program cannot be installed in$\r$\n$INSTDIR$\r$\n$\r$\nFiles there that are not its own have the names of its files. Choose a folder of its own for it." /SD IDOK
    ${EndIf}
FunctionEnd

Function CheckFolder
    Call TryFolderAloud
    ${If} $R9 <> 0
        Abort
    ${EndIf}
FunctionEnd

; NSIS replaces a folder that cannot be (on a drive that is not there) by the usual one without a word. Installed
; elsewhere than was asked for, the program would be looked for in vain: that is an error.
Function CheckFolderAsked
    System::Call 'kernel32::GetCommandLineW() w .R0'  ; from its own copy, $CMDLINE, NSIS has taken it away
    ${WordFind} $R0 " /D=" "E+1}" $R1
    ${If} ${Errors}
        ClearErrors
        Return
    ${EndIf}
    StrCpy $0 $R1 1 -1
    ${If} $0 == "\"
        StrCpy $R1 $R1 -1
    ${EndIf}
    ${If} $R1 != $INSTDIR
        MessageBox MB_OK|MB_ICONEXCLAMATION "The program cannot be installed in$\r$\n$R1$\r$\n$\r$\nThere is no such drive, or the name is not that of a folder." /SD IDOK
        SetErrorLevel ${EXIT_WRONG_FOLDER}
        Quit
    ${EndIf}
FunctionEnd

; ---- installing ----

; One by one: all at once they would be packed in the order in which the build's disk lists them.
!macro Unpack name
    File "${SOURCE}/${name}"
!macroend

; $R7 is 1 once a file could not take its place; then none of those that follow does.
!macro Replace name
    ${If} $R7 = 0
        System::Call 'kernel32::MoveFileExW(w "$INSTDIR\${FRESH}\${name}", w "$INSTDIR\${name}", i 1) i .r0'
        ${If} $0 = 0
            StrCpy $R7 1
        ${EndIf}
    ${EndIf}
!macroend

!macro GiveUp
    RMDir /r "$INSTDIR\${FRESH}"
    RMDir "$INSTDIR"
    MessageBox MB_OK|MB_ICONSTOP "The program could not be installed in$\r$\n$INSTDIR$\r$\n$\r$\nThe disk may be full, or a file there is in use or protected. Put that right and run the set-up again. What you have saved and set is as it was." /SD IDOK
    SetErrorLevel ${EXIT_NOT_WRITTEN}
    Quit
!macroend

Section "${PRODUCT}"
    SectionIn RO
    Call TryFolderAloud
    ${If} $R9 <> 0
        SetErrorLevel ${EXIT_WRONG_FOLDER}
        Quit
    ${EndIf}
    ; Everything is unpacked beside first: a disk that fills up leaves an earlier version whole.
    RMDir /r "$INSTDIR\${FRESH}"
    ClearErrors
    SetOutPath "$INSTDIR\${FRESH}"
    SetOverwrite try
    !insertmacro ForEachFile Unpack
    WriteUninstaller "$INSTDIR\${FRESH}\Uninstall.exe"
    SetOutPath "$INSTDIR"
    ${If} ${Errors}
        !insertmacro GiveUp
    ${EndIf}
    ; The program last: as long as the old one is there, so is what belongs to it.
    StrCpy $R7 0
    !insertmacro Replace "Uninstall.exe"
    !insertmacro ForEachFile Replace
    ${If} $R7 <> 0
        !insertmacro GiveUp
    ${EndIf}
    RMDir "$INSTDIR\${FRESH}"
    ; The program makes it anew of Restart.sec.
    Delete "$INSTDIR\Restart.exe"

    CreateDirectory "$SMPROGRAMS\${SHORT}"
    CreateShortcut "$SMPROGRAMS\${SHORT}\${SHORT}.lnk" "$INSTDIR\${PROGRAM}" "" "$INSTDIR\${PROGRAM}" 0 SW_SHOWNORMAL "" "${PRODUCT}"
    CreateShortcut "$SMPROGRAMS\${SHORT}\${SHORT} Help.lnk" "$INSTDIR\Help.html" "" "" 0 SW_SHOWNORMAL "" "How to use it"

    WriteRegStr HKCU "${ENTRY}" DisplayName "${PRODUCT}"
    WriteRegStr HKCU "${ENTRY}" DisplayVersion "${VERSION}"
    WriteRegStr HKCU "${ENTRY}" DisplayIcon "$INSTDIR\${PROGRAM},0"
    WriteRegStr HKCU "${ENTRY}" Publisher "Marlok"
    WriteRegStr HKCU "${ENTRY}" InstallLocation "$INSTDIR"
    WriteRegStr HKCU "${ENTRY}" UninstallString '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKCU "${ENTRY}" QuietUninstallString '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKCU "${ENTRY}" EstimatedSize ${SIZE}
    WriteRegDWORD HKCU "${ENTRY}" NoModify 1
    WriteRegDWORD HKCU "${ENTRY}" NoRepair 1
SectionEnd

Section /o "Icon on the desktop" DesktopIconSection
    CreateShortcut "$DESKTOP\${SHORT}.lnk" "$INSTDIR\${PROGRAM}" "" "$INSTDIR\${PROGRAM}" 0 SW_SHOWNORMAL "" "${PRODUCT}"
SectionEnd

Function StartProgram
    System::Call 'kernel32::CloseHandle(p $Claim)'
    Exec '"$INSTDIR\${PROGRAM}"'
FunctionEnd

Function .onInit
    SetShellVarContext current
    SetRegView 64
    ${IfNot} ${AtLeastWin10}
        MessageBox MB_OK|MB_ICONSTOP "${PRODUCT} needs Windows 10 or later." /SD IDOK
        SetErrorLevel ${EXIT_WRONG_WINDOWS}
        Quit
    ${EndIf}
    Call CheckFolderAsked
    ${GetParameters} $R0
    ClearErrors
    ${GetOptions} $R0 "/DESKTOPICON" $R1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${DesktopIconSection}
    ${EndIf}
    Call ClaimOrLeave
FunctionEnd

; ---- removing ----

!define CLSID_ShellLink "{00021401-0000-0000-C000-000000000046}"
!define IID_IShellLinkW "{000214F9-0000-0000-C000-000000000046}"
!define IID_IPersistFile "{0000010B-0000-0000-C000-000000000046}"

; Deletes the link whose path is on the stack when it leads into $INSTDIR: another copy of the program may have made it.
Function un.DeleteLink
    Exch $R0
    StrCpy $R1 ""
    System::Call 'ole32::CoInitialize(p 0)'
    System::Call 'ole32::CoCreateInstance(g "${CLSID_ShellLink}", p 0, i 1, g "${IID_IShellLinkW}", *p .r0) i .r1'
    ${If} $1 = 0
        System::Call '$0->0(g "${IID_IPersistFile}", *p .r2) i .r1'
        ${If} $1 = 0
            System::Call '$2->5(w R0, i 0) i .r1'
            ${If} $1 = 0
                System::Call '$0->3(w .R1, i ${NSIS_MAX_STRLEN}, p 0, i 0)'
            ${EndIf}
            System::Call '$2->2()'
        ${EndIf}
        System::Call '$0->2()'
    ${EndIf}
    StrLen $1 "$INSTDIR\"
    StrCpy $R1 $R1 $1
    ${If} $R1 == "$INSTDIR\"
        Delete "$R0"
    ${EndIf}
    Pop $R0
FunctionEnd

!macro DeleteLink path
    Push "${path}"
    Call un.DeleteLink
!macroend

; ---- scheduled tasks ----

; Tasks lie in the folder of the program in the Task Scheduler. Only those go that start the program in $INSTDIR: a
; portable copy, and another account, may have theirs in the same folder. A task that does not tell what it starts
; counts as this program's.
!define CLSID_TaskScheduler "{0F87369F-A4E5-4CFC-BD3E-73E6154572DD}"
!define IID_ITaskService "{2FABA4C7-4DA9-4013-9697-20CC3FD40F85}"
!define TASK_FOLDER "\${SHORT}"

; Deletes the task called $R3 of the folder $R2 when it starts this program. $R4 is how the program is written in a
; task.
Function un.DeleteTask
    System::Call 'oleaut32::SysAllocString(w R3) p .r3'
    System::Call '$R2->13(p r3, *p .r4) i .r1'  ; GetTask
    ${If} $1 = 0
        System::Call '$4->20(*p .r5) i .r1'  ; get_Xml
        ${If} $1 = 0
            System::Call 'shlwapi::StrStrIW(p r5, w "<Command") p .r6'
            System::Call 'shlwapi::StrStrIW(p r5, w R4) p .r7'
            System::Call 'oleaut32::SysFreeString(p r5)'
            ${If} $6 P= 0
            ${OrIf} $7 P<> 0
                System::Call '$R2->15(p r3, i 0)'  ; DeleteTask
            ${EndIf}
        ${EndIf}
        System::Call '$4->2()'
    ${EndIf}
    System::Call 'oleaut32::SysFreeString(p r3)'
FunctionEnd

; The tasks of the folder $R2, from the last to the first: each one that goes moves those behind it.
Function un.DeleteListedTasks
    System::Call '$R2->14(i 1, *p .r8) i .r1'  ; GetTasks, hidden ones too
    ${If} $1 <> 0
        Return
    ${EndIf}
    System::Call '$8->7(*i .r9)'  ; get_Count
    ${While} $9 > 0
        System::Call '*(&i2 3, &i2 0, &i4 0, i r9, i 0, p 0) p .r0'  ; a VARIANT of that number
        System::Call '$8->8(p r0, *p .r4) i .r1'  ; get_Item
        System::Free $0
        ${If} $1 = 0
            System::Call '$4->7(*p .r5) i .r1'  ; get_Name
            System::Call '$4->2()'
            ${If} $1 = 0
                System::Call 'kernel32::lstrcpynW(w .R3, p r5, i ${NSIS_MAX_STRLEN})'
                System::Call 'oleaut32::SysFreeString(p r5)'
                Call un.DeleteTask
            ${EndIf}
        ${EndIf}
        IntOp $9 $9 - 1
    ${EndWhile}
    System::Call '$8->2()'
FunctionEnd

; Where the service keeps tasks that it does not list.
Function un.DeleteKeptTasks
    FindFirst $8 $R3 "$SYSDIR\Tasks${TASK_FOLDER}\*"
    ${DoUntil} $R3 == ""
        ${If} $R3 != "."
        ${AndIf} $R3 != ".."
            Call un.DeleteTask
        ${EndIf}
        FindNext $8 $R3
    ${Loop}
    FindClose $8
FunctionEnd

Function un.DeleteTasks
    ${WordReplace} "$INSTDIR\${PROGRAM}" "&" "&amp;" "+" $R4
    System::Call 'ole32::CoInitialize(p 0)'
    System::Call 'ole32::CoCreateInstance(g "${CLSID_TaskScheduler}", p 0, i 1, g "${IID_ITaskService}", *p .R1) i .r1'
    ${If} $1 <> 0
        Return
    ${EndIf}
    System::Call '*(&i8 0, &i8 0, &i8 0) p .r0'  ; an empty VARIANT, which stands for this machine and this user
    System::Call '$R1->10(p r0, p r0, p r0, p r0) i .r1'  ; Connect
    System::Free $0
    ${If} $1 = 0
        System::Call 'oleaut32::SysAllocString(w "${TASK_FOLDER}") p .r3'
        System::Call '$R1->7(p r3, *p .R2) i .r1'  ; GetFolder
        System::Call 'oleaut32::SysFreeString(p r3)'
        ${If} $1 = 0
            Call un.DeleteListedTasks
            Call un.DeleteKeptTasks
            System::Call '$R2->2()'
            System::Call 'oleaut32::SysAllocString(w "\") p .r3'
            System::Call '$R1->7(p r3, *p .R2) i .r1'
            System::Call 'oleaut32::SysFreeString(p r3)'
            ${If} $1 = 0
                ; Stays where a task of somebody else's is in it.
                System::Call 'oleaut32::SysAllocString(w "${SHORT}") p .r3'
                System::Call '$R2->12(p r3, i 0)'  ; DeleteFolder
                System::Call 'oleaut32::SysFreeString(p r3)'
                System::Call '$R2->2()'
            ${EndIf}
        ${EndIf}
    ${EndIf}
    System::Call '$R1->2()'
FunctionEnd

; ---- files and data ----

!macro DeleteFile name
    Delete "$INSTDIR\${name}"
!macroend

; Deletes the list of original paths of the location $R0, a full path, and the folders for it that become empty.
Function un.DeleteList
    StrCpy $R1 $R0 "" 3
    ${If} $R1 == ""
        Return
    ${EndIf}
    ; What would lead out of the program's folder is none of its lists.
    ${WordFind} "\$R1\" "\..\" "E+1{" $0
    ${IfNot} ${Errors}
        Return
    ${EndIf}
    ClearErrors
    Delete "$INSTDIR\$R1.txt"
    ${Do}
        ${GetParent} $R1 $R1
        ${If} $R1 == ""
            ${Break}
        ${EndIf}
        RMDir "$INSTDIR\$R1"
    ${Loop}
FunctionEnd

; The lists are called like the locations, which are numbered values in the settings.
Function un.DeleteLists
    StrCpy $R2 0
    ${Do}
        EnumRegValue $0 HKCU "${SETTINGS}\Target" $R2
        ${If} $0 == ""
            ${Break}
        ${EndIf}
        ReadRegStr $R0 HKCU "${SETTINGS}\Target" $0
        Call un.DeleteList
        IntOp $R2 $R2 + 1
    ${Loop}
FunctionEnd

Section "un.${PRODUCT}"
    SectionIn RO
    Call un.DeleteTasks
    RMDir /r "$INSTDIR\${FRESH}"
    !insertmacro ForEachFile DeleteFile
    Delete "$INSTDIR\Restart.exe"
    Delete "$INSTDIR\Uninstall.exe"
    !insertmacro DeleteLink "$SMPROGRAMS\${SHORT}\${SHORT}.lnk"
    !insertmacro DeleteLink "$SMPROGRAMS\${SHORT}\${SHORT} Help.lnk"
    RMDir "$SMPROGRAMS\${SHORT}"
    !insertmacro DeleteLink "$DESKTOP\${SHORT}.lnk"
    DeleteRegKey HKCU "${ENTRY}"
    RMDir "$INSTDIR"
SectionEnd

Section /o "un.Logs, lists and settings" DataSection
    !insertmacro DeleteLink "$DESKTOP\Backup Log File.lnk"
    !insertmacro DeleteLink "$DESKTOP\Replaced File Log.lnk"
    Call un.DeleteLists
    Delete "$INSTDIR\Backup Log File.txt"
    Delete "$INSTDIR\Backup Error Log.txt"
    Delete "$INSTDIR\Backup Report.txt"
    Delete "$INSTDIR\Backup History.txt"
    Delete "$INSTDIR\Replaced File Log.txt"
    Delete "$INSTDIR\Command.txt"
    Delete "$INSTDIR\DeleteFolder.txt"
    Delete "$INSTDIR\~Marlok Backup.new"
    DeleteRegKey HKCU "${SETTINGS}"
    DeleteRegKey /ifempty HKCU "${SETTINGS_PARENT}"
    RMDir "$INSTDIR"
SectionEnd

Function un.onInit
    SetShellVarContext current
    SetRegView 64
    ${un.GetParameters} $R0
    ClearErrors
    ${un.GetOptions} $R0 "/REMOVEDATA" $R1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${DataSection}
    ${EndIf}
    Call un.ClaimOrLeave
FunctionEnd
