#include "ui/ReviewTab.h"

#include <array>
#include <cstdio>

#include "engine/PendingDeletions.h"
#include "engine/SavedFiles.h"
#include "fileops/Errors.h"
#include "forms/Measures.h"
#include "forms/Windows.h"
#include "paths/ProgramFiles.h"
#include "ui/frmReplace.h"
#include "ui/frmSSTab.h"
#include "ui/run/Breather.h"
#include "ui/run/Restart.h"

namespace marlok::ui {

namespace {

// Captions of window_.Command13: what it does next.
constexpr const char* showSaved = "Show Saved Files";
constexpr const char* replaceSelected = "Replace Selected Files";

constexpr const char* closeProgram = "Close Program";
constexpr const char* savedHeading = "List of Saved Files";
constexpr const char* working = "Working Please Wait";

const std::string noticeIndent(5, ' ');

constexpr forms::Colour red = forms::Rgb(192, 0, 0);
constexpr forms::Colour black = forms::Rgb(0, 0, 0);

/// Milliseconds. The growing list is painted too, which takes its time: seldom, then.
constexpr std::uint64_t paintInterval = 250;

constexpr std::uint32_t confirmation = messagestyle::okCancel | messagestyle::information;

const std::string& NoSavedFiles() {
    static const std::string line = std::string(30, ' ') + "No Files In Backup Folder";
    return line;
}

const std::string& NoOriginals() {
    static const std::string line = std::string(35, ' ') + "No Files In Original List";
    return line;
}

}  // namespace

std::string WithThousands(std::int64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t place = digits.size(); place > 3 + (number < 0 ? 1U : 0U);) {
        place -= 3;
        digits.insert(place, 1, ',');
    }
    return digits;
}

std::string ElapsedSeconds(std::uint64_t start, std::uint64_t end) {
    std::array<char, 40> text{};
    const float seconds = static_cast<float>(end - start) / 1000.0F;
    const int length = std::snprintf(text.data(), text.size(), "%.2f", static_cast<double>(seconds));
    return std::string(text.data(), static_cast<std::size_t>(length)) + "  Seconds";
}

void ReviewTab::Enter() {
    window_.Command8.Caption = texts::selectBackup;
    window_.Command13.Caption = window_.List6.ListCount() > 0 ? replaceSelected : showSaved;
    if (FillLocations(window_.List5)) {
        window_.List5.SetListIndex(0);
    }
    window_.Command17.Enabled = false;
}

void ReviewTab::ChooseLocation() {
    window_.List6.Clear();
    window_.Text1.Text = "";
    window_.Text2.Text = "";
    window_.Command13.Caption = showSaved;
    window_.Command13.Enabled = true;
    window_.Command17.Enabled = false;
    window_.Command16.Enabled = true;
}

void ReviewTab::ChooseLine() {
    window_.Command17.Enabled = true;
    if (window_.Command13.Caption.Get() == replaceSelected) {
        window_.Command13.Enabled = true;
    }
}

/// The location picked in List5; nothing when there is none, which the user is shown. Without a location a search would
/// begin at the root of the current drive.
std::optional<Location> ReviewTab::ReviewedLocation() const {
    Location location(window_.List5.List(window_.List5.ListIndex()));
    if (location.WhyRefused().empty()) {
        return location;
    }
    Tell("You Must Select a Backup Location First");
    return std::nullopt;
}

std::vector<std::string> ReviewTab::SelectedLines() const {
    std::vector<std::string> selected;
    for (int line = 0; line < window_.List6.ListCount(); ++line) {
        if (window_.List6.Selected(line)) {
            selected.push_back(window_.List6.List(line));
        }
    }
    return selected;
}

void ReviewTab::ShowOrReplace() {
    session_.gShowingOriginals = false;
    window_.Command17.Caption = "Delete Entry";
    window_.Command16.Enabled = true;
    if (window_.Command13.Caption.Get() == showSaved) {
        if (const auto location = ReviewedLocation()) {
            ShowSavedFiles(*location);
        }
    } else if (window_.Command13.Caption.Get() == replaceSelected) {
        ReplaceSelected();
    }
}

/// Shows that a listing goes on, before it takes the window's time.
std::uint64_t ReviewTab::BeginListing() {
    const std::uint64_t start = session_.machine.clock.TickCount();
    window_.Label5.Caption = working;
    window_.Label5.ForeColor = red;
    window_.Command17.Enabled = false;
    window_.Text1.Text = "";
    window_.Text2.Text = "";
    window_.Refresh();
    return start;
}

void ReviewTab::EndListing(const std::string& heading) {
    window_.Label5.Caption = heading;
    window_.Label5.ForeColor = black;
    window_.List6.AccessibleName = heading;
    window_.Refresh();
}

void ReviewTab::ShowElapsed(std::uint64_t start) {
    window_.Text2.Text = ElapsedSeconds(start, session_.machine.clock.TickCount());
}

