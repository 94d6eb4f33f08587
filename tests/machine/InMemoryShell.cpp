#include "tests/machine/InMemoryShell.h"

#include <algorithm>
#include <utility>

#include "tests/machine/InMemoryFiles.h"
#include "tests/machine/NamePattern.h"
#include "text/Text.h"

namespace marlok::test {
namespace {

using Follow = InMemoryDisk::Follow;

constexpr std::size_t longestShellPath = 259;  // UTF-16 units

// The shell's own result codes.
constexpr int sameFile = 0x71;
constexpr int accessDeniedSource = 0x78;
constexpr int pathTooDeep = 0x79;
constexpr int invalidFiles = 0x7C;
constexpr int targetInSource = 0x7D;
constexpr int unknownPath = 0x402;

bool TooLong(const std::string& path) {
    return path.size() > longestShellPath && text::ToUtf16(path).size() > longestShellPath;
}

int ShellCode(SystemError code) {
    if (code == error::accessDenied) {
        return accessDeniedSource;
    }
    return code == error::fileNotFound || code == error::pathNotFound ? unknownPath : static_cast<int>(code);
}

bool IsWithin(const std::string& path, const std::string& folder) {
    return path.size() > folder.size() && path[folder.size()] == '\\' &&
           text::EqualIgnoringCase(std::string_view(path).substr(0, folder.size()), folder);
}

}  // namespace

int InMemoryShell::Perform(const ShellFileOperation& operation) {
    if (const SystemError code = faults_.Enter("Shell.Perform", operation.from, false); code != error::success) {
        return ShellCode(code);
    }
    operations_.push_back(operation);
    const bool copies = operation.kind == ShellFileOperation::Kind::copy;
    if (TooLong(operation.from) || (copies && TooLong(operation.to))) {
        return pathTooDeep;
    }
    std::vector<NodePtr> nodes;
    if (const SystemError code = Expand(operation.from, nodes); code != error::success) {
        return code == error::invalidName ? invalidFiles : ShellCode(code);
    }
    for (const NodePtr& node : nodes) {
        std::set<const Node*> entered;
        const int code = copies ? CopyInto(node, operation.to, nodes.size() > 1) : Delete(node, entered);
        if (code != 0) {
            return code;
        }
    }
    return 0;
}

SystemError InMemoryShell::Expand(const std::string& from, std::vector<NodePtr>& nodes) const {
    PathParts parts = disk_.ParseUsual(from, true);
    if (parts.error != error::success) {
        return parts.error;
    }
    if (parts.names.empty() || parts.names.back().find_first_of("*?") == std::string::npos) {
        parts.trailingSeparator = false;
        const Place place = disk_.Locate(parts, Follow::no);
        nodes.push_back(place.node);
        return place.error;
    }
    const std::string pattern = parts.names.back();
    parts.names.pop_back();
    const Place folder = disk_.Locate(parts, Follow::yes);
    if (folder.node == nullptr) {
        return folder.error;
    }
    for (const auto& [key, node] : folder.node->children) {
        if (MatchesPattern(node->name, pattern)) {
            nodes.push_back(node);
        }
    }
    return nodes.empty() ? error::fileNotFound : error::success;
}

int InMemoryShell::Unreachable(const std::string& path) const {
    if (TooLong(path)) {
        return pathTooDeep;
    }
    return disk_.ParseUsual(path).Text() == path ? 0 : unknownPath;
}

int InMemoryShell::Delete(const NodePtr& top, std::set<const Node*>& entered) {
    if (top->parent == nullptr) {
        return entered.empty() ? invalidFiles : 0;  // a bare root, or gone already through a link
    }
    if (const int code = Unreachable(top->Path()); code != 0) {
        return code;
    }
    NodePtr inside = top;
    if (top->IsLink() && followsLinks) {
        inside = disk_.Locate(top->Path(), Follow::yes).node;
    }
    if (inside != nullptr && inside->IsFolder() && entered.insert(inside.get()).second) {
        const int code = DeleteChildren(*inside, entered);
        entered.erase(inside.get());
        if (code != 0) {
            return code;
        }
    }
    return DeleteOne(top);
}

int InMemoryShell::DeleteChildren(const Node& folder, std::set<const Node*>& entered) {
    std::vector<NodePtr> children;
    for (const auto& [key, child] : folder.children) {
        children.push_back(child);
    }
    for (const NodePtr& child : children) {
        if (const int code = Delete(child, entered); code != 0) {
            return code;
        }
    }
    return 0;
}

int InMemoryShell::DeleteOne(const NodePtr& node) {
    if (node->parent == nullptr) {
        return 0;  // gone already through a link
    }
    const std::string path = node->Path();
    if (const SystemError code = faults_.Enter("Shell.Delete", path, true); code != error::success) {
        return ShellCode(code);
    }
    const bool refused = node->Has(attribute::readOnly) && !deletesReadOnly;
    const SystemError code = refused ? error::accessDenied : CheckRemoval(disk_, *node);
    if (code == error::success) {
        disk_.Remove(node);
    }
    return code == error::success ? 0 : ShellCode(code);
}

int InMemoryShell::MakeFolders(const std::string& path) {
    const PathParts parts = disk_.ParseUsual(path);
    PathParts built = parts;
    built.names.clear();
    built.trailingSeparator = false;
    for (const std::string& name : parts.names) {
        built.names.push_back(name);
        const Place place = disk_.Locate(built, Follow::yes);
        if (place.node != nullptr) {
            continue;
        }
        if (place.error != error::fileNotFound) {
            return ShellCode(place.error);
        }
        if (const SystemError code = faults_.Enter("Shell.Copy", built.Text(), true); code != error::success) {
            return ShellCode(code);
        }
        if (const SystemError code = CheckCreation(*place.parent); code != error::success) {
            return ShellCode(code);
        }
        disk_.Add(place, attribute::directory);
    }
    return 0;
}

int InMemoryShell::CopyInto(const NodePtr& node, const std::string& target, bool several) {
    std::string destination = disk_.ParseUsual(target).Text();
    const Place existing = disk_.Locate(destination, Follow::yes);
    if (several || (existing.node != nullptr && existing.node->IsFolder())) {
        destination += (destination.back() == '\\' ? "" : "\\") + node->name;
    } else if (existing.error != error::success && existing.error != error::fileNotFound &&
               existing.error != error::pathNotFound) {
        return ShellCode(existing.error);
    }
    const std::string source = node->Path();
    if (text::EqualIgnoringCase(source, destination)) {
        return sameFile;
    }
    return node->IsFolder() && IsWithin(destination, source) ? targetInSource : CopyTree(*node, destination);
}

int InMemoryShell::CopyTree(Node& top, const std::string& target) {
    if (!top.IsFolder()) {
        const int code = MakeFolders(target.substr(0, target.rfind('\\')));
        return code == 0 ? CopyOne(top, target) : code;
    }
    int code = MakeFolders(target);
    const std::size_t above = top.Path().size();
    for (const NodePtr& node : InMemoryDisk::Below(top)) {
        const std::string path = target + node->Path().substr(above);
        if (code == 0) {
            code = node->IsFolder() ? MakeFolders(path) : CopyOne(*node, path);
        }
    }
    return code;
}

int InMemoryShell::CopyOne(Node& node, const std::string& target) {
    const int unreachable = Unreachable(node.Path());
    if (unreachable != 0 || TooLong(target)) {
        return unreachable != 0 ? unreachable : pathTooDeep;
    }
    if (const SystemError code = faults_.Enter("Shell.Copy", target, true); code != error::success) {
        return ShellCode(code);
    }
    if (node.denied) {
        return ShellCode(error::accessDenied);
    }
    if (const SystemError code = disk_.CheckUse(node, {access::read, access::read}); code != error::success) {
        return ShellCode(code);
    }
    const Place place = disk_.Locate(target, Follow::yes);
    if (place.node == nullptr && place.error != error::fileNotFound) {
        return ShellCode(place.error);
    }
    const SystemError check = place.node == nullptr ? CheckCreation(*place.parent) : CheckRemoval(disk_, *place.node);
    if (check != error::success || (place.node != nullptr && place.node->IsFolder())) {
        return ShellCode(check != error::success ? check : error::accessDenied);
    }
    const NodePtr copy = place.node != nullptr ? place.node : disk_.Add(place, node.attributes);
    disk_.Empty(*copy);
    if (const SystemError code = disk_.Write(*copy, 0, node.Text()); code != error::success) {
        disk_.Remove(copy);
        return ShellCode(code);
    }
    copy->attributes = node.attributes | attribute::archive;
    disk_.SetWriteTime(*copy, node.WriteTime());
    return 0;
}

SystemError InMemoryShell::Open(const OpenRequest& request) {
    if (const SystemError code = faults_.Enter("Shell.Open", request.path, false); code != error::success) {
        return code;
    }
    opened_.push_back(request);
    const Place place = disk_.Locate(request.path, Follow::yes);
    return place.node != nullptr ? error::success : place.error;
}

SystemError InMemoryShell::OpenAddress(const std::string& address) {
    if (const SystemError code = faults_.Enter("Shell.OpenAddress", address, false); code != error::success) {
        return code;
    }
    if (!hasBrowser) {
        return error::fileNotFound;
    }
    addresses_.push_back(address);
    return error::success;
}

SystemError InMemoryShell::SaveShortcut(const Shortcut& shortcut) {
    if (const SystemError code = faults_.Enter("Shell.Shortcut", shortcut.path, true); code != error::success) {
        return code;
    }
    const Place place = disk_.Locate(shortcut.path, Follow::yes);
    if (place.node == nullptr && place.error != error::fileNotFound) {
        return place.error;
    }
    const SystemError code = place.node == nullptr ? CheckCreation(*place.parent) : CheckRemoval(disk_, *place.node);
    if (code != error::success) {
        return code;
    }
    const NodePtr file = place.node != nullptr ? place.node : disk_.Add(place, attribute::archive);
    disk_.Empty(*file);
    shortcuts_.push_back(shortcut);
    return disk_.Write(*file, 0, "shortcut to " + shortcut.targetPath);
}

}  // namespace marlok::test
