#include "ui/frmSSTab.h"

#include <algorithm>
#include <initializer_list>

#include "fileops/Errors.h"
#include "forms/Measures.h"
#include "forms/Windows.h"
#include "ui/Donation.h"
#include "ui/Help.h"
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

frmSSTab::frmSSTab(forms::Windows& windows, Session& session)
    : Form(windows, "frmSSTab", "Marlok Backup Utility"),
      Drive1(*this, "Drive1", session.machine.drives),
      Dir1(*this, "Dir1", session.machine.files),
      File1(*this, "File1", session.machine.files),
      Drive2(*this, "Drive2", session.machine.drives),
      Dir2(*this, "Dir2", session.machine.files),
      File2(*this, "File2", session.machine.files),
      session_(session) {
    for (forms::ListBox* storage : {&List7, &List8, &List10, &List11, &List12, &List13, &List14}) {
        storage->Visible = false;
    }
    List1.MultiSelect = true;
    List4.MultiSelect = true;
    List6.MultiSelect = true;
    File1.MultiSelect = false;  // its files are shown so that a folder is recognised, not chosen
    Label9.Visible = false;
    Image1.Picture = "program";
    Text1.Locked = true;
    Text2.Locked = true;
    PutOnTabs();
    NameLists();
    ConnectWindow();
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
    List1.AccessibleName = "List Of Backup Paths";
    List2.AccessibleName = "List Of Files To Be Backed Up";
    Image1.AccessibleName = Caption();
    Drive1.AccessibleName = "Drive";
    Dir1.AccessibleName = "Folder";
    File1.AccessibleName = Label12.Caption.Get();
    List3.AccessibleName = "Backup Locations";
    List9.AccessibleName = "Backup Locations";
    Drive2.AccessibleName = "Drive";
    Dir2.AccessibleName = "Folder";
    File2.AccessibleName = "Files In This Folder";
    List4.AccessibleName = Label13.Caption.Get();
    List5.AccessibleName = Label4.Caption.Get();
    List6.AccessibleName = Label5.Caption.Get();
    Text1.AccessibleName = Label6.Caption.Get();
    Text2.AccessibleName = Label7.Caption.Get();
}

void frmSSTab::ConnectWindow() {
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
}

void frmSSTab::ConnectTabs() {
    List1.Click = [this] { List1_Click(); };
    Command8.Click = [this] { Command8_Click(); };
    Timer3.Tick = [this] { Timer3_Timer(); };

    Drive1.Change = [this] { Drive1_Change(); };
    Dir1.Change = [this] { Dir1_Change(); };
    Dir1.Click = [this] { Dir1_Click(); };
    Command1.Click = [this] { Command1_Click(); };
    Command12.Click = [this] { Command12_Click(); };
    List3.DblClick = [this] { List3_DblClick(); };

    Drive2.Change = [this] { Drive2_Change(); };
    Dir2.Change = [this] { Dir2_Change(); };
    Dir2.Click = [this] { Dir2_Click(); };
    File2.Click = [this] { File2_Click(); };
    List4.Click = [this] { List4_Click(); };
    List9.Click = [this] { List9_Click(); };
    Command4.Click = [this] { Command4_Click(); };
    Command18.Click = [this] { Command18_Click(); };

    List5.Click = [this] { List5_Click(); };
    List6.Click = [this] { List6_Click(); };
    Command13.Click = [this] { Command13_Click(); };
    Command16.Click = [this] { Command16_Click(); };
    Command17.Click = [this] { Command17_Click(); };
}

void frmSSTab::Form_Load() {
    Desktop& desktop = session_.machine.desktop;
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
    BackupSettings settings = session_.Configuration();
    const std::string location = settings.LocationAt(firstEntryNumber);
    if (IsEndMark(location)) {
        SSTab1.SetTabEnabled(tab::filesToBackup, false);
        SSTab1.SetTabEnabled(tab::reviewSaved, false);
        Command8.Enabled = false;
        Command9.Enabled = false;
        Frame1.Visible = false;
    } else if (!settings.AnySource(Location(location))) {
        Command8.Enabled = false;
        Command9.Enabled = false;
        Frame1.Visible = false;
        SSTab1.SetTabEnabled(tab::reviewSaved, false);
    }
    options_.ShowNextStep();
}

void frmSSTab::SetRegTarget() {
    options_.StoreLocations();
}

void frmSSTab::SSTab1_Click() {
    switch (SSTab1.Tab()) {
        case tab::options:
            options_.Enter();
            break;
        case tab::backupFolder:
            backupFolder_.Enter();
            break;
        case tab::filesToBackup:
            files_.Enter();
            break;
        default:
            review_.Enter();
            break;
    }
}

void frmSSTab::Help_Click() {
    OpenHelp(session_.machine, HelpSection());
}

void frmSSTab::Command7_Click() {
    Collection().Load<frmAbout>(session_.machine, *this).Show();
}

void frmSSTab::Command10_Click() {
    if (!ConnectedForDonation(session_.machine)) {
        return;
    }
    const bool choosing = Command8.Caption.Get() == texts::runBackup;
    Frame1.Visible = Frame1.Visible || choosing;
    Command10.Enabled = false;
    Label9.Visible = true;
    Refresh();
    OpenDonationPage(session_.machine);
    Label9.Visible = false;
    Command10.Enabled = true;
    Frame1.Visible = Frame1.Visible && !choosing;
}

void frmSSTab::Timer1_Timer() {
    Timer1.Stop();
    auto* replaced = Collection().Find<frmReplace>();
    if (replaced != nullptr && replaced->MayClose()) {
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

std::string frmSSTab::HelpSection() const {
    switch (SSTab1.Tab()) {
        case tab::options:
            return helpsection::options;
        case tab::backupFolder:
            return helpsection::backupFolder;
        case tab::filesToBackup:
            return helpsection::filesToBackup;
        default:
            return helpsection::reviewSaved;
    }
}

void frmSSTab::FollowDrive(forms::DriveListBox& drive, forms::DirListBox& folders) {
    DirectoryEntry entry;
    const SystemError code = session_.machine.files.GetEntry(drive.Drive(), entry);
    if (code == error::success || folders.Path().empty()) {
        folders.SetPath(drive.Drive());
        return;
    }
    session_.machine.desktop.ShowMessage(
        "Drive " + drive.Drive() + " Is Not Ready\r\n\r\n" + Describe(session_.machine.system, code),
        messagestyle::ok | messagestyle::information, texts::infoTitle);
    drive.SetDriveQuietly(folders.Path().substr(0, drive.Drive().size()));
}

void frmSSTab::Drive1_Change() {
    FollowDrive(Drive1, Dir1);
}

void frmSSTab::Drive2_Change() {
    FollowDrive(Drive2, Dir2);
    files_.OfferFolders();
}

void frmSSTab::List4_Click() {
    Command18.Enabled = true;
}

void frmSSTab::Form_Resize() {
    namespace measure = forms::measure;
    forms::Area window = forms::Area{0, 0, Width(), Height()}.Inside(measure::gap);
    Put(SSTab1, window);
    window.SkipTop(tabStripHeight);
    const forms::Area page = window.Inside(measure::margin);
    options_.LayOut(page);
    backupFolder_.LayOut(page);
    files_.LayOut(page);
    review_.LayOut(page);
}

}  // namespace marlok::ui