void ReviewTab::ShowSavedFiles(const Location& location) {
    listMode_ = ListMode::saved;
    session_.gSearchOn = true;
    const std::uint64_t start = BeginListing();
    ListSavedFiles(location);
    ShowElapsed(start);
    window_.Text1.Text = WithThousands(searchSpec_.fileCount);
    window_.Command13.Caption = replaceSelected;
    window_.Command13.Enabled = false;
    window_.Command14.Caption = closeProgram;
    if (searchSpec_.fileCount == 0) {
        window_.Command13.Caption = showSaved;
        window_.Command13.Enabled = true;
    }
    EndListing(savedHeading);
}

/// Every file below the location into List6, every folder into List13, those that hold no file into List14; then what
/// there is to say about the listing itself.
FoundFolders ReviewTab::ListSavedFiles(const Location& location) {
    window_.List6.Clear();
    window_.List13.Clear();
    window_.List14.Clear();
    session_.machine.desktop.ShowHourglass(true);
    Breather breathe(session_.machine, paintInterval);
    SearchSink sink;
    sink.found = [this](std::string path) { window_.List6.AddItem(std::move(path)); };
    sink.goOn = [&] {
        breathe();
        return session_.gSearchOn;
    };
    FoundFolders folders = SavedFiles(session_.machine, session_.Configuration(), location).List(searchSpec_, sink);
    for (std::size_t i = 0; i < folders.paths.size(); ++i) {
        window_.List13.AddItem(folders.paths[i]);
        if (!folders.holdsFiles[i]) {
            window_.List14.AddItem(folders.paths[i]);
        }
    }
    session_.machine.desktop.ShowHourglass(false);
    AddNotices(folders, location);
    return folders;
}

/// Lines that are no files: they begin with blanks, so that they are told from paths, and are never replaced or
/// deleted.
void ReviewTab::AddNotices(const FoundFolders& folders, const Location& location) {
    int line = 0;  // at the top, where they are seen
    for (const BrokenListing& broken : folders.broken) {
        const bool nothing = broken.folder == location.Path() && searchSpec_.fileCount + searchSpec_.folderCount == 0;
        window_.List6.InsertItem(line++, noticeIndent +
                                             (nothing ? "The Backup Location Cannot Be Reached: "
                                                      : "Not All Is Listed, This Folder Could Not Be Read: ") +
                                             broken.folder + ", " + Describe(session_.machine.system, broken.code));
    }
    if (window_.List6.ListCount() == 0) {
        window_.List6.AddItem(NoSavedFiles());
    }
}

void ReviewTab::ShowOriginals() {
    const auto location = ReviewedLocation();
    if (!location) {
        return;
    }
    window_.Command13.Enabled = true;
    window_.Command16.Enabled = false;
    window_.List6.Clear();
    session_.gShowingOriginals = true;
    listMode_ = ListMode::original;
    const std::uint64_t start = BeginListing();
    OriginalPathList list(session_.machine, *location);
    window_.Command13.Caption = showSaved;
    const OriginalPathList::State state = ShowList(list);
    if (state == OriginalPathList::State::missing) {
        window_.List6.AddItem(NoOriginals());
    } else if (state == OriginalPathList::State::unreadable) {
        TellFailure(list.Path(), "Read", Describe(session_.machine.system, list.Code()));
    }
    window_.Command17.Caption = "Delete Entry";
    EndListing("List of Original Path Log");
    ShowElapsed(start);
}

/// The lines of the list of original paths into List6, and how many they are. What could not be read must not be
/// written back: its lines would be lost.
OriginalPathList::State ReviewTab::ShowList(OriginalPathList& list) {
    const OriginalPathList::State state = list.Load();
    originalsKnown_ = state != OriginalPathList::State::unreadable;
    for (std::string& line : list.Lines()) {
        window_.List6.AddItem(std::move(line));
    }
    window_.Text1.Text = std::to_string(window_.List6.ListCount());
    return state;
}

void ReviewTab::ReplaceSelected() {
    window_.Hide();
    const Location location(window_.List5.List(window_.List5.ListIndex()));
    std::vector<std::string> chosen = SelectedLines();
    std::erase_if(chosen, [&location](const std::string& line) { return location.RelativeNameOf(line).empty(); });
    if (chosen.empty()) {
        Tell("You Have Not Selected Any Files");
        window_.Show();
        return;
    }
    if (Tell("You Are About To Replace Selected Files", confirmation) != button::ok) {
        window_.Show();
        return;
    }
    const auto back = [this] {
        window_.Show();
        window_.Refresh();
    };
    window_.Collection().Load<frmReplace>(session_.machine, back).Run(location, chosen);
}

