#pragma once

#include <memory>
#include <string>

#include "platform/Machine.h"

namespace marlok::test {

/// A machine that the contract suite runs on: the in-memory one on the host, the real one under Windows.
class ContractMachine {
 public:
    virtual ~ContractMachine() = default;

    virtual Machine& machine() = 0;

    /// An empty folder of this test's own, without trailing "\". Removed with everything in it at the end.
    virtual std::string ScratchFolder() = 0;

    /// A registry key path of this test's own below HKEY_CURRENT_USER; not created yet. Removed at the end.
    virtual std::string ScratchKey() = 0;

    /// Makes a folder link at `path` that leads to `target`; false where the system under test cannot make one.
    virtual bool MakeFolderLink(const std::string& path, const std::string& target) = 0;

    /// True when the system can open a link apart from its target, so that RemoveLink can succeed. Where it cannot,
    /// RemoveLink must refuse and leave link and target alone.
    virtual bool CanRemoveLinks() = 0;

    /// True when names may keep unpaired surrogates and trailing dots and blanks on this system's disk.
    virtual bool KeepsOddNames() = 0;

    /// True when the system keeps read-only files from being written and replaced. A Wine that runs as root cannot.
    virtual bool KeepsReadOnlyFiles() { return true; }

    /// The longest path, in characters, that a file on this system's scratch disk can have.
    virtual std::size_t LongestPath() = 0;
};

/// Defined once by each test program.
std::unique_ptr<ContractMachine> MakeContractMachine();

}  // namespace marlok::test
