#pragma once

#include "engine/Program.h"
#include "forms/Controls.h"
#include "forms/Form.h"

namespace marlok::ui {

/// The main window: backup locations and what is saved there. Closing it ends the program.
class frmSSTab : public forms::Form {
 public:
    frmSSTab(forms::Windows& windows, Program& program);

    forms::Label Label1{*this, "Label1", "Select Locations To Backup"};
    forms::ListBox List1{*this, "List1"};  ///< backup locations under a heading line
    forms::ListBox List2{*this, "List2"};  ///< sources of the location clicked in List1
    forms::CommandButton Command11{*this, "Command11", "Close"};

    /// Fills List1 and List2 anew from the settings.
    void SetTabList();

    void List1_Click();
    void Form_Resize() override;

 protected:
    void Form_Load() override;
    void Form_Unload() override;

 private:
    Program& program_;
};

}  // namespace marlok::ui
