#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <utility>

#include "platform/Shell.h"

namespace marlok::win32 {

/// The Windows shell. The calling thread is in a single-threaded apartment.
class Win32Shell : public Shell {
 public:
    /// The window that owns what the shell may have to ask; null when the program shows none.
    using Owner = std::function<HWND()>;

    explicit Win32Shell(Owner owner) : owner_(std::move(owner)) {}

    int Perform(const ShellFileOperation& operation) override;
    SystemError Open(const OpenRequest& request) override;
    SystemError OpenAddress(const std::string& address) override;
    std::string DesktopFolder() override;
    SystemError SaveShortcut(const Shortcut& shortcut) override;

 private:
    Owner owner_;
};

}  // namespace marlok::win32
