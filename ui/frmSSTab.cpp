#include "ui/frmSSTab.h"

#include <algorithm>
#include <initializer_list>

#include "fileops/Errors.h"
#include "forms/Measures.h"
#include "ui/Donation.h"
#include "ui/Texts.h"
#include "ui/frmAbout.h"
#include "ui/frmReplace.h"
#include "ui/run/Form5.h"

namespace marlok::ui {

namespace {

// Twips.
constexpr int windowWidth = 11700;
constexpr int windowHeight = 7800;
constexpr int leastWidth = 10800;
constexpr int leastHeight = 7200;
constexpr int tabStripHeight = 390;

void PutAllOn(forms::TabControl& tabs, int page, std::initializer_list<forms::Control*> controls) {
    for (forms::Control* control : controls) {
        control->PutOn(tabs, page);
    }
}

}  // namespace

frmSSTab::frmSSTab(forms::Windows& windows, Program& program)
    : Form(windows, "frmSSTab", "Marlok Backup Utility"),
      Drive1(*this, "Drive1", program.machine.drives),
      Dir1(*this, "Dir1", program.machine.files),
      File1(*this, "File1", program.machine.files),
      Drive2(*this, "Drive2", program.machine.drives),
      Dir2(*this, "Dir2", program.machine.files),
      File2(*this, "File2", program.machine.files),
      program_(program) {
    for (forms::ListBox* storage : {&List7, &List8, &List10, &List11, &List12, &List13, &List14}) {
        storage->Visible = false;
    }
    List1.MultiSelect = true;
    List4.MultiSelect = true;
    List6.MultiSelect = true;
    File1.MultiSelect = false;  // its files are shown so that a folder is recognised, not chosen
    Label9.Visible = false;
    Image1.Picture = std::string("program");
    Text1.Locked = true;
    Text2.Locked = true;
    PutOnTabs();
    NameLists();
    ConnectTabs();
}

void frmSSTab::PutOnTabs() {
    PutAllOn(SSTab1, tab::options,
             {&Label1, &List1, &List2, &Check1, &Check2, &Check3, &Frame1, &Image1, &Label10, &Command8, &Label9,
              &Command10, &Command7, &Command9, &Command11});
    PutAllOn(
        SSTab1, tab::backupFolder,
        {&Label11, &Drive1, &Dir1, &Label12, &File1, &Label2, &List3, &Command1, &Command12, &Command2, &Command3});
    PutAllOn(SSTab1, tab::filesToBackup,
             {&Label8, &List9, &Label3, &Drive2, &Dir2, &File2, &Label13, &List4, &Command4, &Command18, &Command5,
              &Command6});
    PutAllOn(SSTab1, tab::reviewSaved,
             {&Label4, &List5, &Label5, &List6, &Label6, &Text1, &Label7, &Text2, &Command13, &Command16, &Command17,
              &Command15, &Command14});
}

/// A list has no caption of its own: it is called like its heading.
void frmSSTab::NameLists() {
    List1.AccessibleName = std::string("List Of Backup Paths");
    List2.AccessibleName = std::string("List Of Files To Be Backed Up");
    Image1.AccessibleName = Caption();
    Drive1.AccessibleName = std::string("Drive");
    Dir1.AccessibleName = std::string("Folder");
    File1.AccessibleName = Label12.Caption.Get();
    List3.AccessibleName = std::string("Backup Locations");
    List9.AccessibleName = std::string("Backup Locations");
    Drive2.AccessibleName = std::string("Drive");
    Dir2.AccessibleName = std::string("Folder");
    File2.AccessibleName = std::string("Files In This Folder");
    List4.AccessibleName = Label13.Caption.Get();
    List5.AccessibleName = Label4.Caption.Get();
    List6.AccessibleName = Label5.Caption.Get();
    Text1.AccessibleName = Label6.Caption.Get();
    Text2.AccessibleName = Label7.Caption.Get();
}

void frmSSTab::ConnectTabs() {
    SSTab1.Click = [this] { SSTab1_Click(); };
    for (forms::CommandButton* help : {&Command2, &Command5, &Command9, &Command15}) {
        help->Click = [this] { Help_Click(); };
    }
    for (forms::CommandButton* close : {&Command3, &Command6, &Command11, &Command14}) {
        close->Click = [this] { Unload(); };
    }
    Command7.Click = [this] { Command7_Click(); };
    Command10.Click = [this] { Command10_Click(); };
    Timer1.Tick = [this] { Timer1_Timer(); };
    ConnectOptions();
    ConnectBackupFolder();
    ConnectFiles();
    ConnectReview();
}

void frmSSTab::Form_Load() {
    Desktop& desktop = program_.machine.desktop;
    SetLeastSize(leastWidth, leastHeight);
    Place(std::max(0, (desktop.ScreenWidth() - windowWidth) / 2),
          std::max(0, (desktop.ScreenHeight() - windowHeight) / 3), windowWidth, windowHeight);
    SetTabList();
    Drive1.SetDrive("C:\\");
    Drive2.SetDrive("C:\\");
    Check1.Enabled = false;
    Check2.Enabled = false;
    Check3.Value = forms::CheckBox::State::checked;
    Check3.Enabled = false;
    BackupSettings settings = program_.Configuration();
    const std::string location = settings.Location(firstEntryNumber);
    if (IsEndMark(location)) {
        SSTab1.SetTabEnabled(tab::filesToBackup, false);
        SSTab1.SetTabEnabled(tab::reviewSaved, false);
        Command8.Enabled = false;
        Command9.Enabled = false;
        Frame1.Visible = false;
    } else if (!settings.AnySource(location)) {
        Command8.Enabled = false;
        Command9.Enabled = false;
        Frame1.Visible = false;
        SSTab1.SetTabEnabled(tab::reviewSaved, false);
    }
    ShowNextStep();
}

void frmSSTab::SetRegTarget() {
    TellUnlessStored(program_.Configuration().SaveLocations(List1.Items()));
}

void frmSSTab::SSTab1_Click() {
    switch (SSTab1.Tab()) {
        case tab::options:
            EnterOptions();
            break;
        case tab::backupFolder:
            EnterBackupFolder();
            break;
        case tab::filesToBackup:
            EnterFiles();
            break;
        default:
            EnterReview();
            break;
    }
}

void frmSSTab::Help_Click() {
    // Parameters, working folder and show mode as help files have always been opened here.
    const SystemError code = program_.machine.shell.Open({program_.BesideProgram(programfile::help), "0", "0", 0});
    if (code != error::success) {
        Tell("The Help File Could Not Be Opened\r\n\r\n" + Describe(program_.machine.system, code),
             messagestyle::ok | messagestyle::information);
    }
}

void frmSSTab::Command7_Click() {
    Collection().Load<frmAbout>(program_).Show();
}

void frmSSTab::Command10_Click() {
    if (!ConnectedForDonation(program_)) {
        return;
    }
    const bool choosing = Command8.Caption.Get() == texts::runBackup;
    Frame1.Visible = Frame1.Visible || choosing;
    Command10.Enabled = false;
    Label9.Visible = true;
    Refresh();
    OpenDonationPage(program_);
    Label9.Visible = false;
    Command10.Enabled = true;
    Frame1.Visible = Frame1.Visible && !choosing;
}

void frmSSTab::Timer1_Timer() {
    Timer1.Stop();
    if (auto* replaced = Collection().Find<frmReplace>()) {
        replaced->Unload();
    }
    if (auto* progress = Collection().Find<Form5>()) {
        progress->Unload();
    }
}

void frmSSTab::Form_Unload() {
    try {
        Collection().UnloadAll();
    } catch (const std::exception&) {
        // The window is closing and everything is unloaded: there is nobody left to be told.
    }
}

forms::CommandButton* frmSSTab::DefaultButton() {
    return SSTab1.Tab() == tab::options ? &Command8 : nullptr;
}

forms::CommandButton* frmSSTab::HelpButton() {
    switch (SSTab1.Tab()) {
        case tab::options:
            return &Command9;
        case tab::backupFolder:
            return &Command2;
        case tab::filesToBackup:
            return &Command5;
        default:
            return &Command15;
    }
}

void frmSSTab::FollowDrive(forms::DriveListBox& drive, forms::DirListBox& folders) {
    DirectoryEntry entry;
    const SystemError code = program_.machine.files.GetEntry(drive.Drive(), entry);
    if (code == error::success || folders.Path().empty()) {
        folders.SetPath(drive.Drive());
        return;
    }
    Tell("Drive " + drive.Drive() + " Is Not Ready\r\n\r\n" + Describe(program_.machine.system, code),
         messagestyle::ok | messagestyle::information);
    drive.SetDriveQuietly(folders.Path().substr(0, drive.Drive().size()));
}

bool frmSSTab::FillLocations(forms::ListBox& list) {
    list.Clear();
    for (const std::string& location : program_.Configuration().Locations()) {
        list.AddItem(location);
    }
    return list.ListCount() > 0;
}

void frmSSTab::TellUnlessStored(bool stored) {
    if (!stored) {
        Tell(
            "The List Could Not Be Stored In The Registry\r\n\r\nIt will not be there when the program is started "
            "again.",
            messagestyle::ok | messagestyle::information);
    }
}

int frmSSTab::Tell(const std::string& text, std::uint32_t style, const std::string& title) {
    return program_.machine.desktop.ShowMessage(text, style, title);
}

void frmSSTab::Form_Resize() {
    namespace measure = forms::measure;
    forms::Area window = forms::Area{0, 0, Width(), Height()}.Inside(measure::gap);
    Put(SSTab1, window);
    static_cast<void>(window.TakeTop(tabStripHeight));
    const forms::Area page = window.Inside(measure::margin);
    LayOutOptions(page);
    LayOutBackupFolder(page);
    LayOutFiles(page);
    LayOutReview(page);
}

}  // namespace marlok::ui
