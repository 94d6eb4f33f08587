#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engine/Restore.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "paths/Location.h"
#include "platform/Machine.h"
#include "ui/run/Breather.h"
#include "ui/run/SessionHold.h"

namespace marlok::ui {

/// The window of a replacement run: copies saved files back over their originals, says meanwhile that it goes on,
/// collects what was replaced, and at the end writes the log of it, puts a shortcut to that on the desktop and shows
/// the list.
class frmReplace : public forms::Form, private RestoreSink {
 public:
    /// `whenClosed` is called when the window has been unloaded.
    frmReplace(forms::Windows& windows, Machine& machine, std::function<void()> whenClosed);

    /// Not before the log of a replacement is written.
    [[nodiscard]] bool MayClose() const override { return !toBeRecorded_; }

    /// Shows itself and replaces the originals of these saved files of the location. At the end Timer1 runs, or the
    /// window is unloaded: when the only file could not be replaced, and when the list of original paths could not be
    /// read.
    void Run(const Location& location, const std::vector<std::string>& saved);

    forms::Label Label3{*this, "Label3", "Replacing Selected Files Please Wait!"};
    forms::Label Label2{*this, "Label2", "File Replacement Completed"};
    forms::Label Label1{*this, "Label1"};  ///< how many files were replaced
    forms::ListBox List2{*this, "List2"};  ///< original paths, in the order of the copying
    forms::Label Label4{*this, "Label4"};  ///< what could not be replaced; shown only then
    forms::CommandButton Command1{*this, "Command1", "Close"};
    forms::ListBox List1{*this, "List1"};
    forms::Timer Timer1{*this, "Timer1", 500};

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
    void NotListed(const std::string& saved) override;
    void NotLocated(const std::string& saved) override;
    void ReplaceBegins(const std::string& original) override;
    void Breathe() override { breathe_(); }
    [[nodiscard]] bool GoOn() override { return !hold_ || hold_->GoOn(); }

    void EndRun();

    /// Shows a message box in place of this window. What was clicked and typed before it was there does not answer it.
    void Tell(const std::string& text);

    Machine& machine_;
    std::function<void()> whenClosed_;
    RestoreResult result_;
    Breather breathe_;
    std::optional<SessionHold> hold_;  ///< while files are being replaced
    bool toBeRecorded_ = false;        ///< files were replaced, and the log does not say so yet
};

}  // namespace marlok::ui
