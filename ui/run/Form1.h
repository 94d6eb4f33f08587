#pragma once

#include <functional>
#include <string>
#include <vector>

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

class Form5;

/// The run that a person starts and watches: backs up while it loads, with the progress window (Form5) above it; writes
/// log and shortcut at its timer's tick, and shows the result.
class Form1 : public forms::Form, private RunSink {
 public:
    /// Runs these locations. `afterQuietRun` is called at the end of a run that shows no closing message.
    Form1(forms::Windows& windows, Session& session, std::vector<Location> locations,
          std::function<void()> afterQuietRun);

    /// Backs up once more in the window that a run before has left loaded.
    void RunAgain(std::vector<Location> locations);

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

    /// Not before the run has its log.
    [[nodiscard]] bool MayClose() const override { return !Timer1.Running(); }

 protected:
    void Form_Load() override;
    void Form_Unload() override;

 private:
    void Status(const std::string& text) override;
    void LocationBegins(const Location& location) override;
    void FoldersFound(const FolderScan& scan) override;
    void EntryBegins(const std::string& source, const std::string& target) override;
    void CopyBegins(const std::string& source, const std::string& target) override;
    void BytesCopied(const CopyProgressInfo& info) override;
    void Copied(const std::string& source, const std::string& target) override;
    void Breathe() override;
    [[nodiscard]] bool MayDeleteAll(const WholeDrive& found) override;
    [[nodiscard]] bool GoOn() override { return run_.GoOn(); }

    void PlaceWindow();
    void Run();
    [[nodiscard]] Form5& Progress();
    void ShowResult();

    Session& session_;
    std::vector<Location> locations_;
    std::function<void()> afterQuietRun_;
    Breather breathe_;
    RunStorage storage_{List1, List3, Text1, Text2, TreeView1};
    bool countsFiles_ = false;  ///< the bar counts files: a system without a copy that tells its progress
    int folderCount_ = 0;       ///< found so far below the sources of the current location, the sources included
    RunKeeper run_{session_.machine, interactiveLog};
};

}  // namespace marlok
