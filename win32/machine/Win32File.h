#pragma once

#include <memory>

#include "platform/FileSystem.h"
#include "win32/machine/Handles.h"

namespace marlok::win32 {

/// An open file on a kernel handle.
class Win32File : public File {
 public:
    /// Opens `path` (as ToWidePath gives it) and puts the file into `file`.
    [[nodiscard]] static SystemError Open(const std::wstring& path, OpenMode mode, std::unique_ptr<File>& file);

    explicit Win32File(FileHandle handle) : handle_(std::move(handle)) {}

    SystemError Read(std::string& bytes, std::size_t size) override;
    SystemError Write(std::string_view bytes) override;
    SystemError Flush() override;
    SystemError Close() override;

 private:
    FileHandle handle_;
};

}  // namespace marlok::win32
