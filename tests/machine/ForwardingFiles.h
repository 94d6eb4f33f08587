#pragma once

#include "platform/FileSystem.h"

namespace marlok::test {

/// Hands every call to another file system; a test overrides the one it wants to be different.
class ForwardingFiles : public FileSystem {
 public:
    explicit ForwardingFiles(FileSystem& inner) : inner_(inner) {}

    [[nodiscard]] SystemError FindFirst(const std::string& pattern, std::unique_ptr<FolderSearch>& search,
                                        DirectoryEntry& first) override {
        return inner_.FindFirst(pattern, search, first);
    }
    [[nodiscard]] SystemError GetEntry(const std::string& path, DirectoryEntry& entry) override {
        return inner_.GetEntry(path, entry);
    }
    [[nodiscard]] SystemError CreateFolder(const std::string& path) override { return inner_.CreateFolder(path); }
    [[nodiscard]] SystemError RemoveFolder(const std::string& path) override { return inner_.RemoveFolder(path); }
    [[nodiscard]] SystemError RemoveLink(const std::string& path) override { return inner_.RemoveLink(path); }
    [[nodiscard]] SystemError Delete(const std::string& path) override { return inner_.Delete(path); }
    [[nodiscard]] SystemError Move(const std::string& from, const std::string& to, std::uint32_t flags) override {
        return inner_.Move(from, to, flags);
    }
    [[nodiscard]] SystemError Replace(const std::string& replaced, const std::string& replacement,
                                      const std::string& backup) override {
        return inner_.Replace(replaced, replacement, backup);
    }
    [[nodiscard]] SystemError Copy(const std::string& from, const std::string& to, std::uint32_t flags,
                                   const CopyProgressRoutine& progress) override {
        return inner_.Copy(from, to, flags, progress);
    }
    [[nodiscard]] SystemError SetAttributes(const std::string& path, std::uint32_t attributes) override {
        return inner_.SetAttributes(path, attributes);
    }
    [[nodiscard]] SystemError Open(const std::string& path, OpenMode mode, std::unique_ptr<File>& file) override {
        return inner_.Open(path, mode, file);
    }
    [[nodiscard]] SystemError FinalPath(const std::string& path, std::string& finalPath) override {
        return inner_.FinalPath(path, finalPath);
    }
    [[nodiscard]] SystemError Identify(const std::string& path, FileIdentity& identity) override {
        return inner_.Identify(path, identity);
    }
    [[nodiscard]] SystemError GetVolume(const std::string& path, Volume& volume) override {
        return inner_.GetVolume(path, volume);
    }

 private:
    FileSystem& inner_;
};

}  // namespace marlok::test
