#include "ui/OptionsTab.h"

#include <algorithm>

#include "engine/CommandFile.h"
#include "forms/Measures.h"
#include "forms/Windows.h"
#include "paths/Path.h"
#include "ui/frmSSTab.h"
#include "ui/run/Form1.h"
#include "ui/run/Form5.h"
#include "ui/run/Form6.h"

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

void OptionsTab::SetTabList() {
    window_.List1.Clear();
    window_.List2.Clear();
    BackupSettings settings = session_.Configuration();
    if (settings.AnyLocation()) {
        window_.List1.AddItem(texts::locationsHeading);
        window_.List1.AddItem("");
        for (const Location& location : settings.Locations()) {
            window_.List1.AddItem(location.Path());
        }
    } else {
        SetPlaceholderFont(window_.List1);
        ShowNothing(window_.List1, texts::noLocation);
    }
    const std::string location = window_.List1.List(firstLocationLine);
    if (!IsEndMark(location) && settings.AnySource(Location(location))) {
        window_.List1.SetListIndex(firstLocationLine);  // its click shows the sources
        return;
    }
    SetPlaceholderFont(window_.List2);
    ShowNothing(window_.List2, texts::noSources);
}

void OptionsTab::StoreLocations() {
    TellUnlessStored(session_.Configuration().SaveLocations(window_.List1.Items()));
}

void OptionsTab::Enter() {
    window_.Command8.Caption = texts::selectBackup;
    window_.Check1.Enabled = false;
    window_.Check2.Enabled = false;
    window_.Check3.Value = CheckBox::State::checked;
    window_.Check3.Enabled = false;
    BackupSettings settings = session_.Configuration();
    const std::string location = settings.LocationAt(firstEntryNumber);
    const bool ready = !IsEndMark(location) && settings.AnySource(Location(location));
    window_.Command8.Enabled = ready;
    window_.Command9.Enabled = ready;
    window_.Frame1.Visible = ready;
    if (ready) {
        window_.SSTab1.SetTabEnabled(tab::reviewSaved, true);
        window_.SSTab1.SetTabEnabled(tab::filesToBackup, true);
    } else {
        window_.SSTab1.SetTabEnabled(IsEndMark(location) ? tab::filesToBackup : tab::reviewSaved, false);
    }
    SetTabList();
    ShowNextStep();
}

/// The line that leads a newcomer from one step to the next.
void OptionsTab::ShowNextStep() {
    BackupSettings settings = session_.Configuration();
    const std::string location = settings.LocationAt(firstEntryNumber);
    const char* step = "";
    if (IsEndMark(location)) {
        step = R"(Welcome! First open the tab "Backup Folder" and choose a folder that your files are to be saved in.)";
    } else if (!settings.AnySource(Location(location))) {
        step = R"(Now open the tab "Files To Backup" and choose the folders and files that are to be saved.)";
    } else if (window_.Command8.Caption.Get() == texts::selectBackup) {
        step = R"(Press "Select Backup", then click the locations that you want to back up.)";
    } else if (window_.Command8.Enabled) {
        step = R"(Choose how to run the backup, then press "Run Backup". Ctrl and a click select further locations.)";
    } else {
        step = "Click the locations that you want to back up: Ctrl and a click select several.";
    }
    window_.Label10.Caption = step;
}

void OptionsTab::ShowSources() {
    window_.List2.Clear();
    const std::string& location = window_.List1.List(window_.List1.ListIndex());
    if (IsEndMark(location)) {
        Tell("You Must Select a Backup Location First");
        return;
    }
    BackupSettings settings = session_.Configuration();
    if (!settings.AnySource(Location(location))) {
        ShowNothing(window_.List2, texts::noSources);
        return;
    }
    window_.List2.AddItem(texts::sourcesHeading);
    window_.List2.AddItem("");
    window_.Check1.Enabled = true;
    window_.Check2.Enabled = true;
    window_.Check3.Enabled = true;
    window_.Command8.Enabled = true;
    for (const std::string& source : settings.Sources(Location(location))) {
        window_.List2.AddItem(source);
    }
    ShowNextStep();
}

void OptionsTab::SelectOrRun() {
    if (window_.Command8.Caption.Get() == texts::selectBackup) {
        window_.Frame1.Visible = false;
        window_.Command8.Caption = texts::runBackup;
        window_.Command8.Enabled = false;
        ShowNextStep();
        return;
    }
    if (window_.Command8.Caption.Get() != texts::runBackup) {
        return;
    }
    const int line = window_.List1.ListIndex();
    // The line clicked last may be no longer selected, and a run without a location would be one of all of them.
    if (line < firstLocationLine || IsEndMark(window_.List1.List(line)) || SelectedLocations().empty()) {
        Tell("You Must Select a Backup Location");
        return;
    }
    window_.List2.Clear();
    TakeOptions();
    if (window_.Check1.Value == CheckBox::State::checked) {
        RunInBackground();
    } else {
        RunInteractive();
    }
}

