#pragma once

#include <string>

#include "engine/Program.h"
#include "engine/RunReport.h"
#include "forms/Controls.h"
#include "forms/Form.h"

namespace marlok::ui {

/// The window of a replacement run: says that it goes on, collects what was replaced, and at the end writes the log of
/// it, puts a shortcut to that on the desktop and shows the list. The copying is the main window's.
class frmReplace : public forms::Form {
 public:
    frmReplace(forms::Windows& windows, Program& program);

    forms::Label Label3{*this, "Label3", "Replacing Selected Files Please Wait!"};
    forms::Label Label2{*this, "Label2", "File Replacement Completed"};
    forms::Label Label1{*this, "Label1"};  ///< how many files were replaced
    forms::ListBox List2{*this, "List2"};  ///< original paths, in the order of the copying
    forms::Label Label4{*this, "Label4"};  ///< what could not be replaced; shown only then
    forms::CommandButton Command1{*this, "Command1", "Close"};
    forms::ListBox List1{*this, "List1"};
    forms::Timer Timer1{*this, "Timer1", 500};

    /// What could not be replaced and why, for the end of the run.
    RunReport report;

    void Timer1_Timer();

    /// Writes "Replaced File Log.txt" afresh and the shortcut to it.
    void WriteReplacedLog();

    void Form_Resize() override;
    forms::CommandButton* DefaultButton() override { return &Command1; }
    forms::CommandButton* CancelButton() override { return &Command1; }

 protected:
    void Form_Load() override;
    void Form_Unload() override;

 private:
    void TellFailures();

    Program& program_;
};

}  // namespace marlok::ui
