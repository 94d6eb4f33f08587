#include "ui/BackupFolderTab.h"

#include "fileops/Errors.h"
#include "forms/Measures.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "text/Text.h"
#include "ui/frmSSTab.h"

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

/// Why no new folder can be called so, as a sentence for the user; "" when one can.
std::string WhyNoFolderName(const std::string& name) {
    if (WithoutTrailingDots(name).empty()) {
        return "A folder's name is more than dots and blanks.";
    }
    if (!IsPlainName(name)) {
        return "Enter one name, without any of these characters:  \\ / : * ? \" < > |";
    }
    if (IsDeviceName(name)) {
        return "Windows keeps this name for a device. Enter another one.";
    }
    if (IsAlteredName(name)) {
        return "Windows drops a dot or a blank at the end of a name. Leave it out.";
    }
    return "";
}

}  // namespace

void BackupFolderTab::Enter() {
    window_.Drive1.Refresh();
    window_.File1.Refresh();
    window_.Dir1.Refresh();
    window_.Command1.Enabled = false;
    window_.Command12.Enabled = false;
    window_.Command8.Caption = texts::selectBackup;
    if (!FillLocations(window_.List3)) {
        window_.List3.InsertItem(0, texts::noFolder);
        window_.SSTab1.SetTabEnabled(tab::reviewSaved, false);
        window_.SSTab1.SetTabEnabled(tab::filesToBackup, false);
        return;
    }
    window_.List3.SetListIndex(0);
    window_.SSTab1.SetTabEnabled(tab::filesToBackup, true);
    // A location without sources has its saved files reviewable from here: deliberate.
    if (!session_.Configuration().AnySource(Location(window_.List3.List(0)))) {
        window_.SSTab1.SetTabEnabled(tab::reviewSaved, true);
    }
}

void BackupFolderTab::FollowFolder() {
    window_.File1.SetPath(window_.Dir1.Path());
}

void BackupFolderTab::ChooseFolder() {
    window_.Command1.Enabled = true;
    window_.Command12.Enabled = true;
}

void BackupFolderTab::AddLocation() {
    std::string path = window_.Dir1.Path();
    if (text::CharacterCount(path) < shortestFolder) {
        path = window_.Dir1.Highlighted();
    }
    if (path.find(' ') != std::string::npos) {
        Tell("You Cannot Have A Space in The Backup Location Name", plainInformation, "Marlok Info");
        return;
    }
    if (path.find(',') != std::string::npos) {
        // It separates arguments: an unattended run could not be given this location.
        Tell("You Cannot Have A Comma in The Backup Location Name", plainInformation, "Marlok Info");
        return;
    }
    if (const std::string reason = Location(path).WhyRefused(); !reason.empty()) {
        Tell("You Cannot Use This Folder As A Backup Location:\r\n\r\n" + reason, plainInformation, "Marlok Info");
        return;
    }
    if (Holds(window_.List3, path)) {
        Tell("This Folder Has Already Been Selected!");
        return;
    }
    if (window_.List3.List(0) == texts::noFolder) {
        window_.List3.RemoveItem(0);
    }
    window_.List3.AddItem(path);
    StoreLocations();
    window_.SSTab1.SetTabEnabled(tab::filesToBackup, true);
    window_.List3.SetListIndex(0);
    if (session_.Configuration().SourceAt(Location(window_.List3.List(0)), firstEntryNumber) > endMark) {
        window_.SSTab1.SetTabEnabled(tab::reviewSaved, true);
    }
    const Location added(path);
    TellSharedPlaces(added, session_.Configuration().Sources(added));  // it may come back with its sources
}

void BackupFolderTab::StoreLocations() {
    TellUnlessStored(session_.Configuration().SaveLocations(window_.List3.Items()));
}

void BackupFolderTab::CreateFolder() {
    const std::string asked = "The Path You Have Selected Is\r\n\r\n" + std::string(17, ' ') + window_.Dir1.Path() +
                              "\r\n\r\n        Is This Correct?";
    if (Tell(asked, question) != button::yes) {
        return;
    }
    Desktop& desktop = session_.machine.desktop;
    const std::string folder = window_.Dir1.Path();
    const std::string name =
        desktop.AskText("Enter Name Of Folder", texts::infoTitle, desktop.ScreenWidth() / 2 - questionLeft,
                        desktop.ScreenHeight() / 2 - questionTop);
    if (name.empty()) {
        return;
    }
    const std::string refused = WhyNoFolderName(name);
    if (refused.empty()) {
        MakeFolder(folder, name);
    } else {
        TellFailure(name, "Created", refused);
    }
    window_.Show();
}

void BackupFolderTab::MakeFolder(const std::string& folder, const std::string& name) {
    const SystemError code = session_.machine.files.CreateFolder(Join(folder, name));
    window_.Dir1.Refresh();
    if (window_.Dir1.Path() != folder) {
        // Gone while it was shown. What is open now nobody has chosen: it may be the whole drive.
        window_.Command1.Enabled = false;
        window_.Command12.Enabled = false;
    }
    if (code == error::alreadyExists || code == error::fileExists) {
        Tell("This Folder Already Exists");
    } else if (code != error::success) {
        TellFailure(Join(folder, name), "Created", Describe(session_.machine.system, code));
    }
}

void BackupFolderTab::RemoveLocation() {
    if (Tell("This Will Remove Selected Backup Path, Continue?", question) != button::yes) {
        return;
    }
    window_.List3.RemoveItem(window_.List3.ListIndex());
    // The line that says that there is no location is none.
    if (window_.List3.List(0) != texts::noFolder) {
        StoreLocations();
    }
    if (window_.List3.ListCount() == 0) {
        window_.List3.AddItem(texts::noFolder);
        window_.SSTab1.SetTabEnabled(tab::reviewSaved, false);
        window_.SSTab1.SetTabEnabled(tab::filesToBackup, false);
    }
}

void BackupFolderTab::LayOut(forms::Area page) {
    namespace measure = forms::measure;
    forms::Area column = page.TakeRight(measure::buttonWidth, measure::margin);
    forms::Area locations = page.TakeBottom(page.height * 2 / 5);
    Put(window_.Label2, locations.TakeTop(measure::lineHeight, measure::smallGap));
    Put(window_.List3, locations);
    page.SkipBottom(measure::margin);

    forms::Area folders = page.TakeLeft((page.width - measure::margin) / 2, measure::margin);
    Put(window_.Label11, folders.TakeTop(measure::lineHeight, measure::smallGap));
    Put(window_.Drive1, folders.TakeTop(measure::comboHeight, measure::gap));
    Put(window_.Dir1, folders);
    Put(window_.Label12, page.TakeTop(measure::lineHeight, measure::smallGap));
    Put(window_.File1, page);

    column.SkipTop(measure::lineHeight + measure::smallGap);
    Put(window_.Command1, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(window_.Command12, column.TakeTop(measure::buttonHeight, measure::gap));
    Put(window_.Command3, column.TakeBottom(measure::buttonHeight, measure::gap));
    Put(window_.Command2, column.TakeBottom(measure::buttonHeight, measure::gap));
}

}  // namespace marlok::ui
