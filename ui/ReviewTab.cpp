#include <array>
#include <cstdio>

#include "engine/Breather.h"
#include "engine/LocationName.h"
#include "engine/PathLookup.h"
#include "engine/Restore.h"
#include "fileops/Errors.h"
#include "fileops/FileSearch.h"
#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"
#include "forms/Measures.h"
#include "text/Text.h"
#include "ui/Texts.h"
#include "ui/frmReplace.h"
#include "ui/frmSSTab.h"

/// The tab "Review Saved": what was saved in a location, its list of original paths, and copying saved files back.
namespace marlok::ui {

namespace {

// Captions of Command13: what it does next.
constexpr const char* showSaved = "Show Saved Files";
constexpr const char* replaceSelected = "Replace Selected Files";

constexpr const char* closeProgram = "Close Program";
constexpr const char* savedHeading = "List of Saved Files";
constexpr const char* working = "Working Please Wait";

constexpr forms::Colour red = forms::Rgb(192, 0, 0);
constexpr forms::Colour black = forms::Rgb(0, 0, 0);

/// Milliseconds. The growing list is painted too, which takes its time: seldom, then.
constexpr std::uint64_t paintInterval = 250;

constexpr std::uint32_t plainInformation = messagestyle::ok | messagestyle::information;

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
        digits.insert(place, ",");
    }
    return digits;
}

std::string ElapsedSeconds(std::uint64_t start, std::uint64_t end) {
    std::array<char, 40> text{};
    const float seconds = static_cast<float>(end - start) / 1000.0F;
    const int length = std::snprintf(text.data(), text.size(), "%.2f", static_cast<double>(seconds));
    return std::string(text.data(), static_cast<std::size_t>(length)) + "  Seconds";
}

void frmSSTab::ConnectReview() {
    List5.Click = [this] { List5_Click(); };
    List6.Click = [this] { List6_Click(); };
    Command13.Click = [this] { Command13_Click(); };
    Command16.Click = [this] { Command16_Click(); };
    Command17.Click = [this] { Command17_Click(); };
}

void frmSSTab::EnterReview() {
    Command8.Caption = std::string(texts::selectBackup);
    Command13.Caption = std::string(List6.ListCount() > 0 ? replaceSelected : showSaved);
    if (FillLocations(List5)) {
        List5.SetListIndex(0);
    }
    Command17.Enabled = false;
}

void frmSSTab::List5_Click() {
    List6.Clear();
    Text1.Text = std::string();
    Text2.Text = std::string();
    Command13.Caption = std::string(showSaved);
    Command13.Enabled = true;
    Command17.Enabled = false;
    Command16.Enabled = true;
}

void frmSSTab::List6_Click() {
    Command17.Enabled = true;
    if (Command13.Caption.Get() == replaceSelected) {
        Command13.Enabled = true;
    }
}

/// The location picked in List5; "" when there is none, which the user is told. Without a location a search would begin
/// at the root of the current drive.
std::string frmSSTab::ReviewedLocation() {
    const std::string& location = List5.List(List5.ListIndex());
    if (WhyLocationRefused(location).empty()) {
        return location;
    }
    Tell("You Must Select a Backup Location First", plainInformation);
    return "";
}

void frmSSTab::Command13_Click() {
    program_.gShowingOriginals = false;
    Command17.Caption = std::string("Delete Entry");
    Command16.Enabled = true;
    if (Command13.Caption.Get() == showSaved) {
        const std::string location = ReviewedLocation();
        if (!location.empty()) {
            ShowSavedFiles(location);
        }
    } else if (Command13.Caption.Get() == replaceSelected) {
        ReplaceSelected();
    }
}

/// Shows that a listing goes on, before it takes the window's time.
std::uint64_t frmSSTab::BeginListing() {
    const std::uint64_t start = program_.machine.clock.TickCount();
    Label5.Caption = std::string(working);
    Label5.ForeColor = red;
    Command17.Enabled = false;
    Text1.Text = std::string();
    Text2.Text = std::string();
    Refresh();
    return start;
}

void frmSSTab::EndListing(const std::string& heading) {
    Label5.Caption = heading;
    Label5.ForeColor = black;
    List6.AccessibleName = heading;
    Refresh();
}

