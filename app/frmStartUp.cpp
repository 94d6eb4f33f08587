#include "app/frmStartUp.h"

#include "app/CommandLine.h"
#include "engine/LogDate.h"
#include "engine/RunLog.h"
#include "fileops/WholeFiles.h"
#include "forms/Area.h"
#include "forms/Windows.h"
#include "ui/frmSSTab.h"

namespace marlok::app {

namespace {

// Twips.
constexpr int windowWidth = 6300;
constexpr int windowHeight = 2700;
constexpr int margin = 300;
constexpr int welcomeHeight = 660;
constexpr int lineHeight = 435;
constexpr int pictureSize = 1920;

// Points.
constexpr int welcomeSize = 20;
constexpr int requestSize = 12;

}  // namespace

frmStartUp::frmStartUp(forms::Windows& windows, Session& session)
    : Form(windows, "frmStartUp", "Marlok Backup Utility"), session_(session) {
    Picture1.Picture = "program";
    Picture1.AccessibleName = Caption();
    Label1.TextFont = forms::Font{"", welcomeSize, true};
    Label2.TextFont = forms::Font{"", requestSize, false};
    Label3.TextFont = forms::Font{"", requestSize, true};
    Timer1.Tick = [this] { Timer1_Timer(); };
    Timer2.Tick = [this] { Timer2_Timer(); };
}

void frmStartUp::Form_Load() {
    Desktop& desktop = session_.machine.desktop;
    Place((desktop.ScreenWidth() - windowWidth) / 2, (desktop.ScreenHeight() - windowHeight) / 2, windowWidth,
          windowHeight);
    Timer1.Start();
}

void frmStartUp::Form_Resize() {
    forms::Area inner = forms::Area{0, 0, Width(), Height()}.Inside(margin);
    Put(Picture1, inner.TakeLeft(pictureSize, margin));
    Put(Label1, inner.TakeTop(welcomeHeight, margin / 2));
    Put(Label2, inner.TakeTop(lineHeight));
    Put(Label3, inner.TakeTop(lineHeight));
}

void frmStartUp::Timer1_Timer() {
    Timer1.Stop();
    session_.gAllFiles = false;
    session_.gSettings = std::make_unique<CRegSettings>(session_.machine.registry, session_.machine.system);
    session_.gAppFolder = ProgramFolder(session_.machine.process.ProgramFolder());
    if (GetCommandLine(session_)) {
        session_.exitCode = exitcode::nothingRan;
        session_.machine.process.WriteError(
            "No backup location, or no files to back up, are chosen yet: start the program without arguments, and "
            "choose them.");
        Timer2.Start();
        return;
    }
    auto& window = Collection().Load<ui::frmSSTab>(session_);
    window.Frame1.Visible = false;
    window.Command8.Enabled = false;
    window.Command9.Enabled = false;
    window.SetTabList();
    const bool anyLocation = session_.Configuration().AnyLocation();
    window.SSTab1.SetTab(anyLocation ? ui::tab::filesToBackup : ui::tab::backupFolder);
    window.Show();
    Unload();
}

void frmStartUp::Timer2_Timer() {
    Timer2.Stop();
    session_.gAppFolder = ProgramFolder(session_.machine.process.ProgramFolder());
    WriteShortLog();
    session_.machine.desktop.ShowHourglass(true);
    // Nobody is there to read it, and what is left out here is made by the next complete run.
    static_cast<void>(MakeDesktopShortcut(session_.machine, unattendedLog));
    session_.machine.desktop.ShowHourglass(false);
    Unload();
}

void frmStartUp::WriteShortLog() {
    const std::string text = FormatLogDate(session_.machine.clock.Now()) +
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
    static_cast<void>(SaveWholeFile(session_.machine.files, session_.gAppFolder.PathOf(programfile::runLog), text));
}

}  // namespace marlok::app
