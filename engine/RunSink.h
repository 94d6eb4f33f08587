#pragma once

#include <cstdint>
#include <string>

#include "fileops/FolderScan.h"
#include "paths/Location.h"
#include "platform/FileSystem.h"

namespace marlok {

/// What a run tells while it goes on, and what it asks. The defaults do nothing and let it go on.
class RunSink {
 public:
    virtual ~RunSink() = default;

    /// What goes on, as a line for the user ("Copying Backups\Daily Files").
    virtual void Status(const std::string& /*text*/) {}

    /// A location is entered: what was told of the one before is over.
    virtual void LocationBegins(const Location& /*location*/) {}

    /// The folders of a source of the location, the source itself first; before the first of its files is copied.
    virtual void FoldersFound(const FolderScan& /*scan*/) {}

    /// The next source, or folder of one, and where it is saved.
    virtual void EntryBegins(const std::string& /*source*/, const std::string& /*target*/) {}

    /// A file is about to be copied.
    virtual void CopyBegins(const std::string& /*source*/, const std::string& /*target*/) {}

    /// How far the copy of the present file is.
    virtual void BytesCopied(const CopyProgressInfo& /*info*/) {}

    virtual void Copied(const std::string& /*source*/, const std::string& /*target*/) {}
    virtual void Unchanged(const std::string& /*source*/) {}
    virtual void Failed(const std::string& /*source*/) {}

    /// Something has been done that takes a while when it is done often: now windows can be painted. Called more often
    /// than that needs.
    virtual void Breathe() {}

    /// False to end the run: before the next location, source or file, and within a file at the next block.
    [[nodiscard]] virtual bool GoOn() { return true; }

    /// What no source has any more in a location that is a whole drive.
    struct WholeDrive {
        std::string location;
        std::uint64_t files = 0;
        std::uint64_t bytes = 0;
    };

    /// Whether all of that may be deleted. Where nobody can be asked, only what earlier runs have saved goes.
    [[nodiscard]] virtual bool MayDeleteAll(const WholeDrive& /*found*/) { return false; }
};

}  // namespace marlok
