#include "engine/RestoreJournal.h"

#include "fileops/Deleting.h"
#include "fileops/WholeFiles.h"
#include "fileops/txtFunctions.h"
#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/ProgramFiles.h"
#include "paths/Roots.h"
#include "paths/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// Between the parts of a line; no file name holds one.
constexpr std::string_view separator = "\t";
constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view doneMark = "done";

/// A journal that was damaged must not have anything but working files deleted.
bool IsPlausible(const Replacement& replacement) {
    return IsPlainOriginal(replacement.original) && IsPlainName(replacement.oldName) &&
           workingfile::IsWorkingFile(replacement.oldName);
}

/// Whether something is there. A file whose folder has gone is not; one whose drive has gone may be.
enum class There { no, yes, unknown };

There Look(FileSystem& files, const std::string& path, DirectoryEntry& entry) {
    const SystemError code = files.GetEntry(path, entry);
    if (code == error::success) {
        return There::yes;
    }
    const std::string root = path.substr(0, RootOf(path).length);
    DirectoryEntry ofRoot;
    const bool gone = IsMissing(code) && files.GetEntry(root, ofRoot) == error::success;
    return gone ? There::no : There::unknown;
}

bool IsFile(const DirectoryEntry& entry) {
    return !entry.IsFolder() && !entry.IsLink();
}

}  // namespace

bool IsPlainOriginal(const std::string& original) {
    const PathRoot root = RootOf(original);
    const bool hasRoot = root.kind == PathRoot::Kind::drive || root.kind == PathRoot::Kind::network;
    return hasRoot && IsPlainRelativePath(original.substr(root.kind == PathRoot::Kind::drive ? root.length : 0)) &&
           !original.ends_with('\\');
}

std::string FormatReplacements(const std::vector<Replacement>& replacements) {
    std::string text;
    for (const Replacement& replacement : replacements) {
        text.append(replacement.original).append(separator).append(replacement.oldName);
        if (replacement.done) {
            text.append(separator).append(doneMark);
        }
        text.append(lineEnd);
    }
    return text;
}

std::vector<Replacement> ParseReplacements(std::string_view text) {
    std::vector<std::string_view> lines = text::Split(text, lineEnd);
    lines.pop_back();  // what follows the last line end was cut short
    std::vector<Replacement> replacements;
    for (const std::string_view line : lines) {
        const std::vector<std::string_view> parts = text::Split(line, separator);
        if (parts.size() < 2 || parts.size() > 3 || (parts.size() == 3 && parts[2] != doneMark)) {
            continue;
        }
        Replacement replacement{std::string(parts[0]), std::string(parts[1]), parts.size() == 3};
        if (IsPlausible(replacement)) {
            replacements.push_back(std::move(replacement));
        }
    }
    return replacements;
}

RestoreJournal::RestoreJournal(Machine& machine)
    : machine_(machine), path_(ProgramFolder(machine.process.ProgramFolder()).PathOf(workingfile::put)) {}

void RestoreJournal::ClearKilled() {
    std::string text;
    const SystemError code = ReadWholeFile(machine_.files, path_, text);
    known_ = code == error::success || IsMissing(code);
    if (code != error::success) {
        return;
    }
    for (const Replacement& replacement : ParseReplacements(text)) {
        if (!ClearOne(replacement)) {
            left_.push_back(replacement);
        }
    }
    Save();
}

/// False when something stays that is to go or to come back.
bool RestoreJournal::ClearOne(const Replacement& replacement) const {
    const std::string part = Join(FolderOf(replacement.original), workingfile::part);
    DirectoryEntry entry;
    const There there = Look(machine_.files, part, entry);
    const bool removed =
        there == There::no ||
        (there == There::yes && (!IsFile(entry) || ForceDelete(machine_.files, part) == error::success));
    return ClearOld(replacement) && removed;
}

bool RestoreJournal::ClearOld(const Replacement& replacement) const {
    FileSystem& files = machine_.files;
    const std::string old = Join(FolderOf(replacement.original), replacement.oldName);
    DirectoryEntry entry;
    const There there = Look(files, old, entry);
    if (there != There::yes || !IsFile(entry)) {
        return there != There::unknown;
    }
    DirectoryEntry successor;
    switch (replacement.done ? There::yes : Look(files, replacement.original, successor)) {
        case There::yes:
            return ForceDelete(files, old) == error::success;
        case There::no:
            return files.Move(old, replacement.original, moveflag::none) == error::success;
        case There::unknown:
            break;
    }
    return false;
}

SystemError RestoreJournal::Enter(const Replacement& replacement) {
    if (!file_ && written_ == error::success) {
        written_ = machine_.files.Open(path_, OpenMode::append, file_);
    }
    if (written_ == error::success) {
        written_ = file_->Write(FormatReplacements({replacement}));
    }
    return written_;
}

void RestoreJournal::Finish() {
    if (!file_) {
        return;
    }
    // What was entered is done; a journal that cannot be closed is read again at the next start, and finds it so.
    static_cast<void>(file_->Close());
    file_.reset();
    Save();
}

/// What could not be saved or removed is gone through again at the next start, which does no harm.
void RestoreJournal::Save() {
    if (!known_) {
        return;
    }
    if (left_.empty()) {
        static_cast<void>(ForceDelete(machine_.files, path_));
    } else {
        static_cast<void>(SaveWholeFile(machine_.files, path_, FormatReplacements(left_)));
    }
}

}  // namespace marlok
