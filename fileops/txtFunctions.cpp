#include "fileops/txtFunctions.h"

#include "fileops/Errors.h"
#include "fileops/WholeFiles.h"
#include "text/Text.h"

namespace marlok {

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

SystemError ReadText(FileSystem& files, SystemInfo& system, const std::string& path, std::string& text) {
    std::string bytes;
    const SystemError code = ReadWholeFile(files, path, bytes);
    text = code == error::success ? DecodeText(system, std::move(bytes)) : std::string();
    return code;
}

std::string ReadTextFile(FileSystem& files, SystemInfo& system, const std::string& path) {
    DirectoryEntry entry;
    const bool exists = files.GetEntry(path, entry) == error::success && !entry.IsFolder();
    if (!exists || entry.size == 0) {
        return "";
    }
    std::string text;
    const SystemError code = ReadText(files, system, path, text);
    if (code != error::success) {
        Raise(code);
    }
    return text;
}

bool IsMissing(SystemError code) {
    return code == error::fileNotFound || code == error::pathNotFound;
}

}  // namespace marlok
