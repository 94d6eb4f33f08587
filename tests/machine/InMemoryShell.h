#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/Shell.h"
#include "tests/machine/FaultPlan.h"
#include "tests/machine/InMemoryDisk.h"

namespace marlok::test {

/// The Windows shell on the in-memory disk. Every file or folder that an operation creates or removes is a step of
/// its own ("Shell.Copy", "Shell.Delete"), so that operations can fail or die half-way, as the real ones do.
class InMemoryShell : public Shell {
 public:
    InMemoryShell(InMemoryDisk& disk, FaultPlan& faults) : disk_(disk), faults_(faults) {}

    [[nodiscard]] int Perform(const ShellFileOperation& operation) override;

    /// Records the request. A file that is not there cannot be opened ("Shell.Open").
    [[nodiscard]] SystemError Open(const OpenRequest& request) override;

    /// Records the address ("Shell.OpenAddress").
    [[nodiscard]] SystemError OpenAddress(const std::string& address) override;

    [[nodiscard]] std::string DesktopFolder() override { return desktopFolder; }

    /// Records the shortcut and writes its file ("Shell.Shortcut").
    [[nodiscard]] SystemError SaveShortcut(const Shortcut& shortcut) override;

    /// Whether deleting a tree also deletes what folder links in it lead to, as it has been seen on some systems. It
    /// does unless it is told otherwise: no program may count on better manners.
    bool followsLinks = true;

    /// Whether the shell deletes read-only files without asking. Windows does; a shell has been seen that refuses.
    bool deletesReadOnly = true;
    std::string desktopFolder = R"(C:\Users\User\Desktop)";

    /// Whether the user has a browser that can be found and started.
    bool hasBrowser = true;

    [[nodiscard]] const std::vector<Shortcut>& Shortcuts() const { return shortcuts_; }
    [[nodiscard]] const std::vector<ShellFileOperation>& Operations() const { return operations_; }
    [[nodiscard]] const std::vector<OpenRequest>& Opened() const { return opened_; }
    [[nodiscard]] const std::vector<std::string>& Addresses() const { return addresses_; }

 private:
    [[nodiscard]] SystemError Expand(const std::string& from, std::vector<NodePtr>& nodes) const;
    /// `entered` are the folders on the way: a link may lead back to one of them.
    [[nodiscard]] int Delete(const NodePtr& top, std::set<const Node*>& entered);
    [[nodiscard]] int DeleteChildren(const Node& folder, std::set<const Node*>& entered);
    /// The result for a path that the shell cannot name: too long, or with names that Windows alters. 0 for others.
    [[nodiscard]] int Unreachable(const std::string& path) const;
    [[nodiscard]] int DeleteOne(const NodePtr& node);
    [[nodiscard]] int CopyInto(const NodePtr& node, const std::string& target, bool several);
    [[nodiscard]] int CopyTree(Node& top, const std::string& target);
    [[nodiscard]] int CopyOne(Node& node, const std::string& target);
    [[nodiscard]] int MakeFolders(const std::string& path);

    InMemoryDisk& disk_;
    FaultPlan& faults_;
    std::vector<Shortcut> shortcuts_;
    std::vector<ShellFileOperation> operations_;
    std::vector<OpenRequest> opened_;
    std::vector<std::string> addresses_;
};

}  // namespace marlok::test
