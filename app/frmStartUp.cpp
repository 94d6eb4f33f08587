#include "app/frmStartUp.h"

#include "app/CommandLine.h"
#include "engine/RunLog.h"
#include "fileops/FolderFunctions.h"
#include "ui/frmSSTab.h"

namespace marlok::app {

namespace {

// Twips.
constexpr int windowWidth = 5400;
constexpr int windowHeight = 2400;
constexpr int margin = 300;
constexpr int lineHeight = 360;

}  // namespace

frmStartUp::frmStartUp(forms::Windows& windows, Program& program)
    : Form(windows, "frmStartUp", "Marlok Backup Utility"), program_(program) {
    Timer1.Tick = [this] { Timer1_Timer(); };
    Timer2.Tick = [this] { Timer2_Timer(); };
}

void frmStartUp::Form_Load() {
    Desktop& desktop = program_.machine.desktop;
    Place((desktop.ScreenWidth() - windowWidth) / 2, (desktop.ScreenHeight() - windowHeight) / 2, windowWidth,
          windowHeight);
    Timer1.Start();
}

void frmStartUp::Form_Resize() {
    int top = margin;
    for (forms::Label* label : {&Label1, &Label2, &Label3}) {
        label->MoveTo(margin, top, Width() - 2 * margin, lineHeight);
        top += lineHeight + margin / 2;
    }
}

void frmStartUp::Timer1_Timer() {
    Timer1.Stop();
    program_.gAllFiles = false;
    program_.gSettings = std::make_unique<CRegSettings>(program_.machine.registry, program_.machine.system);
    program_.gAppFolder = AddBackslash(program_.machine.process.ProgramFolder());
    if (GetCommandLine(program_)) {
        program_.exitCode = exitcode::nothingRan;
        Timer2.Start();
        return;
    }
    program_.windows.Load<ui::frmSSTab>(program_).Show();
    Unload();
}

void frmStartUp::Timer2_Timer() {
    Timer2.Stop();
    program_.gAppFolder = AddBackslash(program_.machine.process.ProgramFolder());
    WriteShortLog();
    program_.machine.desktop.ShowHourglass(true);
    // Nobody is there to be told, and what is left out here is made by the next complete run.
    static_cast<void>(
        MakeDesktopShortcut(program_, program_.gAppFolder + programfile::runLog, "Backup Log File", "Backup Log File"));
    program_.machine.desktop.ShowHourglass(false);
    Unload();
}

void frmStartUp::WriteShortLog() {
    const std::string text = FormatLogDate(program_.machine.clock.Now()) +
                             "\r\n"
                             "\r\n"
                             "Program Was Unable To Locate Paths\r\n"
                             "\r\n"
                             "Please Check Both Backup Locations\r\n"
                             "\r\n"
                             "             And                  \r\n"
                             "\r\n"
                             "      Files To Be Backed Up       \r\n"
                             "\r\n";
    // As above: a log that cannot be written must not keep the program from ending.
    static_cast<void>(WriteLog(program_, program_.gAppFolder + programfile::runLog, text));
}

}  // namespace marlok::app
