#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/SavedFolder.h"
#include "engine/SourceMap.h"
#include "platform/FileSystem.h"

namespace marlok {

/// A folder of a source, or the folder of a single file, that is being worked on.
struct FolderWork {
    const ScannedSource& source;
    std::string from;    ///< the folder
    std::string target;  ///< where its files go
    bool contested;      ///< files of other originals go there too
};

/// A file that is to be copied.
struct ChosenFile {
    std::uint64_t size;  ///< bytes
    FileTime time;       ///< last write
    std::string source;
    std::string target;
    bool replaces;           ///< there is a saved copy
    std::uint64_t replaced;  ///< bytes of that; 0 when there is none
};

/// What becomes of the files that are to be copied: see CopyLoop, which chooses them.
class ChosenFiles {
 public:
    virtual ~ChosenFiles() = default;

    /// Reads the folder that saved copies go to, or makes it; an empty one needs no reading.
    [[nodiscard]] virtual SystemError EnterFolder(const std::string& target, SavedFolder& saved) = 0;

    /// The files of one folder that are to be copied, in their order.
    virtual void Take(const FolderWork& work, const std::vector<ChosenFile>& files) = 0;

    /// A file that is not to be copied: it has a saved copy.
    virtual void IsSaved(const std::string& source) = 0;

    /// True when the saved file at this path below the location may be torn.
    [[nodiscard]] virtual bool MayBeTorn(const std::string& target) const = 0;

    /// False when no more files are wanted.
    [[nodiscard]] virtual bool GoesOn() const = 0;
};

}  // namespace marlok
