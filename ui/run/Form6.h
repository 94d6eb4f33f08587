#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engine/CommandFile.h"
#include "engine/RunPlan.h"
#include "engine/RunReport.h"
#include "engine/RunSink.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/TreeView.h"
#include "paths/Location.h"
#include "ui/run/Breather.h"
#include "ui/run/RunKeeper.h"
#include "ui/run/RunStorage.h"
#include "ui/run/Session.h"

namespace marlok {

/// The unattended run: backs up while it loads, writes log and shortcut at its timer's tick, and ends the program, or
/// shows the result when it is asked to.
///
/// The main window runs it too, in the background. Then a person is there, who learns of failures in any case.
class Form6 : public forms::Form, private RunSink {
 public:
    /// An unattended run: of the locations that the lines of the command file choose.
    Form6(forms::Windows& windows, Session& session) : Form6(windows, session, std::nullopt) {}

    /// With `chosen`, a background run: of these locations, whatever the lines of the command file would choose.
    Form6(forms::Windows& windows, Session& session, std::optional<std::vector<Location>> chosen);

    /// Backs up once more in the background, in the window that a run before has left loaded.
    void RunAgain(std::vector<Location> chosen);

    forms::Label Label1{*this, "Label1", "91 Files Copied"};
    forms::Label Label2{*this, "Label2", "Backup Program Is Finished"};
    forms::ListBox List2{*this, "List2"};  ///< saved copies written in this run
    forms::Label Label4{*this, "Label4"};  ///< what could not be copied; shown only then
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
    [[nodiscard]] bool GoOn() override { return run_.GoOn(); }

    void PlaceWindow();
    void Run();
    void ReadCommandFile();
    void ReportArguments(RunReport& report, const LocationChoice& choice) const;
    void Finish();

    Session& session_;
    CommandFile commandFile_{session_.machine};
    std::optional<std::vector<Location>> chosen_;  ///< by the main window; nothing in an unattended run
    std::string passedOver_;                       ///< the command file's first line, when it says nothing
    bool ownCommandFile_ = false;                  ///< it was read by this window, which deletes it
    bool nothingRan_ = false;                      ///< the command file chooses no location
    Breather breathe_;
    RunStorage storage_{List1, List3, Text1, Text2, TreeView1};
    RunKeeper run_{session_.machine, unattendedLog};
};

}  // namespace marlok
