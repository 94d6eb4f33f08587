#pragma once

#include "platform/FileSystem.h"

namespace marlok::win32 {

/// The kernel's file services through the wide functions.
class Win32FileSystem : public FileSystem {
 public:
    SystemError FindFirst(const std::string& pattern, std::unique_ptr<FolderSearch>& search,
                          DirectoryEntry& first) override;
    SystemError GetEntry(const std::string& path, DirectoryEntry& entry) override;
    SystemError CreateFolder(const std::string& path) override;
    SystemError RemoveFolder(const std::string& path) override;
    SystemError RemoveLink(const std::string& path) override;
    SystemError Delete(const std::string& path) override;
    SystemError Move(const std::string& from, const std::string& to, std::uint32_t flags) override;
    SystemError Replace(const std::string& replaced, const std::string& replacement,
                        const std::string& backup) override;
    SystemError Copy(const std::string& from, const std::string& to, std::uint32_t flags,
                     const CopyProgressRoutine& progress) override;
    SystemError SetAttributes(const std::string& path, std::uint32_t attributes) override;
    SystemError Open(const std::string& path, OpenMode mode, std::unique_ptr<File>& file) override;
    SystemError FinalPath(const std::string& path, std::string& finalPath) override;
    SystemError Identify(const std::string& path, FileIdentity& identity) override;
    SystemError GetVolume(const std::string& path, Volume& volume) override;
};

}  // namespace marlok::win32
