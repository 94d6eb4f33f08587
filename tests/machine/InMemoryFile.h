#pragma once

#include <cstdint>
#include <string>

#include "platform/FileSystem.h"
#include "tests/machine/FaultPlan.h"
#include "tests/machine/InMemoryDisk.h"

namespace marlok::test {

/// Finds or creates the file that `mode` asks for, with the errors of the kernel.
[[nodiscard]] SystemError OpenNode(InMemoryDisk& disk, const std::string& path, OpenMode mode, NodePtr& node);

/// An open file of the in-memory disk. Bytes reach the disk with the write that hands them over.
class InMemoryFile : public File {
 public:
    /// Counts itself in `openFiles` until it is closed.
    InMemoryFile(InMemoryDisk& disk, FaultPlan& faults, int& openFiles, std::string path, NodePtr node, OpenMode mode);
    InMemoryFile(const InMemoryFile&) = delete;
    InMemoryFile& operator=(const InMemoryFile&) = delete;
    ~InMemoryFile() override;

    [[nodiscard]] SystemError Read(std::string& bytes, std::size_t size) override;
    [[nodiscard]] SystemError Write(std::string_view bytes) override;
    [[nodiscard]] SystemError Flush() override;
    [[nodiscard]] SystemError Close() override;

 private:
    [[nodiscard]] bool Writes() const { return mode_ != OpenMode::read; }
    [[nodiscard]] SystemError Put(std::string_view bytes);
    void Release();

    InMemoryDisk& disk_;
    FaultPlan& faults_;
    int& openFiles_;
    std::string path_;
    Handle handle_;
    NodePtr node_;  ///< null once closed
    OpenMode mode_;
    std::uint64_t position_ = 0;
};

}  // namespace marlok::test
