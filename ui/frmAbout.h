#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"
#include "platform/Machine.h"

namespace marlok::ui {

/// What the program is, its version, and the way to the donation page.
class frmAbout : public forms::Form {
 public:
    /// `mainWindow` is shown again by "Return", and unloaded after a donation; it outlives this window.
    frmAbout(forms::Windows& windows, Machine& machine, forms::Form& mainWindow);

    forms::PictureBox Picture1{*this, "Picture1"};
    forms::Label Label4{*this, "Label4", "Marlok Backup Utility"};
    forms::Label Label2{*this, "Label2", "Version 4.0.0"};
    forms::Label Label1{*this, "Label1"};  ///< the description
    forms::Label Label5{*this, "Label5", "Connecting      Please Wait"};
    forms::Label Label3{*this, "Label3"};                        ///< contact
    forms::CommandButton Command2{*this, "Command2", "Return"};  ///< the first that the keyboard comes to
    forms::CommandButton Command1{*this, "Command1", "Make Donation"};

    void Command1_Click();
    void Command2_Click();
    void Form_Resize() override;
    forms::CommandButton* DefaultButton() override { return &Command2; }
    forms::CommandButton* CancelButton() override { return &Command2; }

 protected:
    void Form_Load() override;

 private:
    Machine& machine_;
    forms::Form& mainWindow_;
};

}  // namespace marlok::ui
