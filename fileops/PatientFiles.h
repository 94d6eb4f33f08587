#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/Clock.h"
#include "platform/FileSystem.h"

namespace marlok {

/// File services that try again what another program holds for a moment: scanners, indexers and sync programs open
/// every new file within milliseconds. A copy, a renaming and a deletion that fail with the codes of such a hold are
/// tried again after 10, 20, 50, 100, 200 and 400 milliseconds. What is read-only, or a folder in a file's place, is no
/// momentary hold and fails at once; and after twenty seconds spent in vain nothing waits any more for a while, so that
/// a thousand files in use do not take a quarter of an hour.
class PatientFiles : public FileSystem {
 public:
    /// Both outlive this object.
    PatientFiles(FileSystem& files, Clock& clock) : files_(files), clock_(clock) {}

    [[nodiscard]] SystemError FindFirst(const std::string& pattern, std::unique_ptr<FolderSearch>& search,
                                        DirectoryEntry& first) override {
        return files_.FindFirst(pattern, search, first);
    }
    [[nodiscard]] SystemError GetEntry(const std::string& path, DirectoryEntry& entry) override {
        return files_.GetEntry(path, entry);
    }
    [[nodiscard]] SystemError CreateFolder(const std::string& path) override { return files_.CreateFolder(path); }
    [[nodiscard]] SystemError RemoveFolder(const std::string& path) override;
    [[nodiscard]] SystemError RemoveLink(const std::string& path) override { return files_.RemoveLink(path); }
    [[nodiscard]] SystemError Delete(const std::string& path) override;
    [[nodiscard]] SystemError Move(const std::string& from, const std::string& to, std::uint32_t flags) override;
    [[nodiscard]] SystemError Replace(const std::string& replaced, const std::string& replacement,
                                      const std::string& backup) override;
    [[nodiscard]] SystemError Copy(const std::string& from, const std::string& to, std::uint32_t flags,
                                   const CopyProgressRoutine& progress) override;
    [[nodiscard]] SystemError SetAttributes(const std::string& path, std::uint32_t attributes) override {
        return files_.SetAttributes(path, attributes);
    }
    [[nodiscard]] SystemError Open(const std::string& path, OpenMode mode, std::unique_ptr<File>& file) override {
        return files_.Open(path, mode, file);
    }
    [[nodiscard]] SystemError FinalPath(const std::string& path, std::string& finalPath) override {
        return files_.FinalPath(path, finalPath);
    }
    [[nodiscard]] SystemError Identify(const std::string& path, FileIdentity& identity) override {
        return files_.Identify(path, identity);
    }
    [[nodiscard]] SystemError GetVolume(const std::string& path, Volume& volume) override {
        return files_.GetVolume(path, volume);
    }

 private:
    /// Calls until it succeeds, fails for another reason than a momentary hold, or has been tried often enough. Returns
    /// the last result.
    [[nodiscard]] SystemError Try(const std::function<SystemError()>& call,
                                  const std::function<bool(SystemError)>& momentary);

    /// True when `path` is a file that may be deleted or replaced as far as its attributes go.
    [[nodiscard]] bool IsPlainFile(const std::string& path);

    [[nodiscard]] std::uint64_t Budget();

    FileSystem& files_;
    Clock& clock_;
    std::uint64_t spent_ = 0;        ///< milliseconds waited in vain, less what time has given back
    std::uint64_t accountedAt_ = 0;  ///< tick count up to which time has given back
};

}  // namespace marlok
