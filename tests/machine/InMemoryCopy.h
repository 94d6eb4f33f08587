#pragma once

#include <cstddef>
#include <string>

#include "platform/FileSystem.h"
#include "tests/machine/FaultPlan.h"
#include "tests/machine/InMemoryDisk.h"

namespace marlok::test {

/// The kernel's copy of one file, in the parts that others can see: the destination appears with the source's
/// attributes and the present time, grows chunk by chunk, and gets the source's time last.
class InMemoryCopy {
 public:
    struct Manners {
        std::size_t chunk;        ///< bytes between two calls of the progress routine
        bool swallowsReadErrors;  ///< see InMemoryFiles::SetSwallowsReadErrors
    };

    InMemoryCopy(InMemoryDisk& disk, FaultPlan& faults, Manners manners)
        : disk_(disk), faults_(faults), manners_(manners) {}

    /// A copy that fails half-way leaves what it has written when `copyflag::restartable` is set, else it deletes it.
    /// One that is called off deletes it either way.
    [[nodiscard]] SystemError Run(const std::string& from, const std::string& to, std::uint32_t flags,
                                  const CopyProgressRoutine& progress);

 private:
    [[nodiscard]] SystemError OpenSource(const std::string& from);
    [[nodiscard]] SystemError OpenTarget(const std::string& to, std::uint32_t flags);
    [[nodiscard]] SystemError CheckTarget(const Node& node, std::uint32_t flags) const;
    [[nodiscard]] SystemError CheckEncryption(const DiskVolume& to, std::uint32_t flags) const;
    [[nodiscard]] SystemError Fill(const std::string& to, const CopyProgressRoutine& progress);
    [[nodiscard]] SystemError Finish(const std::string& to);

    InMemoryDisk& disk_;
    FaultPlan& faults_;
    Manners manners_;
    NodePtr source_;
    NodePtr target_;
};

}  // namespace marlok::test
