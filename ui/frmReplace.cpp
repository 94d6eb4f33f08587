#include "ui/frmReplace.h"

#include <algorithm>
#include <utility>

#include "engine/OriginalPathList.h"
#include "engine/RunLog.h"
#include "fileops/Errors.h"
#include "forms/Measures.h"
#include "ui/Texts.h"
#include "ui/run/ResultLayout.h"

namespace marlok::ui {

namespace {

// Twips.
constexpr int leastHeight = 3600;

}  // namespace

frmReplace::frmReplace(forms::Windows& windows, Machine& machine, std::function<void()> whenClosed)
    : Form(windows, "frmReplace", "Marlok Backup Utility File Replacement Program"),
      machine_(machine),
      whenClosed_(std::move(whenClosed)),
      breathe_(machine) {
    List1.Visible = false;
    Label4.Visible = false;
    Label3.Alignment = forms::Label::Align::centre;
    List2.AccessibleName = "Files Replaced";
    Command1.Click = [this] { Unload(); };
    Timer1.Tick = [this] { Timer1_Timer(); };
}

void frmReplace::Form_Load() {
    const int screenWidth = machine_.desktop.ScreenWidth();
    const int screenHeight = machine_.desktop.ScreenHeight();
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
    LayOutResult(*this, {Label2, Label1, List2, Label4, Command1});
}

void frmReplace::Run(const Location& location, const std::vector<std::string>& saved) {
    Show();
    Refresh();
    toBeRecorded_ = true;
    hold_.emplace(machine_, "Files are being put back.");
    const SystemError code = RestoreFiles(machine_, location, saved, *this, result_);
    if (code != error::success) {
        const OriginalPathList list(machine_, location);
        Tell(list.Path() + "\r\n\r\n Could Not Be Read\r\n\r\n" + Describe(machine_.system, code) +
             ". No file was replaced.");
    } else if (!result_.nothingToLog) {
        EndRun();
        return;
    }
    toBeRecorded_ = false;
    Unload();
}

void frmReplace::EndRun() {
    if (!GoOn()) {
        WriteReplacedLog();  // the session ends: there may be no later
    } else if (result_.Exceptions() > 0) {
        Tell("All Selected Files, With The Exception of " + std::to_string(result_.Exceptions()) + " Files, Copied");
    }
    Timer1.Start();
    // A click or a key of the time when nothing could answer it is not meant for what the window shows next.
    machine_.desktop.DiscardInput();
}

void frmReplace::NotListed(const std::string& saved) {
    Tell(saved + "\r\n\r\n Not Listed In Log File");
}

void frmReplace::NotLocated(const std::string& saved) {
    Tell(saved + "\r\n\r\n Not Located In Backup File");
}

void frmReplace::ReplaceBegins(const std::string& original) {
    List2.AddItem(original);
}

void frmReplace::Tell(const std::string& text) {
    Hide();
    machine_.desktop.DiscardInput();
    machine_.desktop.ShowMessage(text, messagestyle::ok | messagestyle::information, texts::infoTitle);
    Show();
}

void frmReplace::Timer1_Timer() {
    Timer1.Stop();
    if (toBeRecorded_) {
        WriteReplacedLog();
    }
    Hide();
    for (forms::Control* finished : std::initializer_list<forms::Control*>{&Command1, &List2, &Label1, &Label2}) {
        finished->Visible = true;
    }
    Label3.Visible = false;
    ShowFailures(Label4, machine_, result_.report, replacementFailures);
    Form_Resize();  // the failures may need more room
    Show();
    Refresh();
}

void frmReplace::WriteReplacedLog() {
    machine_.desktop.ShowHourglass(true);
    toBeRecorded_ = false;
    result_.report.written = List2.Items();
    // The exit code is the backup's: what could not be replaced is shown here, to the person who asked for it.
    static_cast<void>(FinishRun(machine_, replacementLog, result_.report));
    machine_.desktop.ShowHourglass(false);
    Label1.Caption = std::to_string(List2.ListCount()) + " Files Were Replaced";
    Label2.Caption = "File Replacement Completed";
    hold_.reset();
}

void frmReplace::Form_Unload() {
    // The end of the program unloads every window, whatever it has still to do.
    if (toBeRecorded_) {
        WriteReplacedLog();
    }
    hold_.reset();
    if (whenClosed_) {
        whenClosed_();
    }
}

}  // namespace marlok::ui