std::vector<std::string> OptionsTab::SelectedLines() const {
    std::vector<std::string> lines;
    for (int line = 0; line < window_.List1.ListCount(); ++line) {
        if (window_.List1.Selected(line)) {
            lines.push_back(window_.List1.List(line));
        }
    }
    return lines;
}

/// The locations among the selected lines: neither the heading nor an empty line.
std::vector<Location> OptionsTab::SelectedLocations() const {
    std::vector<Location> locations;
    for (int line = firstLocationLine; line < window_.List1.ListCount(); ++line) {
        if (window_.List1.Selected(line) && !IsEndMark(window_.List1.List(line))) {
            locations.emplace_back(window_.List1.List(line));
        }
    }
    return locations;
}

/// How the run is to be, as the boxes stand now: a run of all files empties the locations, which must not be left over
/// from a run before.
void OptionsTab::TakeOptions() {
    session_.gAllFiles = window_.Check2.Value == CheckBox::State::checked;
    if (window_.Check3.Value == CheckBox::State::checked) {
        session_.gShowMessage = true;
    }
}

void OptionsTab::RunInBackground() {
    WriteCommandFile();
    if (window_.Check3.Value == CheckBox::State::checked) {
        session_.gShowMessageBackground = true;
    }
    window_.Label10.Caption = "Backing up in the background, please wait.";
    window_.Refresh();
    forms::Windows& windows = window_.Collection();
    if (auto* former = windows.Find<Form6>()) {
        former->RunAgain(SelectedLocations());
    } else {
        windows.Load<Form6>(session_, SelectedLocations());
    }
    ShowNextStep();
}

void OptionsTab::WriteCommandFile() const {
    std::vector<std::string> lines;
    if (window_.Check2.Value == CheckBox::State::checked) {
        lines.emplace_back("A");
    } else if (window_.Check2.Value == CheckBox::State::unchecked) {
        lines.emplace_back("C");
    }
    for (const std::string& line : SelectedLines()) {
        if (!line.empty()) {
            lines.push_back(PathAfterRoot(line));
        }
    }
    lines.emplace_back("S");
    CommandFile(session_.machine).Write(lines);
}

void OptionsTab::RunInteractive() {
    if (auto* former = window_.Collection().Find<Form5>()) {
        former->Unload();  // that of a run before: a new run has a mode text of its own
    }
    window_.Collection().Load<Form5>(session_.machine, session_.gAllFiles);
    window_.Timer3.Start();
}

void OptionsTab::StartRun() {
    window_.Timer3.Stop();
    for (const std::string& line : SelectedLines()) {
        window_.List2.AddItem(line);
    }
    std::vector<Location> locations = SelectedLocations();
    forms::Windows& windows = window_.Collection();
    if (auto* former = windows.Find<Form1>()) {
        former->RunAgain(std::move(locations));
    } else {
        windows.Load<Form1>(session_, std::move(locations), [this] { window_.Timer1.Start(); });
    }
    window_.Frame1.Visible = true;
    window_.Command8.Caption = texts::selectBackup;
    window_.Command8.Enabled = true;
    SetTabList();
    ShowNextStep();
}

void OptionsTab::LayOut(forms::Area page) {
    namespace measure = forms::measure;
    forms::Area column = page.TakeRight(measure::buttonWidth, measure::margin);
    Put(window_.Command8, column.TakeTop(measure::buttonHeight, measure::gap));
    for (CheckBox* box : {&window_.Check1, &window_.Check2, &window_.Check3}) {
        Put(*box, column.TakeTop(checkHeight, measure::smallGap));
    }
    Put(window_.Command11, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(window_.Command9, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(window_.Command7, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(window_.Command10, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(window_.Label9, column.TakeBottom(2 * measure::lineHeight));

    Put(window_.Label1, page.TakeTop(measure::lineHeight, measure::smallGap));
    forms::Area box = page.TakeBottom(stepBoxHeight, measure::gap);
    Put(window_.Frame1, box);
    box.SkipTop(frameCaptionHeight);
    box = box.Inside(measure::margin);
    Put(window_.Image1, box.TakeLeft(pictureSize, measure::margin));
    Put(window_.Label10, box);
    Put(window_.List1, page.TakeTop((page.height - measure::gap) / 2, measure::gap));
    Put(window_.List2, page);
}

}  // namespace marlok::ui
