#include "fileops/txtFunctions.h"

#include "fileops/Errors.h"
#include "fileops/FolderFunctions.h"
#include "fileops/WorkingFiles.h"
#include "text/Text.h"

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

/// Where a file is written before it takes the place of `path`.
std::string NeighbourOf(const std::string& path) {
    return AddBackslash(FolderOf(path)) + std::string(workingfile::newText);
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

std::string DecodeText(SystemInfo& system, std::string bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.erase(0, 3);
    }
    if (text::IsUtf8(bytes)) {
        return bytes;
    }
    std::string decoded;
    decoded.reserve(bytes.size() + bytes.size() / 8);
    bool first = true;
    for (const std::string_view line : text::Split(bytes, "\n")) {
        if (!first) {
            decoded += '\n';
        }
        first = false;
        decoded += text::IsUtf8(line) ? std::string(line) : system.FromCodePage(line);
    }
    return decoded;
}

std::string ReadTextFile(FileSystem& files, SystemInfo& system, const std::string& path) {
    DirectoryEntry entry;
    const bool exists = files.GetEntry(path, entry) == error::success && !entry.IsFolder();
    if (!exists || entry.size == 0) {
        return "";
    }
    std::string bytes;
    const SystemError code = ReadWholeFile(files, path, bytes);
    if (code != error::success) {
        Raise(code);
    }
    return DecodeText(system, std::move(bytes));
}

SystemError ForceDelete(FileSystem& files, const std::string& path) {
    SystemError code = files.Delete(path);
    if (code == error::accessDenied && files.SetAttributes(path, attribute::normal) == error::success) {
        code = files.Delete(path);
    }
    return code;
}

SystemError ForceReplace(FileSystem& files, const std::string& from, const std::string& to) {
    SystemError code = files.Move(from, to, true);
    DirectoryEntry old;
    if (code != error::accessDenied || files.GetEntry(to, old) != error::success ||
        (old.attributes & attribute::readOnly) == 0) {
        return code;
    }
    if (files.SetAttributes(to, old.attributes & ~attribute::readOnly) == error::success) {
        code = files.Move(from, to, true);
        if (code != error::success) {
            // The file that stays keeps its attributes; failing to restore them is not worth losing `code`.
            static_cast<void>(files.SetAttributes(to, old.attributes));
        }
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
    }
    if (code != error::success) {
        // What is reported is why the file could not be saved; a neighbour that stays is replaced by the next save.
        static_cast<void>(files.Delete(neighbour));
    }
    return code;
}

}  // namespace marlok
