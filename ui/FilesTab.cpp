#include <algorithm>

#include "fileops/FolderFunctions.h"
#include "fileops/MsgBoxText.h"
#include "forms/Measures.h"
#include "ui/Texts.h"
#include "ui/frmSSTab.h"

/// The tab "Files To Backup": the sources of each backup location.
namespace marlok::ui {

namespace {

// Captions of Command4; they say what it will add.
constexpr const char* addFolder = "Add Folder To List";
constexpr const char* addFile = "Add File To List";

constexpr std::uint32_t plainInformation = messagestyle::ok | messagestyle::information;

}  // namespace

void frmSSTab::ConnectFiles() {
    Drive2.Change = [this] { Drive2_Change(); };
    Dir2.Change = [this] { Dir2_Change(); };
    Dir2.Click = [this] { Dir2_Click(); };
    File2.Click = [this] { File2_Click(); };
    List4.Click = [this] { List4_Click(); };
    List9.Click = [this] { List9_Click(); };
    Command4.Click = [this] { Command4_Click(); };
    Command18.Click = [this] { Command18_Click(); };
}

void frmSSTab::EnterFiles() {
    List4.Clear();
    List4.Visible = true;
    Drive2.Refresh();
    File2.Refresh();
    Dir2.Refresh();
    Command8.Caption = std::string(texts::selectBackup);
    Command4.Enabled = false;
    Command18.Enabled = false;
    if (!FillLocations(List9)) {
        List9.AddItem(texts::noFiles);
        return;
    }
    List9.SetListIndex(0);  // its click shows the sources
}

void frmSSTab::Drive2_Change() {
    FollowDrive(Drive2, Dir2);
    Command4.Caption = std::string(addFolder);
}

void frmSSTab::Dir2_Change() {
    File2.SetPath(Dir2.Path());
}

void frmSSTab::Dir2_Click() {
    Command4.Caption = std::string(addFolder);
    Command4.Enabled = true;
}

void frmSSTab::File2_Click() {
    Command4.Caption = std::string(addFile);
    Command4.Enabled = true;
}

void frmSSTab::List4_Click() {
    Command18.Enabled = true;
}

void frmSSTab::List9_Click() {
    List4.Clear();
    Command18.Enabled = false;
    const std::string& location = List9.List(List9.ListIndex());
    if (IsEndMark(location)) {
        Tell("You Must Select a Backup Location First", plainInformation);
        return;
    }
    for (const std::string& source : program_.Configuration().Sources(location)) {
        List4.AddItem(source);
    }
    if (List4.ListCount() == 0) {
        List4.AddItem(texts::noFiles);
    }
}

void frmSSTab::Command4_Click() {
    const std::string location = List9.List(List9.ListIndex());
    // The line that says that there is no location is none: what were added to it would be kept nowhere.
    if (IsEndMark(location) || location == texts::noFiles) {
        Tell("You Must Select A Target Path First", messagestyle::ok);
        return;
    }
    if (Command4.Caption.Get() == addFile && !AddFiles()) {
        return;
    }
    if (Command4.Caption.Get() == addFolder && !AddFolder()) {
        return;
    }
    if (List4.List(0) == texts::noFiles) {
        List4.RemoveItem(0);
    }
    TellUnlessStored(program_.Configuration().SaveSources(location, List4.Items()));
}

/// False when a file stands in the list already: the rest is not added then, and nothing is stored.
bool frmSSTab::AddFiles() {
    for (int file = 0; file < File2.ListCount(); ++file) {
        if (File2.Selected(file) && !AddSource(AddBackslash(Dir2.Path()) + File2.List(file))) {
            Command4.Enabled = true;
            return false;
        }
    }
    return true;
}

bool frmSSTab::AddFolder() {
    return AddSource(Dir2.Highlighted());
}

bool frmSSTab::AddSource(const std::string& path) {
    const auto& lines = List4.Items();
    const auto end = std::ranges::find_if(lines, IsEndMark);
    if (std::find(lines.begin(), end, path) != end) {
        Tell(path + " Has Already Been Selected", plainInformation);
        return false;
    }
    List4.AddItem(path);
    return true;
}

void frmSSTab::Command18_Click() {
    if (IsEndMark(List9.List(List9.ListIndex()))) {
        Tell("You Must Select a Backup Path First", plainInformation);
    } else if (Tell("This Will Remove Selected File From Lower List, Continue?",
                    messagestyle::yesNo | messagestyle::question) == button::yes) {
        switch (AskEntryOrFile(program_.machine.desktop,
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
    Command18.Enabled = false;
}

void frmSSTab::RemoveEntriesOnly() {
    List8.Clear();
    for (int line = 0; line < List4.ListCount(); ++line) {
        if (!List4.Selected(line) && List4.List(line) != texts::noFiles && !IsEndMark(List4.List(line))) {
            List8.AddItem(List4.List(line));
        }
    }
    TellUnlessStored(program_.Configuration().SaveSources(List9.List(List9.ListIndex()), List8.Items()));
    List4.Clear();
    for (const std::string& kept : List8.Items()) {
        List4.AddItem(kept);
    }
    List8.Clear();
    if (List4.ListCount() == 0) {
        List4.AddItem(texts::noFiles);
    }
}

void frmSSTab::LayOutFiles(forms::Area page) {
    namespace measure = forms::measure;
    forms::Area column = page.TakeRight(measure::buttonWidth, measure::margin);
    forms::Area upper = page.TakeTop(page.height / 4);
    static_cast<void>(page.TakeTop(measure::margin));
    forms::Area lower = page.TakeBottom(page.height * 2 / 5);
    static_cast<void>(page.TakeBottom(measure::margin));

    Put(Label8, upper.TakeTop(measure::lineHeight, measure::smallGap));
    Put(List9, upper);
    Put(Label13, lower.TakeTop(measure::lineHeight, measure::smallGap));
    Put(List4, lower);

    Put(Label3, page.TakeTop(measure::lineHeight, measure::smallGap));
    forms::Area folders = page.TakeLeft((page.width - measure::margin) / 2, measure::margin);
    Put(Drive2, folders.TakeTop(measure::comboHeight, measure::gap));
    Put(Dir2, folders);
    Put(File2, page);

    const int besideBrowser = page.top;
    static_cast<void>(column.TakeTop(besideBrowser - column.top));
    Put(Command4, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(Command18, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(Command6, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(Command5, column.TakeBottom(measure::buttonHeight, measure::gap));
}

}  // namespace marlok::ui
