#pragma once

#include <memory>

#include "forms/Windows.h"
#include "platform/Machine.h"

namespace marlok::win32 {

/// The real machine. One for the program, made on the thread that will own its windows.
class Win32Machine {
 public:
    Win32Machine();
    Win32Machine(const Win32Machine&) = delete;
    Win32Machine& operator=(const Win32Machine&) = delete;
    ~Win32Machine();

    [[nodiscard]] Machine& machine();

    /// Shows forms on the screen.
    [[nodiscard]] forms::ViewFactory& views();

 private:
    struct Services;
    std::unique_ptr<Services> services_;
};

}  // namespace marlok::win32
