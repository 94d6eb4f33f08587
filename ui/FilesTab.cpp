#include "ui/FilesTab.h"

#include <algorithm>

#include "engine/SourceCopies.h"
#include "fileops/FolderFunctions.h"
#include "fileops/MsgBoxText.h"
#include "fileops/Presence.h"
#include "forms/Measures.h"
#include "paths/Path.h"
#include "ui/frmSSTab.h"

namespace marlok::ui {

namespace {

// Captions of window_.Command4; they say what it will add.
constexpr const char* addFolder = "Add Folder To List";
constexpr const char* addFile = "Add File To List";

}  // namespace

void FilesTab::Enter() {
    window_.List4.Clear();
    window_.List4.Visible = true;
    window_.Drive2.Refresh();
    window_.File2.Refresh();
    window_.Dir2.Refresh();
    window_.Command8.Caption = texts::selectBackup;
    window_.Command4.Enabled = false;
    window_.Command18.Enabled = false;
    if (!FillLocations(window_.List9)) {
        window_.List9.AddItem(texts::noFiles);
        return;
    }
    window_.List9.SetListIndex(0);  // its click shows the sources
}

void FilesTab::OfferFolders() {
    window_.Command4.Caption = addFolder;
}

void FilesTab::FollowFolder() {
    window_.File2.SetPath(window_.Dir2.Path());
}

void FilesTab::ChooseFolder() {
    window_.Command4.Caption = addFolder;
    window_.Command4.Enabled = true;
}

void FilesTab::ChooseFiles() {
    window_.Command4.Caption = addFile;
    window_.Command4.Enabled = true;
}

void FilesTab::ShowSources() {
    window_.List4.Clear();
    window_.Command18.Enabled = false;
    const std::string& location = window_.List9.List(window_.List9.ListIndex());
    if (IsEndMark(location)) {
        Tell("You Must Select a Backup Location First");
        return;
    }
    for (const std::string& source : session_.Configuration().Sources(Location(location))) {
        window_.List4.AddItem(source);
    }
    if (window_.List4.ListCount() == 0) {
        window_.List4.AddItem(texts::noFiles);
    }
}

void FilesTab::AddSources() {
    const std::string location = window_.List9.List(window_.List9.ListIndex());
    // The line that says that there is no location is none: what were added to it would be kept nowhere.
    if (IsEndMark(location) || location == texts::noFiles) {
        Tell("You Must Select A Target Path First", messagestyle::ok);
        return;
    }
    if (window_.Command4.Caption.Get() == addFile && !AddFiles()) {
        return;
    }
    if (window_.Command4.Caption.Get() == addFolder && !AddFolder()) {
        return;
    }
    if (window_.List4.List(0) == texts::noFiles) {
        window_.List4.RemoveItem(0);
    }
    StoreAdded(Location(location));
}

/// Stores what List4 holds, and sees to what is new in it.
void FilesTab::StoreAdded(const Location& location) {
    const std::vector<std::string> before = session_.Configuration().Sources(location);
    std::vector<std::string> added = window_.List4.Items();
    std::erase_if(added,
                  [&before](const std::string& source) { return std::ranges::find(before, source) != before.end(); });
    TellUnlessStored(session_.Configuration().SaveSources(location, window_.List4.Items()));
    if (window_.Command4.Caption.Get() == addFile) {
        for (const std::string& file : added) {
            MakeFolderFor(location, file);
        }
    }
    TellSharedPlaces(location, added);
}

/// A run makes folders for the files of folders; a single file it copies only where its folder is there.
void FilesTab::MakeFolderFor(const Location& location, const std::string& file) {
    FileSystem& files = session_.machine.files;
    if (WhyUnreachable(files, location.Path()) != error::success) {
        return;
    }
    const std::string folder = FolderOf(location.SavedPathOf(file));
    if (!CreateNestedFolders(files, session_.machine.process, folder)) {
        TellFailure(folder, "Created", file + " is not saved before this folder is there.");
    }
}

/// False when a file stands in the list already: the rest is not added then, and nothing is stored.
bool FilesTab::AddFiles() {
    for (int file = 0; file < window_.File2.ListCount(); ++file) {
        if (window_.File2.Selected(file) && !AddSource(AddBackslash(window_.Dir2.Path()) + window_.File2.List(file))) {
            window_.Command4.Enabled = true;
            return false;
        }
    }
    return true;
}

bool FilesTab::AddFolder() {
    return AddSource(window_.Dir2.Highlighted());
}

bool FilesTab::AddSource(const std::string& path) {
    const auto& lines = window_.List4.Items();
    const auto end = std::ranges::find_if(lines, IsEndMark);
    if (std::find(lines.begin(), end, path) != end) {
        Tell(path + " Has Already Been Selected");
        return false;
    }
    window_.List4.AddItem(path);
    return true;
}

void FilesTab::RemoveSources() {
    if (IsEndMark(window_.List9.List(window_.List9.ListIndex()))) {
        Tell("You Must Select a Backup Path First");
    } else if (Tell("This Will Remove Selected File From Lower List, Continue?", question) == button::yes) {
        switch (AskEntryOrFile(session_.machine.desktop,
                               "Do You Want To Delete The Saved File, or Only The List Entry?",
                               "Marlok Backup Utility")) {
            case EntryOrFile::onlyEntry:
                RemoveEntriesOnly();
                break;
            case EntryOrFile::fileAlso:
                DeleteSourceCopies();
                break;
            case EntryOrFile::cancel:
                break;
        }
    }
    window_.Command18.Enabled = false;
}

void FilesTab::RemoveEntriesOnly() {
    window_.List8.Clear();
    for (int line = 0; line < window_.List4.ListCount(); ++line) {
        const std::string& source = window_.List4.List(line);
        if (!window_.List4.Selected(line) && source != texts::noFiles && !IsEndMark(source)) {
            window_.List8.AddItem(source);
        }
    }
    StoreAndShow(Location(window_.List9.List(window_.List9.ListIndex())), window_.List8.Items());
    window_.List8.Clear();
}

void FilesTab::StoreAndShow(const Location& location, const std::vector<std::string>& sources) {
    TellUnlessStored(session_.Configuration().SaveSources(location, sources));
    window_.List4.Clear();
    for (const std::string& source : sources) {
        window_.List4.AddItem(source);
    }
    if (window_.List4.ListCount() == 0) {
        window_.List4.AddItem(texts::noFiles);
    }
}

void FilesTab::DeleteSourceCopies() {
    for (forms::ListBox* list : {&window_.List10, &window_.List11, &window_.List12}) {
        list->Clear();
    }
    const std::string& target = window_.List9.List(window_.List9.ListIndex());
    if (target.empty()) {
        Tell("You Have Not Selected A Target Path To Delete The File From");
        return;
    }
    const Location location(target);
    for (int line = 0; line < window_.List4.ListCount(); ++line) {
        if (window_.List4.List(line) != texts::noFiles) {
            (window_.List4.Selected(line) ? window_.List10 : window_.List11).AddItem(window_.List4.List(line));
        }
    }
    if (DeleteCopies(location)) {
        const std::vector<std::string>& kept = window_.List11.Items();
        StoreAndShow(location, {kept.begin(), std::ranges::find_if(kept, IsEndMark)});
    }
    for (forms::ListBox* list : {&window_.List10, &window_.List11, &window_.List12}) {
        list->Clear();
    }
}

/// Deletes what is saved of the sources in List10, and takes its lines off the list of original paths. False when the
/// location cannot be reached: then the sources are to stay.
bool FilesTab::DeleteCopies(const Location& location) {
    SourceCopies copies(session_.machine, session_.Configuration(), location, window_.List11.Items());
    RunReport report;
    bool reached = copies.MayDelete(report);
    std::vector<std::string> deleted;
    for (std::size_t next = 0; reached && next < window_.List10.Items().size(); ++next) {
        const std::string& source = window_.List10.Items()[next];
        const SourceCopies::Outcome outcome = copies.Delete(source, report);
        reached = outcome != SourceCopies::Outcome::unreachable;
        if (outcome == SourceCopies::Outcome::deleted) {
            deleted.push_back(source);
        }
    }
    TellEach(report, "Deleted");
    if (reached) {
        RunReport listReport;
        for (std::string& line : copies.TakeOffList(deleted, listReport)) {
            window_.List12.AddItem(std::move(line));
        }
        TellEach(listReport, "Changed");
    }
    return reached;
}

void FilesTab::TellEach(const RunReport& report, const std::string& what) const {
    for (const RunReport::Line& line : report.Lines()) {
        TellFailure(line.path, what, ReasonOf(session_.machine.system, line));
    }
}

void FilesTab::LayOut(forms::Area page) {
    namespace measure = forms::measure;
    forms::Area column = page.TakeRight(measure::buttonWidth, measure::margin);
    forms::Area upper = page.TakeTop(page.height / 4);
    page.SkipTop(measure::margin);
    forms::Area lower = page.TakeBottom(page.height * 2 / 5);
    page.SkipBottom(measure::margin);

    Put(window_.Label8, upper.TakeTop(measure::lineHeight, measure::smallGap));
    Put(window_.List9, upper);
    Put(window_.Label13, lower.TakeTop(measure::lineHeight, measure::smallGap));
    Put(window_.List4, lower);

    Put(window_.Label3, page.TakeTop(measure::lineHeight, measure::smallGap));
    forms::Area folders = page.TakeLeft((page.width - measure::margin) / 2, measure::margin);
    Put(window_.Drive2, folders.TakeTop(measure::comboHeight, measure::gap));
    Put(window_.Dir2, folders);
    Put(window_.File2, page);

    const int besideBrowser = page.top;
    column.SkipTop(besideBrowser - column.top);
    Put(window_.Command4, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(window_.Command18, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(window_.Command6, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(window_.Command5, column.TakeBottom(measure::buttonHeight, measure::gap));
}

}  // namespace marlok::ui