void frmSSTab::ShowElapsed(std::uint64_t start) {
    Text2.Text = ElapsedSeconds(start, program_.machine.clock.TickCount());
}

void frmSSTab::ShowSavedFiles(const std::string& location) {
    listMode_ = ListMode::saved;
    program_.gSearchOn = true;
    const std::uint64_t start = BeginListing();
    ListSavedFiles(location);
    ShowElapsed(start);
    Text1.Text = WithThousands(searchSpec_.fileCount);
    Command13.Caption = std::string(replaceSelected);
    Command13.Enabled = false;
    Command14.Caption = std::string(closeProgram);
    if (List6.List(0).empty()) {
        List6.AddItem(NoSavedFiles());
        Command13.Caption = std::string(showSaved);
        Command13.Enabled = true;
    }
    EndListing(savedHeading);
}

/// Every file below the location into List6, every folder into List13, those that hold no file into List14.
void frmSSTab::ListSavedFiles(const std::string& location) {
    FileSystem& files = program_.machine.files;
    List6.Clear();
    List13.Clear();
    searchSpec_ = {true, 0, 0, "*.*", AddBackslash(location)};
    program_.machine.desktop.ShowHourglass(true);
    FoundFolders folders;
    Breather breathe(program_, paintInterval);
    SearchFiles(files, searchSpec_, &List6, &folders, program_.gSearchOn, [&breathe] { breathe(); });
    List14.Clear();
    for (std::size_t i = 0; i < folders.paths.size(); ++i) {
        if (!folders.holdsFiles[i]) {
            List14.AddItem(folders.paths[i]);
        }
        List13.AddItem(std::move(folders.paths[i]));
    }
    program_.machine.desktop.ShowHourglass(false);
}

void frmSSTab::Command16_Click() {
    const std::string location = ReviewedLocation();
    if (location.empty()) {
        return;
    }
    Command13.Enabled = true;
    Command16.Enabled = false;
    List6.Clear();
    program_.gShowingOriginals = true;
    listMode_ = ListMode::original;
    const std::uint64_t start = BeginListing();
    originalLogPath_ = OriginalListPath(program_, location);
    Command13.Caption = std::string(showSaved);
    const SystemError code = ShowOriginalPaths();
    const bool missing = code == error::fileNotFound || code == error::pathNotFound;
    // What could not be read must not be written back: its lines would be lost.
    originalsKnown_ = code == error::success || missing;
    if (missing) {
        List6.AddItem(NoOriginals());
    } else if (!originalsKnown_) {
        Tell(originalLogPath_ + "\r\n\r\n Could Not Be Read\r\n\r\n" + Describe(program_.machine.system, code),
             plainInformation);
    }
    Command17.Caption = std::string("Delete Entry");
    EndListing("List of Original Path Log");
    ShowElapsed(start);
}

/// The lines of the list of original paths into List6, and how many they are.
SystemError frmSSTab::ShowOriginalPaths() {
    std::string bytes;
    const SystemError code = ReadWholeFile(program_.machine.files, originalLogPath_, bytes);
    const std::string whole =
        code == error::success ? DecodeText(program_.machine.system, std::move(bytes)) : std::string();
    for (const std::string_view line : text::Split(whole, "\r\n")) {
        if (!line.empty()) {
            List6.AddItem(std::string(line));
        }
    }
    Text1.Text = std::to_string(List6.ListCount());
    return code;
}

void frmSSTab::ReplaceSelected() {
    Hide();
    std::vector<std::string> chosen;
    for (int line = 0; line < List6.ListCount(); ++line) {
        if (List6.Selected(line)) {
            chosen.push_back(List6.List(line));
        }
    }
    if (chosen.empty()) {
        Tell("You Have Not Selected Any Files", plainInformation);
        Show();
        return;
    }
    if (Tell("You Are About To Replace Selected Files", messagestyle::okCancel | messagestyle::information) !=
        button::ok) {
        Show();
        return;
    }
    std::string originals;
    const std::string path = OriginalListPath(program_, List5.List(List5.ListIndex()));
    const SystemError code = ReadOriginals(path, originals);
    if (code != error::success) {
        Tell(path + "\r\n\r\n Could Not Be Read\r\n\r\n" + Describe(program_.machine.system, code), plainInformation);
        Show();
        return;
    }
    auto& window = Collection().Load<frmReplace>(program_);
    window.Show();
    window.Refresh();
    if (ReplaceFiles(chosen, originals, window)) {
        window.Timer1.Start();
        return;
    }
    window.Unload();
    Show();
    Refresh();
}