void ReviewTab::Delete() {
    if (window_.Command17.Caption.Get() == "Replace Folders") {
        RestoreFolders();
        return;
    }
    if (window_.Command17.Caption.Get() != "Delete Entry") {
        return;
    }
    window_.Hide();
    const bool saved = !session_.gShowingOriginals;
    const char* asked = saved ? "You Are About To Delete Selections From The Saved Files"
                              : "You Are About To Delete Selections From The Original Path Log";
    if (Tell(asked, confirmation) != button::ok) {
        window_.Show();
        return;
    }
    const auto location = ReviewedLocation();
    if (location && saved) {
        DeleteSavedFiles(*location);
        return;
    }
    if (location && originalsKnown_) {
        DeleteListLines(*location);
    }
    window_.Show();
}

void ReviewTab::DeleteSavedFiles(const Location& location) {
    window_.Text1.Text = "";
    window_.Text2.Text = "";
    session_.gSearchOn = true;
    const std::uint64_t start = session_.machine.clock.TickCount();
    const SavedFiles savedFiles(session_.machine, session_.Configuration(), location);
    RunReport report;
    const SavedFiles::Deletion deletion =
        savedFiles.Delete(SelectedLines(), report, [this] { session_.machine.desktop.PaintPending(); });
    if (!deletion.reached) {
        TellAll(report);
        ShowSavedFiles(location);
        window_.Show();
        return;
    }
    window_.List7.Clear();
    for (const std::string& path : deletion.paths) {
        window_.List7.AddItem(path);
    }
    window_.Command14.Caption = "Stop Search";
    window_.Label5.Caption = savedHeading;
    const FoundFolders found = ListSavedFiles(location);
    const SystemError queued = QueueDeletions(session_.machine, savedFiles.EmptiedFolders(found, deletion.paths));
    if (queued != error::success) {
        report.Add(session_.gAppFolder.PathOf(programfile::deleteFolder), queued);
    }
    window_.List13.Clear();
    window_.List14.Clear();
    savedFiles.TakeOffList(deletion.paths, report);
    TellAll(report);
    window_.Text1.Text = WithThousands(searchSpec_.fileCount);
    ShowElapsed(start);
    window_.Command13.Caption = replaceSelected;
    window_.Command14.Caption = closeProgram;
    RequestRestart(session_.machine, window_);
}

void ReviewTab::DeleteListLines(const Location& location) {
    const std::uint64_t start = session_.machine.clock.TickCount();
    listMode_ = ListMode::original;
    window_.Command17.Enabled = false;
    window_.Text1.Text = "";
    window_.Text2.Text = "";
    window_.Command13.Caption = showSaved;
    window_.List7.Clear();
    for (int line = 0; line < window_.List6.ListCount(); ++line) {
        if (!window_.List6.Selected(line)) {
            window_.List7.AddItem(window_.List6.List(line));
        }
    }
    OriginalPathList list(session_.machine, location);
    list.SetLines(window_.List7.Items());
    const SystemError code = list.Save(OriginalPathList::NothingLeft::removesTheFile);
    window_.List6.Clear();
    window_.List7.Clear();
    if (code != error::success) {
        RunReport report;
        report.Add(list.Path(), code);
        TellAll(report);
    }
    ShowList(list);
    ShowElapsed(start);
}

void ReviewTab::RestoreFolders() {
    if (IsEndMark(window_.List5.List(window_.List5.ListIndex()))) {
        Tell("You Have Not Selected a Backup Up Folder");
    } else if (IsEndMark(window_.List6.List(window_.List6.ListIndex()))) {
        Tell("You Have Not Selected a Folder To Restore");
    } else {
        window_.Collection().Load<frmReplace>(session_.machine, [this] { window_.Show(); }).Show();
    }
}

void ReviewTab::LayOut(forms::Area page) {
    namespace measure = forms::measure;
    forms::Area column = page.TakeRight(measure::buttonWidth, measure::margin);
    forms::Area locations = page.TakeTop(page.height / 4);
    page.SkipTop(measure::margin);
    Put(window_.Label4, locations.TakeTop(measure::lineHeight, measure::smallGap));
    Put(window_.List5, locations);
    Put(window_.Label5, page.TakeTop(measure::lineHeight, measure::smallGap));
    Put(window_.List6, page);

    column.SkipTop(measure::lineHeight + measure::smallGap);
    Put(window_.Command13, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(window_.Command16, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(window_.Command17, column.TakeTop(measure::buttonHeight, measure::margin));
    Put(window_.Label6, column.TakeTop(measure::lineHeight, measure::smallGap));
    Put(window_.Text1, column.TakeTop(measure::comboHeight, measure::gap));
    Put(window_.Label7, column.TakeTop(measure::lineHeight, measure::smallGap));
    Put(window_.Text2, column.TakeTop(measure::comboHeight, measure::gap));
    Put(window_.Command14, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(window_.Command15, column.TakeBottom(measure::buttonHeight, measure::gap));
}

}  // namespace marlok::ui
