#pragma once

#include <string>

#include "engine/RunReport.h"
#include "engine/RunSink.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/TreeView.h"
#include "paths/Location.h"
#include "ui/run/Breather.h"
#include "ui/run/RunStorage.h"
#include "ui/run/Session.h"

namespace marlok {

/// The unattended run: backs up while it loads, writes log and shortcut at its timer's tick, and ends the program, or
/// shows the result when it is asked to.
class Form6 : public forms::Form, private RunSink {
 public:
    Form6(forms::Windows& windows, Session& session);

    forms::Label Label1{*this, "Label1", "91 Files Copied"};
    forms::Label Label2{*this, "Label2", "Backup Program Is Finished"};
    forms::ListBox List2{*this, "List2"};  ///< saved copies written in this run
    forms::CommandButton Command1{*this, "Command1", "Close"};

    // Working storage; never shown.
    forms::ListBox List1{*this, "List1"};  ///< folders below the current source
    forms::ListBox List3{*this, "List3"};  ///< sources written for the current location
    forms::ListBox List4{*this, "List4"};  ///< location lines of the command file
    forms::TextBox Text1{*this, "Text1"};
    forms::TextBox Text2{*this, "Text2"};
    forms::TreeView TreeView1{*this, "TreeView1"};
    forms::Timer Timer1{*this, "Timer1", 50};

    void Timer1_Timer();
    void Command1_Click();
    void Form_Resize() override;
    forms::CommandButton* DefaultButton() override { return &Command1; }
    forms::CommandButton* CancelButton() override { return &Command1; }

 protected:
    void Form_Load() override;
    void Form_Unload() override;

 private:
    void LocationBegins(const Location& location) override;
    void FoldersFound(const FolderScan& scan) override;
    void EntryBegins(const std::string& source, const std::string& target) override;
    void Copied(const std::string& source, const std::string& target) override;
    void Breathe() override;

    void PlaceWindow();
    void ReadCommandFile();
    void BackupLocations();
    [[nodiscard]] bool IsChosen(const Location& location) const;

    Session& session_;
    Breather breathe_;
    RunStorage storage_{List1, List3, Text1, Text2, TreeView1};
    RunReport report_;  ///< of the run that has ended
};

}  // namespace marlok
