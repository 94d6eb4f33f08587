#pragma once

#include "engine/Program.h"
#include "forms/Controls.h"
#include "forms/Form.h"

namespace marlok::app {

/// The restart watcher: never shown. Three seconds after the start it removes the restart program that may have started
/// this one, and unloads itself.
class Form2 : public forms::Form {
 public:
    Form2(forms::Windows& windows, Program& program);

    forms::Timer Timer1{*this, "Timer1", 3000};
    void Timer1_Timer();

 private:
    Program& program_;
};

}  // namespace marlok::app
