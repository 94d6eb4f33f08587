#include <algorithm>

#include "fileops/Errors.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"
#include "forms/Measures.h"
#include "ui/Texts.h"
#include "ui/frmSSTab.h"
#include "ui/run/Form1.h"
#include "ui/run/Form5.h"
#include "ui/run/Form6.h"

/// The tab "Options": which locations to run, how, and the two-step button that starts the run.
namespace marlok::ui {

using forms::CheckBox;

namespace {

/// The heading and the empty line above the locations.
constexpr int firstLocationLine = 2;

/// Points.
constexpr int placeholderFontSize = 9;

/// Empty lines above a sentence in an otherwise empty list.
constexpr int emptyLines = 3;

// Twips.
constexpr int stepBoxHeight = 1260;
constexpr int pictureSize = 720;
constexpr int frameCaptionHeight = 150;
constexpr int checkHeight = 2 * forms::measure::lineHeight;  // room for a caption that is broken into two lines

void ShowNothing(forms::ListBox& list, const char* sentence) {
    for (int i = 0; i < emptyLines; ++i) {
        list.AddItem("");
    }
    list.InsertItem(emptyLines, sentence);
}

void SetPlaceholderFont(forms::ListBox& list) {
    forms::Font font = list.TextFont;
    font.size = placeholderFontSize;
    list.TextFont = font;
}

}  // namespace

void frmSSTab::ConnectOptions() {
    List1.Click = [this] { List1_Click(); };
    Command8.Click = [this] { Command8_Click(); };
    Timer3.Tick = [this] { Timer3_Timer(); };
}

void frmSSTab::SetTabList() {
    List1.Clear();
    List2.Clear();
    BackupSettings settings = program_.Configuration();
    if (settings.AnyLocation()) {
        List1.AddItem(texts::locationsHeading);
        List1.AddItem("");
        for (const std::string& location : settings.Locations()) {
            List1.AddItem(location);
        }
    } else {
        SetPlaceholderFont(List1);
        ShowNothing(List1, texts::noLocation);
    }
    const std::string location = List1.List(firstLocationLine);
    if (!IsEndMark(location) && settings.AnySource(location)) {
        List1.SetListIndex(firstLocationLine);  // its click shows the sources
        return;
    }
    SetPlaceholderFont(List2);
    ShowNothing(List2, texts::noSources);
}

void frmSSTab::EnterOptions() {
    Command8.Caption = std::string(texts::selectBackup);
    Check1.Enabled = false;
    Check2.Enabled = false;
    Check3.Value = CheckBox::State::checked;
    Check3.Enabled = false;
    BackupSettings settings = program_.Configuration();
    const std::string location = settings.Location(firstEntryNumber);
    const bool ready = !IsEndMark(location) && settings.AnySource(location);
    Command8.Enabled = ready;
    Command9.Enabled = ready;
    Frame1.Visible = ready;
    if (ready) {
        SSTab1.SetTabEnabled(tab::reviewSaved, true);
        SSTab1.SetTabEnabled(tab::filesToBackup, true);
    } else {
        SSTab1.SetTabEnabled(IsEndMark(location) ? tab::filesToBackup : tab::reviewSaved, false);
    }
    SetTabList();
    ShowNextStep();
}

/// The line that leads a newcomer from one step to the next.
void frmSSTab::ShowNextStep() {
    BackupSettings settings = program_.Configuration();
    const std::string location = settings.Location(firstEntryNumber);
    const char* step = "";
    if (IsEndMark(location)) {
        step = R"(Welcome! First open the tab "Backup Folder" and choose a folder that your files are to be saved in.)";
    } else if (!settings.AnySource(location)) {
        step = R"(Now open the tab "Files To Backup" and choose the folders and files that are to be saved.)";
    } else if (Command8.Caption.Get() == texts::selectBackup) {
        step = R"(Press "Select Backup", then click the locations that you want to back up.)";
    } else if (Command8.Enabled) {
        step = R"(Choose how to run the backup, then press "Run Backup". Ctrl and a click select further locations.)";
    } else {
        step = "Click the locations that you want to back up: Ctrl and a click select several.";
    }
    Label10.Caption = std::string(step);
}

void frmSSTab::List1_Click() {
    List2.Clear();
    const std::string& location = List1.List(List1.ListIndex());
    if (IsEndMark(location)) {
        Tell("You Must Select a Backup Location First", messagestyle::ok | messagestyle::information);
        return;
    }
    BackupSettings settings = program_.Configuration();
    if (!settings.AnySource(location)) {
        ShowNothing(List2, texts::noSources);
        return;
    }
    List2.AddItem(texts::sourcesHeading);
    List2.AddItem("");
    Check1.Enabled = true;
    Check2.Enabled = true;
    Check3.Enabled = true;
    Command8.Enabled = true;
    for (const std::string& source : settings.Sources(location)) {
        List2.AddItem(source);
    }
    ShowNextStep();
}

void frmSSTab::Command8_Click() {
    if (Command8.Caption.Get() == texts::selectBackup) {
        Frame1.Visible = false;
        Command8.Caption = std::string(texts::runBackup);
        Command8.Enabled = false;
        ShowNextStep();
        return;
    }
    if (Command8.Caption.Get() != texts::runBackup) {
        return;
    }
    const int line = List1.ListIndex();
    if (line < firstLocationLine || IsEndMark(List1.List(line))) {
        Tell("You Must Select a Backup Location", messagestyle::ok | messagestyle::information);
        return;
    }
    List2.Clear();
    if (Check1.Value == CheckBox::State::checked) {
        RunInBackground();
    } else {
        RunInteractive();
    }
}

void frmSSTab::RunInBackground() {
    WriteCommandFile();
    Label10.Caption = std::string("Backing up in the background, please wait.");
    Refresh();
    Collection().Load<Form6>(program_);
    ShowNextStep();
}

void frmSSTab::WriteCommandFile() {
    std::string lines;
    if (Check2.Value == CheckBox::State::checked) {
        program_.gAllFiles = true;
        lines += "A\r\n";
    } else if (Check2.Value == CheckBox::State::unchecked) {
        program_.gAllFiles = false;
        lines += "C\r\n";
    }
    if (Check3.Value == CheckBox::State::checked) {
        program_.gShowMessage = true;
        program_.gShowMessageBackground = true;
    }
    for (int line = 0; line < List1.ListCount(); ++line) {
        if (List1.Selected(line) && !List1.List(line).empty()) {
            lines += PathAfterRoot(List1.List(line)) + "\r\n";
        }
    }
    lines += "S\r\n";
    const SystemError code = SaveWholeFile(program_.machine.files, program_.BesideProgram(programfile::command), lines);
    if (code != error::success) {
        Raise(code);
    }
}

void frmSSTab::RunInteractive() {
    if (Check2.Value == CheckBox::State::checked) {
        program_.gAllFiles = true;
    }
    if (Check3.Value == CheckBox::State::checked) {
        program_.gShowMessage = true;
    }
    if (auto* former = Collection().Find<Form5>()) {
        former->Unload();  // that of a run before: a new run has a mode text of its own
    }
    Collection().Load<Form5>(program_);
    Timer3.Start();
}

void frmSSTab::Timer3_Timer() {
    Timer3.Stop();
    std::vector<std::string> locations;
    for (int line = 0; line < List1.ListCount(); ++line) {
        if (List1.Selected(line)) {
            locations.push_back(List1.List(line));
            List2.AddItem(List1.List(line));
        }
    }
    if (auto* former = Collection().Find<Form1>()) {
        former->RunAgain(locations);
    } else {
        Collection().Load<Form1>(program_, locations, [this] { Timer1.Start(); });
    }
    Frame1.Visible = true;
    Command8.Caption = std::string(texts::selectBackup);
    Command8.Enabled = true;
    SetTabList();
    ShowNextStep();
}

void frmSSTab::LayOutOptions(forms::Area page) {
    namespace measure = forms::measure;
    forms::Area column = page.TakeRight(measure::buttonWidth, measure::margin);
    Put(Command8, column.TakeTop(measure::buttonHeight, measure::gap));
    for (CheckBox* box : {&Check1, &Check2, &Check3}) {
        Put(*box, column.TakeTop(checkHeight, measure::smallGap));
    }
    Put(Command11, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(Command9, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(Command7, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(Command10, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(Label9, column.TakeBottom(2 * measure::lineHeight));

    Put(Label1, page.TakeTop(measure::lineHeight, measure::smallGap));
    forms::Area box = page.TakeBottom(stepBoxHeight, measure::gap);
    Put(Frame1, box);
    static_cast<void>(box.TakeTop(frameCaptionHeight));
    box = box.Inside(measure::margin);
    Put(Image1, box.TakeLeft(pictureSize, measure::margin));
    Put(Label10, box);
    Put(List1, page.TakeTop((page.height - measure::gap) / 2, measure::gap));
    Put(List2, page);
}

}  // namespace marlok::ui
