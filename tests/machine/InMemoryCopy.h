#pragma once

#include <cstddef>
#include <string>

#include "platform/FileSystem.h"
#include "tests/machine/FaultPlan.h"
#include "tests/machine/InMemoryDisk.h"

namespace marlok::test {

/// The kernel's copy of one file, in the parts that others can see: the destination appears with the source's
/// attributes, its full size and the present time, is filled chunk by chunk, and gets the source's time last.
class InMemoryCopy {
 public:
    struct Manners {
        std::size_t chunk;        ///< bytes between two calls of the progress routine
        bool swallowsReadErrors;  ///< see InMemoryFiles::SetSwallowsReadErrors
    };

    InMemoryCopy(InMemoryDisk& disk, FaultPlan& faults, Manners manners)
        : disk_(disk), faults_(faults), manners_(manners) {}

    /// A copy that fails half-way deletes a destination that it has made itself, unless `copyflag::restartable` is set;
    /// one that was there before stays, damaged. A copy that is called off deletes it in every case.
    [[nodiscard]] SystemError Run(const std::string& from, const std::string& to, std::uint32_t flags,
                                  const CopyProgressRoutine& progress);

 private:
    [[nodiscard]] SystemError OpenSource(const std::string& from);
    [[nodiscard]] SystemError OpenTarget(const std::string& to, std::uint32_t flags);
    [[nodiscard]] SystemError CheckTarget(Node& node, std::uint32_t flags) const;
    [[nodiscard]] SystemError CheckEncryption(const DiskVolume& to, std::uint32_t flags) const;
    [[nodiscard]] SystemError Fill(const std::string& to, const CopyProgressRoutine& progress);
    [[nodiscard]] SystemError CopyChunk(const std::string& to, std::uint64_t done, std::uint64_t size);
    [[nodiscard]] SystemError Finish(const std::string& to);
    [[nodiscard]] std::uint32_t TargetAttributes(const DiskVolume& volume) const;
    void TidyUp(SystemError code, std::uint32_t flags);

    InMemoryDisk& disk_;
    FaultPlan& faults_;
    Manners manners_;
    NodePtr source_;
    NodePtr target_;
    Handle reading_;
    Handle writing_;
    bool made_ = false;  ///< the destination was not there before
};

}  // namespace marlok::test
