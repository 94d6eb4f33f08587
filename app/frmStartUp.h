#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"
#include "ui/run/Session.h"

namespace marlok::app {

/// The welcome of a start without a complete configuration: says which half is missing and leads to the main window;
/// or, when the program was started with arguments and nobody is there to read it, leaves a short log on the desktop.
class frmStartUp : public forms::Form {
 public:
    frmStartUp(forms::Windows& windows, Session& session);

    forms::Label Label1{*this, "Label1", "Welcome"};
    forms::Label Label2{*this, "Label2", "Please Select"};
    forms::Label Label3{*this, "Label3", "Backup Files"};  ///< Main says what is missing
    forms::PictureBox Picture1{*this, "Picture1"};
    forms::Timer Timer1{*this, "Timer1", 2500};
    forms::Timer Timer2{*this, "Timer2", 500};

    void Timer1_Timer();
    void Timer2_Timer();
    void Form_Resize() override;

 protected:
    void Form_Load() override;

 private:
    void WriteShortLog();

    Session& session_;
};

}  // namespace marlok::app
