#include "ui/frmReplace.h"

#include <algorithm>

#include "engine/RunLog.h"
#include "fileops/Errors.h"
#include "fileops/FolderFunctions.h"
#include "forms/Measures.h"
#include "ui/frmSSTab.h"
#include "ui/run/ResultLayout.h"

namespace marlok::ui {

namespace {

constexpr forms::Colour alarm = forms::Rgb(192, 0, 0);

// Twips.
constexpr int leastHeight = 3600;

}  // namespace

frmReplace::frmReplace(forms::Windows& windows, Program& program)
    : Form(windows, "frmReplace", "Marlok Backup Utility File Replacement Program"), program_(program) {
    List1.Visible = false;
    Label4.Visible = false;
    Label4.ForeColor = alarm;
    Label3.Alignment = forms::Label::Align::centre;
    List2.AccessibleName = std::string("Files Replaced");
    Command1.Click = [this] { Unload(); };
    Timer1.Tick = [this] { Timer1_Timer(); };
}

void frmReplace::Form_Load() {
    const int screenWidth = program_.machine.desktop.ScreenWidth();
    const int screenHeight = program_.machine.desktop.ScreenHeight();
    Place(screenWidth / 4, screenHeight / 4, screenWidth / 2, std::max(leastHeight, screenHeight / 2));
    Form_Resize();
    for (forms::Control* later : std::initializer_list<forms::Control*>{&Command1, &List2, &Label1, &Label2}) {
        later->Visible = false;
    }
    Label3.Visible = true;
}

void frmReplace::Form_Resize() {
    constexpr int lineHeight = forms::measure::lineHeight;
    Label3.MoveTo(0, (Height() - lineHeight) / 2, Width(), lineHeight);
    LayOutResult(*this, {Label2, Label1, List2, &Label4, Command1});
}

void frmReplace::Timer1_Timer() {
    Timer1.Stop();
    WriteReplacedLog();
    if (!report.Lines().empty()) {
        WriteErrorLog(program_, report);  // else that of a backup stays, which tells what is not saved
    }
    Hide();
    for (forms::Control* finished : std::initializer_list<forms::Control*>{&Command1, &List2, &Label1, &Label2}) {
        finished->Visible = true;
    }
    Label3.Visible = false;
    TellFailures();
    Show();
    Refresh();
}

void frmReplace::TellFailures() {
    const std::size_t failures = report.Lines().size();
    if (failures > 0) {
        Label4.Caption = std::to_string(failures) + (failures == 1 ? " File" : " Files") + " Not Replaced, See \"" +
                         programfile::errorLog + "\"";
        Label4.Visible = true;
    }
}

void frmReplace::WriteReplacedLog() {
    program_.gAppFolder = AddBackslash(program_.machine.process.ProgramFolder());
    const std::string log = program_.gAppFolder + programfile::replacedLog;
    const LocalTime now = program_.machine.clock.Now();
    const std::string count = std::to_string(List2.ListCount());
    const std::string header =
        "Total files replaced " + FormatLogDate(now) + " At " + FormatLogTime(now) + " was " + count;
    const SystemError written = WriteLog(program_, log, LogText(header, List2));
    if (written != error::success) {
        report.Add(log, written);
    }
    Label1.Caption = count + " Files Were Replaced";
    Label2.Caption = std::string("File Replacement Completed");
    Desktop& desktop = program_.machine.desktop;
    desktop.ShowHourglass(true);
    const SystemError linked = MakeDesktopShortcut(program_, log, "Replaced File Log", "Replaced Log File");
    desktop.ShowHourglass(false);
    if (linked != error::success) {
        report.Add("Replaced File Log.lnk", linked);
    }
}

void frmReplace::Form_Unload() {
    if (auto* window = Collection().Find<frmSSTab>()) {
        window->Show();
    }
}

}  // namespace marlok::ui
