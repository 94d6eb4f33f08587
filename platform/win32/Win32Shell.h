#pragma once

#include "platform/Shell.h"

namespace marlok::win32 {

/// The Windows shell. The calling thread is in a single-threaded apartment.
class Win32Shell : public Shell {
 public:
    int Perform(const ShellFileOperation& operation) override;
    std::string DesktopFolder() override;
    SystemError SaveShortcut(const Shortcut& shortcut) override;
};

}  // namespace marlok::win32
