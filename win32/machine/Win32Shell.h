#pragma once

#include "platform/Shell.h"
#include "win32/views/NativeLoop.h"

namespace marlok::win32 {

/// The Windows shell. The calling thread is in a single-threaded apartment.
class Win32Shell : public Shell {
 public:
    /// `loop` knows the window that owns what the shell may have to ask; it outlives this object.
    explicit Win32Shell(const NativeLoop& loop) : loop_(loop) {}

    int Perform(const ShellFileOperation& operation) override;
    SystemError Open(const OpenRequest& request) override;
    std::string DesktopFolder() override;
    SystemError SaveShortcut(const Shortcut& shortcut) override;

 private:
    const NativeLoop& loop_;
};

}  // namespace marlok::win32
