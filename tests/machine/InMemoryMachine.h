#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Machine.h"
#include "tests/machine/FaultPlan.h"
#include "tests/machine/InMemoryBrowser.h"
#include "tests/machine/InMemoryClock.h"
#include "tests/machine/InMemoryDesktop.h"
#include "tests/machine/InMemoryDisk.h"
#include "tests/machine/InMemoryDrives.h"
#include "tests/machine/InMemoryFiles.h"
#include "tests/machine/InMemoryProcess.h"
#include "tests/machine/InMemoryRegistry.h"
#include "tests/machine/InMemoryShell.h"
#include "tests/machine/InMemorySystem.h"
#include "tests/machine/Seeds.h"

namespace marlok::test {

/// A whole Windows machine in memory. It starts with a drive C: that holds the Windows folder, the program folder and
/// the user's desktop. The seeding and looking methods below are the test's own hand: they count no steps, meet no
/// faults and throw std::invalid_argument for paths that make no sense.
class InMemoryMachine {
 public:
    InMemoryMachine();
    InMemoryMachine(const InMemoryMachine&) = delete;
    InMemoryMachine& operator=(const InMemoryMachine&) = delete;
    ~InMemoryMachine() = default;

    /// What the program gets.
    [[nodiscard]] Machine& machine() { return machine_; }

    FaultPlan faults;
    InMemoryClock clock{faults};
    InMemoryDisk disk{clock};
    InMemoryFiles files{disk, faults};
    InMemoryDrives drives{disk};
    InMemoryRegistry registry{faults};
    InMemoryShell shell{disk, faults};
    InMemoryDesktop desktop{clock, faults};
    InMemoryProcess process{disk, faults};
    InMemorySystem system{faults};
    InMemoryBrowser browser;

    /// Adds an empty drive, or changes the options of one; a share likewise ("\\server\share").
    void AddDrive(char letter, const DriveOptions& options = {});
    void AddShare(const std::string& root, const DriveOptions& options = {});

    /// Every access to the drive or share ("E:") fails with `code` until it is set to success: `error::notReady` for
    /// a drive without its disk, `error::badNetworkPath` for a server that is gone.
    void SetDriveFailure(const std::string& root, SystemError code);

    /// Takes a drive out of the machine with everything on it.
    void RemoveDrive(char letter);

    /// Puts files and folders on the disk, those above them included; drives and shares that are missing too. A file
    /// that exists is replaced.
    void Seed(std::initializer_list<Seeded> entries);
    void Seed(const Seeded& entry);

    /// Writes a file that exists or not, last written now.
    void Write(const std::string& path, const std::string& content);

    /// The content of a file. @throws std::invalid_argument when there is none.
    [[nodiscard]] std::string Read(const std::string& path) const;

    [[nodiscard]] bool Exists(const std::string& path) const;

    /// The entry of `path`, names included; links are not followed. @throws std::invalid_argument when there is none.
    [[nodiscard]] DirectoryEntry EntryOf(const std::string& path) const;

    /// Everything below `folder`; empty when it does not exist. Links are listed as folders and not followed.
    [[nodiscard]] test::Tree Tree(const std::string& folder) const;

    /// Removes a file, or a folder with everything below it. Nothing happens when it does not exist.
    void Remove(const std::string& path);

    /// A junction, or a symbolic link when `tag` says so. What is at `target` need not exist.
    void MakeLink(const std::string& path, const std::string& target, std::uint32_t tag = reparse::mountPoint);

    /// A symbolic link to a file.
    void MakeFileLink(const std::string& path, const std::string& target);

    /// Makes a reparse point of an existing file or folder. One with a tag that this machine has no driver for cannot
    /// be opened; links are made by the calls above.
    void MakeReparsePoint(const std::string& path, std::uint32_t tag);

    /// A hidden junction as the system puts them where folders once were: what lies below it can be reached by name,
    /// and nobody may list it.
    void MakeCompatibilityJunction(const std::string& path, const std::string& target);

    /// Makes an existing file one that the system keeps for itself (a page file): even the question what it is, by its
    /// name, fails; its folder's listing tells.
    void MakePageFile(const std::string& path);

    /// In this folder, still empty, names that differ in letter case are different.
    void MakeCaseSensitive(const std::string& folder);

    /// Makes an existing file so many bytes long, zeros at its end, at the cost of none of them. Its time stays.
    void MakeLarge(const std::string& path, std::uint64_t bytes);

    /// Puts on a drive what Windows keeps in every root: the recycle bin, with a thrown away file in it, and the folder
    /// of the restore points.
    void SeedSystemFolders(char letter);

    /// Marks an existing file or folder as the placeholder of one kept online.
    void MakePlaceholder(const std::string& path);

    /// As if another program held the file open without sharing.
    void Lock(const std::string& path, bool locked = true);

    /// As if another program held the file open, for so long by the machine's clock, or until it has made so many calls
    /// fail. By default it reads and lets nobody do anything.
    void HoldFor(const std::string& path, std::uint64_t milliseconds, Use use = {access::read, access::none});
    void HoldForCalls(const std::string& path, int calls, Use use = {access::read, access::none});

    /// Takes away whatever the two above, Lock, Map and RunFrom have put on the file.
    void LetGo(const std::string& path);

    /// As if another program had the file's content mapped into memory, or ran it.
    void Map(const std::string& path);
    void RunFrom(const std::string& path);

    /// Takes the user's right to a file, or to list and change a folder. What lies below stays reachable.
    void Deny(const std::string& path, bool denied = true);

    /// Reading the file ends with `code` behind its first `readable` bytes: a bad sector, a server that goes away, an
    /// online file that cannot be fetched. Success makes it whole again.
    void FailReads(const std::string& path, SystemError code, std::size_t readable = 0);

    void SetTime(const std::string& path, FileTime time);
    void SetAttributes(const std::string& path, std::uint32_t attributes);
    void SetAlias(const std::string& path, const std::string& alias);

    /// The program starts anew after it died or ended: faults and its claims on the system are gone, disk, registry,
    /// clock and records stay.
    void Restart();

    /// What the program has left open, one line for each kind; "" when nothing.
    [[nodiscard]] std::string Leaks() const;

    /// @throws std::logic_error with Leaks() when there are any, which fails the test.
    void ExpectNoLeaks() const;

 private:
    void PutHold(const std::string& path, const Hold& hold);
    [[nodiscard]] NodePtr Existing(const std::string& path, InMemoryDisk::Follow follow) const;
    NodePtr MakeFile(const std::string& path);
    NodePtr MakeFolder(const PathParts& parts);

    Machine machine_;
};

}  // namespace marlok::test
