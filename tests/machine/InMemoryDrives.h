#pragma once

#include <vector>

#include "platform/Drives.h"
#include "tests/machine/InMemoryDisk.h"

namespace marlok::test {

/// The drive letters of the in-memory disk, kinds and volume names as their DriveOptions tell them.
class InMemoryDrives : public Drives {
 public:
    explicit InMemoryDrives(InMemoryDisk& disk) : disk_(disk) {}

    [[nodiscard]] std::vector<Drive> List() override;

 private:
    InMemoryDisk& disk_;
};

}  // namespace marlok::test
