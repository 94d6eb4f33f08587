#include "tests/machine/InMemoryMachine.h"

#include <stdexcept>

namespace marlok::test {
namespace {

using Follow = InMemoryDisk::Follow;

[[noreturn]] void Refuse(const std::string& path, const char* why) {
    throw std::invalid_argument(path + ": " + why);
}

}  // namespace

InMemoryMachine::InMemoryMachine()
    : machine_{registry, files, drives, shell, desktop, clock, process, system, browser} {
    Seed({{system.windowsFolder + "\\"}, {process.programFolder + "\\"}, {shell.desktopFolder + "\\"}});
    process.SetCurrentFolder(process.programFolder);
}

void InMemoryMachine::AddDrive(char letter, const DriveOptions& options) {
    disk.AddVolume(std::string(1, letter) + ":", options);
}

void InMemoryMachine::RemoveDrive(char letter) {
    disk.RemoveVolume(std::string(1, letter) + ":");
}

void InMemoryMachine::AddShare(const std::string& root, const DriveOptions& options) {
    disk.AddVolume(root, options);
}

void InMemoryMachine::SetDriveFailure(const std::string& root, SystemError code) {
    DiskVolume* volume = disk.FindVolume(root);
    if (volume == nullptr) {
        Refuse(root, "no such drive");
    }
    volume->failure = code;
}

NodePtr InMemoryMachine::MakeFolder(const PathParts& parts) {
    if (parts.error != error::success) {
        Refuse(parts.root, "no path");
    }
    if (disk.FindVolume(parts.root) == nullptr) {
        disk.AddVolume(parts.root, {});
    }
    NodePtr folder = disk.FindVolume(parts.root)->folder;
    for (const std::string& name : parts.names) {
        NodePtr child = folder->Find(name);
        if (child == nullptr) {
            Place place;
            place.parent = folder;
            place.name = name;
            child = disk.Add(place, attribute::directory);
        }
        folder = child->IsLink() ? disk.Locate(child->Path(), Follow::yes).node : child;
        if (folder == nullptr || !folder->IsFolder()) {
            Refuse(child->Path(), "no folder");
        }
    }
    return folder;
}

NodePtr InMemoryMachine::MakeFile(const std::string& path) {
    PathParts parts = disk.Parse(path);
    if (parts.error != error::success || parts.names.empty() || parts.trailingSeparator) {
        Refuse(path, "no path of a file");
    }
    Place place = disk.Locate(parts, Follow::yes);
    if (place.node == nullptr) {
        const std::string name = parts.names.back();
        parts.names.pop_back();
        place.parent = MakeFolder(parts);
        place.name = name;
        place.node = disk.Add(place, attribute::archive);
    }
    if (place.node->IsFolder()) {
        Refuse(path, "is a folder");
    }
    disk.Empty(*place.node);
    return place.node;
}

void InMemoryMachine::Seed(std::initializer_list<Seeded> entries) {
    for (const Seeded& entry : entries) {
        Seed(entry);
    }
}

void InMemoryMachine::Seed(const Seeded& entry) {
    const bool folder = !entry.path.empty() && entry.path.back() == '\\';
    const NodePtr node = folder ? MakeFolder(disk.Parse(entry.path)) : MakeFile(entry.path);
    if (!folder && disk.Write(*node, 0, entry.content) != error::success) {
        Refuse(entry.path, "does not fit on the drive");
    }
    node->attributes |= entry.attributes;
    if (!folder || entry.time.has_value()) {
        disk.SetWriteTime(*node, entry.time.value_or(At(9, 0)));
        disk.SetCreationTime(*node, entry.time.value_or(At(9, 0)));
    }
}

void InMemoryMachine::Write(const std::string& path, const std::string& content) {
    if (disk.Write(*MakeFile(path), 0, content) != error::success) {
        Refuse(path, "does not fit on the drive");
    }
}

NodePtr InMemoryMachine::Existing(const std::string& path, Follow follow) const {
    const Place place = disk.Locate(path, follow);
    if (place.node == nullptr) {
        Refuse(path, "is not there");
    }
    return place.node;
}

std::string InMemoryMachine::Read(const std::string& path) const {
    const NodePtr node = Existing(path, Follow::yes);
    if (node->IsFolder()) {
        Refuse(path, "is a folder");
    }
    return node->Text();
}

bool InMemoryMachine::Exists(const std::string& path) const {
    return disk.Locate(path, Follow::no).node != nullptr;
}

DirectoryEntry InMemoryMachine::EntryOf(const std::string& path) const {
    return Existing(path, Follow::no)->Entry();
}

test::Tree InMemoryMachine::Tree(const std::string& folder) const {
    test::Tree tree;
    const NodePtr top = disk.Locate(folder, Follow::yes).node;
    if (top == nullptr) {
        return tree;
    }
    disk.Settle(*top);
    const std::string path = top->Path();
    const std::size_t above = path.back() == '\\' ? path.size() : path.size() + 1;
    for (const NodePtr& node : InMemoryDisk::Below(*top)) {
        disk.Settle(*node);
        if (node->parent != nullptr) {
            tree[node->Path().substr(above) + (node->IsFolder() ? "\\" : "")] = node->Text();
        }
    }
    return tree;
}

void InMemoryMachine::Remove(const std::string& path) {
    const NodePtr node = disk.Locate(path, Follow::no).node;
    if (node == nullptr) {
        return;
    }
    const std::vector<NodePtr> below = InMemoryDisk::Below(*node);
    for (auto child = below.rbegin(); child != below.rend(); ++child) {
        disk.Remove(*child);
    }
    disk.Remove(node);
}

void InMemoryMachine::MakeLink(const std::string& path, const std::string& target, std::uint32_t tag) {
    const NodePtr node = MakeFolder(disk.Parse(path));
    if (!node->children.empty() || node->parent == nullptr) {
        Refuse(path, "cannot become a link");
    }
    node->attributes |= attribute::reparsePoint;
    node->reparseTag = tag;
    node->linkTarget = target;
}

void InMemoryMachine::MakeFileLink(const std::string& path, const std::string& target) {
    const NodePtr node = MakeFile(path);
    node->attributes |= attribute::reparsePoint;
    node->reparseTag = reparse::symbolicLink;
    node->linkTarget = target;
}

void InMemoryMachine::MakePlaceholder(const std::string& path) {
    const NodePtr node = Existing(path, Follow::no);
    node->attributes |= attribute::reparsePoint;
    node->reparseTag = reparse::cloudFile;
}

void InMemoryMachine::Lock(const std::string& path, bool locked) {
    if (locked) {
        PutHold(path, Hold{});
    } else {
        LetGo(path);
    }
}

void InMemoryMachine::PutHold(const std::string& path, const Hold& hold) {
    Existing(path, Follow::yes)->users.Add(hold);
}

void InMemoryMachine::HoldFor(const std::string& path, std::uint64_t milliseconds, Use use) {
    PutHold(path, {use, clock.Ticks() + milliseconds});
}

void InMemoryMachine::HoldForCalls(const std::string& path, int calls, Use use) {
    Hold hold{use};
    hold.calls = calls;
    PutHold(path, hold);
}

void InMemoryMachine::LetGo(const std::string& path) {
    Existing(path, Follow::yes)->users.RemoveHolds();
}

void InMemoryMachine::Map(const std::string& path) {
    Hold hold;
    hold.kind = Hold::Kind::mapping;
    PutHold(path, hold);
}

void InMemoryMachine::RunFrom(const std::string& path) {
    Hold hold;
    hold.kind = Hold::Kind::image;
    PutHold(path, hold);
}

void InMemoryMachine::Deny(const std::string& path, bool denied) {
    Existing(path, Follow::no)->denied = denied;
}

void InMemoryMachine::FailReads(const std::string& path, SystemError code, std::size_t readable) {
    const NodePtr node = Existing(path, Follow::yes);
    node->readError = code;
    node->readableBytes = readable;
}

void InMemoryMachine::MakeReparsePoint(const std::string& path, std::uint32_t tag) {
    const NodePtr node = Existing(path, Follow::no);
    node->attributes |= attribute::reparsePoint;
    node->reparseTag = tag;
}

void InMemoryMachine::MakeCompatibilityJunction(const std::string& path, const std::string& target) {
    MakeLink(path, target);
    SetAttributes(path, attribute::hidden | attribute::system);
    Deny(path);
}

void InMemoryMachine::MakePageFile(const std::string& path) {
    const NodePtr node = Existing(path, Follow::no);
    node->attributes |= attribute::hidden | attribute::system;
    node->pageFile = true;
    node->users.Add(Hold{});
}

void InMemoryMachine::MakeCaseSensitive(const std::string& folder) {
    const NodePtr node = Existing(folder, Follow::no);
    if (!node->IsFolder() || !node->children.empty()) {
        Refuse(folder, "cannot become a case-sensitive folder");
    }
    node->caseSensitive = true;
}

void InMemoryMachine::MakeLarge(const std::string& path, std::uint64_t bytes) {
    const NodePtr node = Existing(path, Follow::yes);
    const FileTime time = node->WriteTime();
    if (disk.SetSize(*node, bytes) != error::success) {
        Refuse(path, "does not fit on the drive");
    }
    disk.SetWriteTime(*node, time);
}

void InMemoryMachine::SeedSystemFolders(char letter) {
    constexpr std::uint32_t hiddenSystem = attribute::hidden | attribute::system;
    const std::string root = std::string(1, letter) + ":\\";
    const std::string bin = root + R"($RECYCLE.BIN\S-1-5-21-1004336348-1177238915-682003330-1001\)";
    Seed({{root + "$RECYCLE.BIN\\", "", {}, hiddenSystem},
          {bin, "", {}, hiddenSystem},
          {bin + "desktop.ini", "[.ShellClassInfo]", {}, hiddenSystem},
          {bin + "$IABC123.txt", "where it was"},
          {bin + "$RABC123.txt", "thrown away"},
          {root + R"(System Volume Information\)", "", {}, hiddenSystem},
          {root + R"(System Volume Information\IndexerVolumeGuid)", "{}"}});
    const DiskVolume* volume = disk.FindVolume(std::string(1, letter) + ":");
    // Where the file system keeps rights, this folder is nobody's but the system's.
    Deny(root + "System Volume Information", !volume->IsFat() && !volume->IsExFat());
}

void InMemoryMachine::SetTime(const std::string& path, FileTime time) {
    disk.SetWriteTime(*Existing(path, Follow::no), time);
}

void InMemoryMachine::SetAttributes(const std::string& path, std::uint32_t attributes) {
    const NodePtr node = Existing(path, Follow::no);
    constexpr std::uint32_t kept = attribute::directory | attribute::reparsePoint;
    node->attributes = (node->attributes & kept) | (attributes & ~kept);
}

void InMemoryMachine::SetAlias(const std::string& path, const std::string& alias) {
    disk.SetAlias(*Existing(path, Follow::no), alias);
}

void InMemoryMachine::Restart() {
    faults.Revive();
    desktop.Restart();
    system.Restart();
}

std::string InMemoryMachine::Leaks() const {
    std::string leaks;
    const auto add = [&leaks](int count, const char* what) {
        leaks += count == 0 ? "" : std::to_string(count) + " " + what + " left open\n";
    };
    add(files.OpenSearches(), "searches");
    add(files.OpenFiles(), "files");
    add(registry.OpenKeys(), "registry keys");
    return leaks;
}

void InMemoryMachine::ExpectNoLeaks() const {
    if (const std::string leaks = Leaks(); !leaks.empty()) {
        throw std::logic_error(leaks);
    }
}

}  // namespace marlok::test
