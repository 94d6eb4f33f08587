#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"
#include "platform/Machine.h"

namespace marlok::app {

/// The restart watcher: never shown. Three seconds after the start it removes the restart program that may have started
/// this one, and unloads itself.
class Form2 : public forms::Form {
 public:
    Form2(forms::Windows& windows, Machine& machine);

    forms::Timer Timer1{*this, "Timer1", 3000};
    void Timer1_Timer();

 private:
    Machine& machine_;
};

}  // namespace marlok::app
