#pragma once

#include "forms/Controls.h"
#include "forms/FolderControls.h"
#include "forms/Form.h"
#include "forms/TabControl.h"
#include "ui/BackupFolderTab.h"
#include "ui/FilesTab.h"
#include "ui/OptionsTab.h"
#include "ui/ReviewTab.h"
#include "ui/run/Session.h"

namespace marlok::ui {

/// The tabs of the main window.
namespace tab {
inline constexpr int options = 0;
inline constexpr int backupFolder = 1;
inline constexpr int filesToBackup = 2;
inline constexpr int reviewSaved = 3;
}  // namespace tab

/// The main window: backup locations, what is saved there, running a backup, and a review of what was saved. Its lists
/// are views of the settings, filled anew whenever a tab is entered; every change is written at once. Closing the
/// window ends the program.
///
/// The window holds the controls and the handlers of their events; what a tab does stands in a class of its own.
class frmSSTab : public forms::Form {
 public:
    frmSSTab(forms::Windows& windows, Session& session);

    // Controls stand in the order in which the keyboard goes through them, a heading right before what it heads.
    forms::TabControl SSTab1{*this, "SSTab1", {"Options", "Backup Folder", "Files To Backup", "Review Saved"}};

    // Tab "Options".
    forms::Label Label1{*this, "Label1", "Select Locations To Backup"};
    forms::ListBox List1{*this, "List1"};  ///< backup locations under a heading line; those to run are selected
    forms::ListBox List2{*this, "List2"};  ///< sources of the location clicked in List1
    forms::Frame Frame1{*this, "Frame1", "Marlok BackUp Utility Program"};
    forms::PictureBox Image1{*this, "Image1"};
    forms::Label Label10{*this, "Label10"};  ///< what to do next
    forms::CommandButton Command8{*this, "Command8", "Select Backup"};
    forms::CheckBox Check1{*this, "Check1", "    Run In Background"};
    forms::CheckBox Check2{*this, "Check2", "    Backup         All Files"};
    forms::CheckBox Check3{*this, "Check3", "   Output       Message   To Screen"};
    forms::Label Label9{*this, "Label9", "Connecting      Please Wait"};
    forms::CommandButton Command10{*this, "Command10", "Donation"};
    forms::CommandButton Command7{*this, "Command7", "About"};
    forms::CommandButton Command9{*this, "Command9", "Help"};
    forms::CommandButton Command11{*this, "Command11", "Close"};

    // Tab "Backup Folder".
    forms::Label Label11{*this, "Label11", "Drive And Folder"};
    forms::DriveListBox Drive1;
    forms::DirListBox Dir1;
    forms::Label Label12{*this, "Label12", "Files In This Folder"};
    forms::FileListBox File1;
    forms::Label Label2{*this, "Label2", "Double Click On File To Remove From List"};
    forms::ListBox List3{*this, "List3"};  ///< the backup locations
    forms::CommandButton Command1{*this, "Command1", "Add Folder To List"};
    forms::CommandButton Command12{*this, "Command12", "Create Folder"};
    forms::CommandButton Command2{*this, "Command2", "Help"};
    forms::CommandButton Command3{*this, "Command3", "Close Program"};

    // Tab "Files To Backup".
    forms::Label Label8{*this, "Label8", "Click on Backup Location To Show Files"};
    forms::ListBox List9{*this, "List9"};  ///< the backup locations, to pick the one being edited
    forms::Label Label3{*this, "Label3", "Select Files For Each Backup Path"};
    forms::DriveListBox Drive2;
    forms::DirListBox Dir2;
    forms::FileListBox File2;
    forms::Label Label13{*this, "Label13", "Files To Be Backed Up"};
    forms::ListBox List4{*this, "List4"};  ///< the sources of the picked location
    forms::CommandButton Command4{*this, "Command4", "Add Folder To List"};
    forms::CommandButton Command18{*this, "Command18", "Delete Entry From List"};
    forms::CommandButton Command5{*this, "Command5", "Help"};
    forms::CommandButton Command6{*this, "Command6", "Close Program"};

