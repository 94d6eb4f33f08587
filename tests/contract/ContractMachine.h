#pragma once

#include <memory>
#include <string>

#include "platform/Machine.h"
#include "tests/machine/Sharing.h"

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

    /// True when this system is Wine, which is known to differ from Windows in places; see ContractTest::Is.
    virtual bool IsWine() { return false; }

    /// What another program keeps, until it is destroyed.
    class Held {
     public:
        Held() = default;
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;
        virtual ~Held() = default;
    };

    /// Another program's handle of a file or folder that exists. Null when it cannot have it.
    virtual std::unique_ptr<Held> Hold(const std::string& path, Use use) = 0;

    /// Another program has the content of the file mapped into its memory and its handle closed.
    virtual std::unique_ptr<Held> Map(const std::string& path) = 0;

    /// Puts a small program at `path`, and runs such a one: the system has it mapped as what it executes.
    virtual void MakeProgram(const std::string& path) = 0;
    virtual std::unique_ptr<Held> Run(const std::string& path) = 0;

    /// Makes a link to a file, which need not exist; false where the system under test cannot make one.
    virtual bool MakeFileLink(const std::string& path, const std::string& target) = 0;

    /// A folder of this test's own on another volume than the scratch folder, without trailing "\"; "" where there is
    /// no other volume.
    virtual std::string OtherVolume() = 0;

    /// Makes `path` this program's current folder, until the end of the test.
    virtual void EnterFolder(const std::string& path) = 0;

    /// The longest path, in characters, that a file on this system's scratch disk can have.
    virtual std::size_t LongestPath() = 0;
};

/// Defined once by each test program.
std::unique_ptr<ContractMachine> MakeContractMachine();

}  // namespace marlok::test
