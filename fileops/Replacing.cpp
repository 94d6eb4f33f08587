#include "fileops/Replacing.h"

namespace marlok {

SystemError ForceReplace(FileSystem& files, const std::string& from, const std::string& to) {
    SystemError code = files.Move(from, to, moveflag::replace);
    // A file that is read-only refuses to be replaced: with the first of these on NTFS, with the second on FAT.
    const bool refused = code == error::accessDenied || code == error::alreadyExists;
    DirectoryEntry old;
    if (!refused || files.GetEntry(to, old) != error::success || (old.attributes & attribute::readOnly) == 0) {
        return code;
    }
    if (files.SetAttributes(to, old.attributes & ~attribute::readOnly) == error::success) {
        code = files.Move(from, to, moveflag::replace);
        if (code != error::success) {
            // The file that stays keeps its attributes; failing to restore them is not worth losing `code`.
            static_cast<void>(files.SetAttributes(to, old.attributes));
        }
    }
    return code;
}

}  // namespace marlok
