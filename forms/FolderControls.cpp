#include "forms/FolderControls.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "paths/Path.h"
#include "text/Text.h"

namespace marlok::forms {

namespace {

/// Blanks before the name of a folder for each folder that it lies in.
constexpr std::size_t indentation = 3;

/// What the drive's kind is called where its volume has no name to show.
const char* KindName(Drive::Kind kind) {
    switch (kind) {
        case Drive::Kind::removable:
            return "removable disk";
        case Drive::Kind::fixed:
            return "local disk";
        case Drive::Kind::network:
            return "network drive";
        case Drive::Kind::optical:
            return "optical drive";
        case Drive::Kind::memory:
            return "memory disk";
        case Drive::Kind::unknown:
            break;
    }
    return "drive";
}

std::string DriveLine(const Drive& drive) {
    const std::string letter = drive.root.substr(0, 2);
    const std::string name = drive.volumeName.empty() ? "" : " [" + drive.volumeName + "]";
    return letter + name + " (" + KindName(drive.kind) + ")";
}

/// Names of the folders or the files in `folder`, sorted as people expect them. What the system itself hides from the
/// user (its recycle bins and the like) is left out.
std::vector<std::string> NamesIn(FileSystem& files, const std::string& folder, bool folders) {
    constexpr std::uint32_t protectedBits = attribute::hidden | attribute::system;
    std::vector<std::pair<std::string, std::string>> found;  // folded for sorting, and as it is
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    SystemError code = files.FindFirst(Join(folder, "*"), search, entry);
    while (code == error::success) {
        const bool isProtected = (entry.attributes & protectedBits) == protectedBits;
        if (entry.IsFolder() == folders && entry.name != "." && entry.name != ".." && !isProtected) {
            found.emplace_back(text::Fold(entry.name), entry.name);
        }
        code = search->Next(entry);
    }
    std::ranges::sort(found);
    std::vector<std::string> names;
    names.reserve(found.size());
    for (auto& [folded, name] : found) {
        names.push_back(std::move(name));
    }
    return names;
}

std::string LastName(const std::string& path) {
    const std::size_t backslash = path.find_last_of('\\');
    return backslash == std::string::npos || backslash + 1 == path.size() ? path : path.substr(backslash + 1);
}

bool IsFolder(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry) == error::success && entry.IsFolder();
}

}  // namespace

DriveListBox::DriveListBox(Form& form, std::string name, Drives& drives)
    : Control(form, std::move(name)), drives_(drives) {
    Refresh();
}

void DriveListBox::SetDrive(const std::string& root) {
    if (text::EqualIgnoringCase(root, drive_)) {
        return;
    }
    SetDriveQuietly(root);
    if (Change) {
        Change();
    }
}

void DriveListBox::SetDriveQuietly(const std::string& root) {
    drive_ = root;
    Changed(Aspect::selection);
}

void DriveListBox::Refresh() {
    std::vector<std::string> roots;
    std::vector<std::string> items;
    for (const marlok::Drive& drive : drives_.List()) {
        roots.push_back(drive.root);
        items.push_back(DriveLine(drive));
    }
    if (items != items_ || roots != roots_) {
        roots_ = std::move(roots);
        items_ = std::move(items);
        Changed(Aspect::items);
    }
}

int DriveListBox::ListIndex() const {
    const auto found =
        std::ranges::find_if(roots_, [this](const std::string& root) { return text::EqualIgnoringCase(root, drive_); });
    return found == roots_.end() ? -1 : static_cast<int>(found - roots_.begin());
}

void DriveListBox::UserChose(int line) {
    if (line >= 0 && line < static_cast<int>(roots_.size())) {
        SetDrive(std::string(roots_[static_cast<std::size_t>(line)]));
    }
}

DirListBox::DirListBox(Form& form, std::string name, FileSystem& files)
    : ListBox(form, std::move(name)), files_(files) {}

void DirListBox::SetPath(const std::string& path) {
    const bool another = path != path_;
    path_ = path;
    Fill();
    if (another && Change) {
        Change();
    }
}

void DirListBox::Fill() {
    Clear();
    paths_ = FoldersOnTheWay(path_);
    const int openLine = static_cast<int>(paths_.size()) - 1;
    for (std::size_t depth = 0; depth < paths_.size(); ++depth) {
        AddItem(std::string(depth * indentation, ' ') + LastName(paths_[depth]));
    }
    const std::string indent(paths_.size() * indentation, ' ');
    for (const std::string& name : NamesIn(files_, path_, true)) {
        AddItem(indent + name);
        paths_.push_back(Join(path_, name));
    }
    SelectQuietly(openLine);
}

std::string DirListBox::Highlighted() const {
    const int line = ListIndex();
    return line >= 0 && line < static_cast<int>(paths_.size()) ? paths_[static_cast<std::size_t>(line)] : path_;
}

void DirListBox::Refresh() {
    if (path_.empty()) {
        return;
    }
    std::vector<std::string> way = FoldersOnTheWay(path_);
    while (way.size() > 1 && !IsFolder(files_, way.back())) {
        way.pop_back();
    }
    SetPath(std::string(way.back()));
}

void DirListBox::UserOpened() {
    SetPath(Highlighted());
    ListBox::UserOpened();
}

FileListBox::FileListBox(Form& form, std::string name, FileSystem& files)
    : ListBox(form, std::move(name)), files_(files) {
    MultiSelect = true;
}

void FileListBox::SetPath(const std::string& path) {
    if (path != path_) {
        path_ = path;
        Refresh();
    }
}

void FileListBox::Refresh() {
    Clear();
    if (path_.empty()) {
        return;
    }
    for (const std::string& name : NamesIn(files_, path_, false)) {
        AddItem(name);
    }
}

}  // namespace marlok::forms
