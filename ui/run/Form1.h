#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/BackupRun.h"
#include "engine/Breather.h"
#include "engine/Program.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/TreeView.h"

namespace marlok {

class Form5;

/// The run that a person starts and watches: backs up while it loads, with the progress window (Form5) above it; writes
/// log and shortcut at its timer's tick, and shows the result.
class Form1 : public forms::Form, private RunWindow {
 public:
    /// Runs `locations`, full paths, up to the first that is "" or "0". `afterQuietRun` is called at the end of a run
    /// that shows no closing message.
    Form1(forms::Windows& windows, Program& program, std::vector<std::string> locations,
          std::function<void()> afterQuietRun);

    /// Backs up once more in the window that a run before has left loaded.
    void RunAgain(std::vector<std::string> locations);

    forms::Label Label1{*this, "Label1"};  ///< folders to be backed up, then files copied
    forms::Label Label2{*this, "Label2"};  ///< status
    forms::Label Label3{*this, "Label3"};  ///< what could not be copied; shown only then
    forms::ListBox List2{*this, "List2"};  ///< saved copies written in this run
    forms::CommandButton Command1{*this, "Command1", "Close"};

    // Working storage; never shown.
    forms::ListBox List1{*this, "List1"};  ///< folders below the current source
    forms::ListBox List3{*this, "List3"};  ///< sources written for the current location
    forms::ListBox List4{*this, "List4"};
    forms::ListBox List5{*this, "List5"};
    forms::TextBox Text1{*this, "Text1"};
    forms::TextBox Text2{*this, "Text2"};
    forms::TreeView TreeView1{*this, "TreeView1"};
    forms::Timer Timer1{*this, "Timer1", 25};

    void Timer1_Timer();
    void Command1_Click();
    void Form_Resize() override;
    forms::CommandButton* DefaultButton() override { return &Command1; }
    forms::CommandButton* CancelButton() override { return &Command1; }

 protected:
    void Form_Load() override;
    void Form_Unload() override;

 private:
    SystemError CopyFile(const std::string& source, const std::string& destination, std::uint32_t flags) override;
    void ShowStatus(const std::string& text) override;
    void ShowFolderCount(int count) override;

    void PlaceWindow();
    void Run();
    [[nodiscard]] Form5& Progress();
    void ShowResult();
    void TellFailures();

    Program& program_;
    std::vector<std::string> locations_;
    std::function<void()> afterQuietRun_;
    Breather breathe_;
    bool countsFiles_ = false;     ///< the bar counts files: a system without a copy that tells its progress
    std::size_t failures_ = 0;     ///< lines of the error report
    std::string logFailure_ = {};  ///< why the log or its shortcut could not be made
};

}  // namespace marlok
