#pragma once

#include "platform/Shell.h"

namespace marlok::test {

/// Hands every call to another shell; a test overrides the one it wants to be different.
class ForwardingShell : public Shell {
 public:
    explicit ForwardingShell(Shell& inner) : inner_(inner) {}

    [[nodiscard]] int Perform(const ShellFileOperation& operation) override { return inner_.Perform(operation); }
    [[nodiscard]] SystemError Open(const OpenRequest& request) override { return inner_.Open(request); }
    [[nodiscard]] SystemError OpenAddress(const std::string& address) override { return inner_.OpenAddress(address); }
    [[nodiscard]] std::string DesktopFolder() override { return inner_.DesktopFolder(); }
    [[nodiscard]] SystemError SaveShortcut(const Shortcut& shortcut) override { return inner_.SaveShortcut(shortcut); }

 private:
    Shell& inner_;
};

}  // namespace marlok::test