    // Tab "Review Saved".
    forms::Label Label4{*this, "Label4", "Select A Backup Location To Search"};
    forms::ListBox List5{*this, "List5"};  ///< the backup locations
    forms::Label Label5{*this, "Label5", "List of Saved Files"};
    forms::ListBox List6{*this, "List6"};  ///< saved files, or lines of the list of original paths
    forms::Label Label6{*this, "Label6", "Number of Files"};
    forms::TextBox Text1{*this, "Text1"};
    forms::Label Label7{*this, "Label7", "Time To Search"};
    forms::TextBox Text2{*this, "Text2"};
    forms::CommandButton Command13{*this, "Command13", "Replace Selected Original File"};
    forms::CommandButton Command16{*this, "Command16", "Show Original Paths"};
    forms::CommandButton Command17{*this, "Command17", "Delete Entry"};
    forms::CommandButton Command15{*this, "Command15", "Help"};
    forms::CommandButton Command14{*this, "Command14", "Close Program"};

    // Working storage; never shown.
    forms::ListBox List7{*this, "List7"};
    forms::ListBox List8{*this, "List8"};
    forms::ListBox List10{*this, "List10"};  ///< sources being taken off the list
    forms::ListBox List11{*this, "List11"};  ///< sources being kept
    forms::ListBox List12{*this, "List12"};  ///< lines of the list of original paths that are kept
    forms::ListBox List13{*this, "List13"};
    forms::ListBox List14{*this, "List14"};

    forms::Timer Timer1{*this, "Timer1", 1000};  ///< clears up after a run without closing message
    forms::Timer Timer2{*this, "Timer2", 500};
    forms::Timer Timer3{*this, "Timer3", 500};  ///< starts an interactive run

    /// Fills List1 and List2 anew from the settings.
    void SetTabList() { options_.SetTabList(); }

    /// Makes the lines of List1, up to the first that is "" or "0", the backup locations in the settings. List1 has to
    /// hold nothing but paths then.
    void SetRegTarget();

    void SSTab1_Click();
    void Help_Click();
    void Timer1_Timer();

    // Tab "Options".
    void List1_Click() { options_.ShowSources(); }
    void Command8_Click() { options_.SelectOrRun(); }
    void Timer3_Timer() { options_.StartRun(); }

    // Tab "Backup Folder".
    void Drive1_Change();
    void Dir1_Change() { backupFolder_.FollowFolder(); }
    void Dir1_Click() { backupFolder_.ChooseFolder(); }
    void Command1_Click() { backupFolder_.AddLocation(); }
    void Command12_Click() { backupFolder_.CreateFolder(); }
    void List3_DblClick() { backupFolder_.RemoveLocation(); }

    // Tab "Files To Backup".
    void Drive2_Change();
    void Dir2_Change() { files_.FollowFolder(); }
    void Dir2_Click() { files_.ChooseFolder(); }
    void File2_Click() { files_.ChooseFiles(); }
    void List4_Click();
    void List9_Click() { files_.ShowSources(); }
    void Command4_Click() { files_.AddSources(); }
    void Command18_Click() { files_.RemoveSources(); }

    void DeleteSourceCopies() { files_.DeleteSourceCopies(); }

    // Tab "Review Saved".
    void List5_Click() { review_.ChooseLocation(); }
    void List6_Click() { review_.ChooseLine(); }
    void Command13_Click() { review_.ShowOrReplace(); }
    void Command16_Click() { review_.ShowOriginals(); }
    void Command17_Click() { review_.Delete(); }

    // Beside the tabs' own work.
    void Command7_Click();
    void Command10_Click();

    void Form_Resize() override;
    forms::CommandButton* DefaultButton() override;
    [[nodiscard]] std::string HelpSection() const override;

 protected:
    void Form_Load() override;
    void Form_Unload() override;

 private:
    void PutOnTabs();
    void NameLists();
    void ConnectWindow();
    void ConnectTabs();

    /// Follows a drive that was chosen; one that is not ready is reported and not left chosen.
    void FollowDrive(forms::DriveListBox& drive, forms::DirListBox& folders);

    Session& session_;
    OptionsTab options_{*this, session_};
    BackupFolderTab backupFolder_{*this, session_};
    FilesTab files_{*this, session_};
    ReviewTab review_{*this, session_};
};

}  // namespace marlok::ui
