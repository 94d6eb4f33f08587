#include "fileops/WholeFiles.h"

#include "fileops/Deleting.h"
#include "fileops/Replacing.h"
#include "paths/Path.h"
#include "paths/WorkingFiles.h"

namespace marlok {

namespace {

constexpr std::size_t readSize = std::size_t{1} << 20U;  // bytes at a time

SystemError WriteNew(FileSystem& files, const std::string& path, std::string_view bytes) {
    std::unique_ptr<File> file;
    SystemError code = files.Open(path, OpenMode::replace, file);
    if (code != error::success) {
        return code;
    }
    code = file->Write(bytes);
    if (code == error::success) {
        code = file->Flush();
    }
    const SystemError closed = file->Close();
    return code != error::success ? code : closed;
}

/// Windows refuses to replace a file in use with the same code as one that the user may not change: asks which it is.
SystemError WhyRefused(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    std::unique_ptr<File> file;
    if (files.GetEntry(path, entry) != error::success || entry.IsFolder()) {
        return error::accessDenied;
    }
    const SystemError code = files.Open(path, OpenMode::append, file);
    return code == error::success ? error::accessDenied : code;
}

/// Where a file is written before it takes the place of `path`.
std::string NeighbourOf(const std::string& path) {
    return Join(FolderOf(path), workingfile::newText);
}

}  // namespace

SystemError ReadWholeFile(FileSystem& files, const std::string& path, std::string& bytes) {
    std::unique_ptr<File> file;
    SystemError code = files.Open(path, OpenMode::read, file);
    bytes.clear();
    std::string piece;
    while (code == error::success) {
        code = file->Read(piece, readSize);
        if (code == error::success && piece.empty()) {
            break;
        }
        bytes += piece;
    }
    return code;
}

void ClearUnfinishedSave(FileSystem& files, const std::string& path) {
    const std::string neighbour = NeighbourOf(path);
    DirectoryEntry entry;
    if (files.GetEntry(neighbour, entry) == error::success && !entry.IsFolder()) {
        static_cast<void>(ForceDelete(files, neighbour));  // one that stays is replaced by the next save
    }
}

SystemError SaveWholeFile(FileSystem& files, const std::string& path, std::string_view bytes) {
    const std::string neighbour = NeighbourOf(path);
    SystemError code = WriteNew(files, neighbour, bytes);
    if (code == error::success) {
        code = ForceReplace(files, neighbour, path);
        code = code == error::accessDenied ? WhyRefused(files, path) : code;
    }
    if (code != error::success) {
        // What is reported is why the file could not be saved; a neighbour that stays is replaced by the next save.
        static_cast<void>(files.Delete(neighbour));
    }
    return code;
}

}  // namespace marlok