/// The text of a list of original paths; a missing one is empty.
SystemError frmSSTab::ReadOriginals(const std::string& path, std::string& text) {
    const SystemError code = ReadWholeFile(program_.machine.files, path, text);
    text = DecodeText(program_.machine.system, std::move(text));
    return code == error::fileNotFound || code == error::pathNotFound ? error::success : code;
}

/// False when the only selected file could not be replaced: there is nothing to log then.
bool frmSSTab::ReplaceFiles(const std::vector<std::string>& chosen, const std::string& list, frmReplace& window) {
    const std::string location = List5.List(List5.ListIndex());
    std::vector<std::string> names;
    names.reserve(chosen.size());
    for (const std::string& saved : chosen) {
        names.emplace_back(text::AfterFirst(saved, text::CharacterCount(location) + 1));
    }
    const std::vector<std::size_t> places = FirstOccurrences(list, names);
    program_.gSearchOn = true;
    const auto tellMissing = [&](const std::string& message) {
        window.Hide();
        Tell(message, plainInformation);
        window.Show();
    };
    std::int16_t notListed = 0;
    std::int16_t notLocated = 0;
    bool lastMissing = false;  // the last file selected was not there any more
    for (std::size_t k = 0; k < chosen.size(); ++k) {
        DirectoryEntry entry;
        lastMissing = false;
        if (places[k] == notFound) {
            notListed = static_cast<std::int16_t>(CheckedCounter(notListed + 1));
            tellMissing(chosen[k] + "\r\n\r\n Not Listed In Log File");
        } else if (program_.machine.files.GetEntry(chosen[k], entry) != error::success || entry.IsFolder()) {
            notLocated = static_cast<std::int16_t>(CheckedCounter(notLocated + 1));
            lastMissing = true;
            tellMissing(chosen[k] + "\r\n\r\n Not Located In Backup File");
        } else {
            ReplaceFile(chosen[k], OriginalPathAt(list, places[k], names[k]), window);
        }
    }
    if (chosen.size() == 1 && notListed + notLocated > 0) {
        return false;
    }
    // A run that ends with a missing file tells of the missing ones, every other of those not listed: deliberate.
    const int exceptions = lastMissing ? notLocated : notListed;
    if (exceptions > 0) {
        tellMissing("All Selected Files, With The Exception of " + std::to_string(exceptions) + " Files, Copied");
    }
    return true;
}

void frmSSTab::ReplaceFile(const std::string& saved, const std::string& original, frmReplace& window) {
    window.List2.AddItem(original);
    const std::string failure = RestoreFile(program_.machine, saved, original);
    if (!failure.empty()) {
        window.report.Add(saved + " -> " + original, failure);
    }
    program_.machine.desktop.PaintPending();
}

void frmSSTab::LayOutReview(forms::Area page) {
    namespace measure = forms::measure;
    forms::Area column = page.TakeRight(measure::buttonWidth, measure::margin);
    forms::Area locations = page.TakeTop(page.height / 4);
    static_cast<void>(page.TakeTop(measure::margin));
    Put(Label4, locations.TakeTop(measure::lineHeight, measure::smallGap));
    Put(List5, locations);
    Put(Label5, page.TakeTop(measure::lineHeight, measure::smallGap));
    Put(List6, page);

    static_cast<void>(column.TakeTop(measure::lineHeight + measure::smallGap));
    Put(Command13, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(Command16, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(Command17, column.TakeTop(measure::buttonHeight, measure::margin));
    Put(Label6, column.TakeTop(measure::lineHeight, measure::smallGap));
    Put(Text1, column.TakeTop(measure::comboHeight, measure::gap));
    Put(Label7, column.TakeTop(measure::lineHeight, measure::smallGap));
    Put(Text2, column.TakeTop(measure::comboHeight, measure::gap));
    Put(Command14, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(Command15, column.TakeBottom(measure::buttonHeight, measure::gap));
}

}  // namespace marlok::ui
