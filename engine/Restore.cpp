#include "engine/Restore.h"

#include "engine/LocationName.h"
#include "fileops/Errors.h"
#include "fileops/FileOperations.h"
#include "fileops/FolderFunctions.h"
#include "fileops/WorkingFiles.h"
#include "fileops/txtFunctions.h"
#include "text/Text.h"

namespace marlok {

namespace {

bool IsPlainOriginal(const std::string& original) {
    const bool hasRoot = HasDriveRoot(original) || IsNetworkPath(original);
    return hasRoot && IsPlainRelativePath(original.substr(HasDriveRoot(original) ? 3 : 0)) && !original.ends_with('\\');
}

/// The shell keeps paths in buffers of 260 UTF-16 units, the terminating zero included; some shells do not look whether
/// a path fits.
constexpr std::size_t shellPathLimit = 260;

bool FitsTheShell(const std::string& path) {
    return text::ToUtf16(path).size() < shellPathLimit;
}

/// Copies by the shell; where that does not give the whole file (paths too long for it), by the kernel.
SystemError CopyWhole(Machine& machine, const std::string& from, const std::string& to) {
    DirectoryEntry wanted;
    const SystemError seen = machine.files.GetEntry(from, wanted);
    if (seen != error::success) {
        return seen;
    }
    DirectoryEntry made;
    const bool copied = FitsTheShell(from) && FitsTheShell(to) && CopyThisFile(machine.shell, from, to) == 0 &&
                        machine.files.GetEntry(to, made) == error::success && !made.IsFolder() &&
                        made.size == wanted.size;
    return copied ? error::success : machine.files.Copy(from, to, copyflag::none, nullptr);
}

}  // namespace

std::string RestoreFile(Machine& machine, const std::string& saved, const std::string& original) {
    if (!IsPlainOriginal(original)) {
        return "the list of original paths holds no full path for it";
    }
    FileSystem& files = machine.files;
    DirectoryEntry entry;
    if (files.GetEntry(original, entry) == error::success && entry.IsFolder()) {
        return "a folder of that name is in its place";
    }
    const std::string folder = FolderOf(original);
    if (!CreateNestedFolders(files, machine.process, folder)) {
        return "its folder is missing and cannot be made";
    }
    const std::string part = AddBackslash(folder) + std::string(workingfile::part);
    // One that a killed run has left may be read-only.
    SystemError code = files.GetEntry(part, entry) == error::success ? ForceDelete(files, part) : error::success;
    if (code == error::success) {
        code = CopyWhole(machine, saved, part);
    }
    if (code == error::success) {
        code = ForceReplace(files, part, original);
    }
    if (code == error::success) {
        return "";
    }
    if (files.GetEntry(part, entry) == error::success) {
        // It is no harm: the next copy beside it replaces it, and none takes it for a file of the user's.
        static_cast<void>(ForceDelete(files, part));
    }
    return Describe(machine.system, code);
}

}  // namespace marlok
