#pragma once

#include "engine/Program.h"
#include "forms/Controls.h"
#include "forms/Form.h"

namespace marlok::ui {

/// What the program is, its version, and the way to the donation page.
class frmAbout : public forms::Form {
 public:
    frmAbout(forms::Windows& windows, Program& program);

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
    Program& program_;
};

}  // namespace marlok::ui
