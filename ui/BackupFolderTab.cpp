#include "engine/LocationName.h"
#include "fileops/FolderFunctions.h"
#include "forms/Measures.h"
#include "platform/RuntimeError.h"
#include "text/Text.h"
#include "ui/Texts.h"
#include "ui/frmSSTab.h"

/// The tab "Backup Folder": the list of backup locations.
namespace marlok::ui {

namespace {

/// A path shorter than this is a drive root.
constexpr std::size_t shortestFolder = 4;

// Where the question for a folder's name appears, left of and above the middle of the screen. Twips.
constexpr int questionLeft = 2650;
constexpr int questionTop = 1000;

/// True when `path` stands in the list before the first line that ends a list.
bool Holds(const forms::ListBox& list, const std::string& path) {
    for (const std::string& line : list.Items()) {
        if (IsEndMark(line)) {
            return false;
        }
        if (line == path) {
            return true;
        }
    }
    return false;
}

}  // namespace

void frmSSTab::ConnectBackupFolder() {
    Drive1.Change = [this] { Drive1_Change(); };
    Dir1.Change = [this] { Dir1_Change(); };
    Dir1.Click = [this] { Dir1_Click(); };
    Command1.Click = [this] { Command1_Click(); };
    Command12.Click = [this] { Command12_Click(); };
    List3.DblClick = [this] { List3_DblClick(); };
}

void frmSSTab::EnterBackupFolder() {
    Drive1.Refresh();
    File1.Refresh();
    Dir1.Refresh();
    Command1.Enabled = false;
    Command12.Enabled = false;
    Command8.Caption = std::string(texts::selectBackup);
    if (!FillLocations(List3)) {
        List3.InsertItem(0, texts::noFolder);
        SSTab1.SetTabEnabled(tab::reviewSaved, false);
        SSTab1.SetTabEnabled(tab::filesToBackup, false);
        return;
    }
    List3.SetListIndex(0);
    SSTab1.SetTabEnabled(tab::filesToBackup, true);
    // A location without sources has its saved files reviewable from here: deliberate.
    if (!program_.Configuration().AnySource(List3.List(0))) {
        SSTab1.SetTabEnabled(tab::reviewSaved, true);
    }
}

void frmSSTab::Drive1_Change() {
    FollowDrive(Drive1, Dir1);
}

void frmSSTab::Dir1_Change() {
    File1.SetPath(Dir1.Path());
}

void frmSSTab::Dir1_Click() {
    Command1.Enabled = true;
    Command12.Enabled = true;
}

void frmSSTab::Command1_Click() {
    std::string path = Dir1.Path();
    if (text::CharacterCount(path) < shortestFolder) {
        path = Dir1.Highlighted();
    }
    constexpr std::uint32_t style = messagestyle::ok | messagestyle::information;
    if (path.find(' ') != std::string::npos) {
        Tell("You Cannot Have A Space in The Backup Location Name", style, "Marlok Info");
        return;
    }
    if (const std::string reason = WhyLocationRefused(path); !reason.empty()) {
        Tell("You Cannot Use This Folder As A Backup Location:\r\n\r\n" + reason, style, "Marlok Info");
        return;
    }
    if (Holds(List3, path)) {
        Tell("This Folder Has Already Been Selected!", style);
        return;
    }
    if (List3.List(0) == texts::noFolder) {
        List3.RemoveItem(0);
    }
    List3.AddItem(path);
    StoreLocations();
    SSTab1.SetTabEnabled(tab::filesToBackup, true);
    List3.SetListIndex(0);
    if (program_.Configuration().Source(List3.List(0), firstEntryNumber) > endMark) {
        SSTab1.SetTabEnabled(tab::reviewSaved, true);
    }
}

void frmSSTab::StoreLocations() {
    TellUnlessStored(program_.Configuration().SaveLocations(List3.Items()));
}

void frmSSTab::Command12_Click() {
    const std::string question = "The Path You Have Selected Is\r\n\r\n" + std::string(17, ' ') + Dir1.Path() +
                                 "\r\n\r\n        Is This Correct?";
    if (Tell(question, messagestyle::yesNo | messagestyle::question) != button::yes) {
        return;
    }
    Desktop& desktop = program_.machine.desktop;
    const std::string folder = AddBackslash(Dir1.Path());
    const std::string name =
        desktop.AskText("Enter Name Of Folder", texts::infoTitle, desktop.ScreenWidth() / 2 - questionLeft,
                        desktop.ScreenHeight() / 2 - questionTop);
    if (name.empty()) {
        return;
    }
    try {
        static_cast<void>(CreateFolder(program_.machine.files, folder + name));
        Dir1.Refresh();
    } catch (const RuntimeError& failure) {
        Dir1.Refresh();
        if (failure.Number() == runtimeerror::fileAlreadyExists) {
            Tell("This Folder Already Exists", messagestyle::ok | messagestyle::information);
        }
        // Any other failure shows in the list: the folder is not there.
    }
    Show();
}

void frmSSTab::List3_DblClick() {
    if (Tell("This Will Remove Selected Backup Path, Continue?", messagestyle::yesNo | messagestyle::question) !=
        button::yes) {
        return;
    }
    List3.RemoveItem(List3.ListIndex());
    // The line that says that there is no location is none.
    if (List3.List(0) != texts::noFolder) {
        StoreLocations();
    }
    if (List3.ListCount() == 0) {
        List3.AddItem(texts::noFolder);
        SSTab1.SetTabEnabled(tab::reviewSaved, false);
        SSTab1.SetTabEnabled(tab::filesToBackup, false);
    }
}

void frmSSTab::LayOutBackupFolder(forms::Area page) {
    namespace measure = forms::measure;
    forms::Area column = page.TakeRight(measure::buttonWidth, measure::margin);
    forms::Area locations = page.TakeBottom(page.height * 2 / 5);
    Put(Label2, locations.TakeTop(measure::lineHeight, measure::smallGap));
    Put(List3, locations);
    static_cast<void>(page.TakeBottom(measure::margin));

    forms::Area folders = page.TakeLeft((page.width - measure::margin) / 2, measure::margin);
    Put(Label11, folders.TakeTop(measure::lineHeight, measure::smallGap));
    Put(Drive1, folders.TakeTop(measure::comboHeight, measure::gap));
    Put(Dir1, folders);
    Put(Label12, page.TakeTop(measure::lineHeight, measure::smallGap));
    Put(File1, page);

    static_cast<void>(column.TakeTop(measure::lineHeight + measure::smallGap));
    Put(Command1, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(Command12, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(Command3, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(Command2, column.TakeBottom(measure::buttonHeight, measure::gap));
}

}  // namespace marlok::ui
