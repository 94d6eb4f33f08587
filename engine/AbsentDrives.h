#pragma once

#include <map>
#include <string>

#include "platform/FileSystem.h"

namespace marlok {

/// Words for failures whose cause is that a drive, or a network share, is not there as a whole.
class AbsentDrives {
 public:
    /// `again` is what the user is to do once it is there again, as the end of a sentence ("run the backup again").
    /// `files` outlives this object.
    AbsentDrives(FileSystem& files, std::string again) : files_(files), again_(std::move(again)) {}

    /// What to do about `code`, which something at `path` has failed with: a sentence for the user that ends in the
    /// code
    /// ("Drive E: is not connected. Connect it, then run the backup again (error 3)"). "" when the drive is there, or
    /// the code says something else. Every drive is looked for once: a server that is gone keeps its caller waiting.
    [[nodiscard]] std::string Sentence(const std::string& path, SystemError code);

 private:
    [[nodiscard]] SystemError LookFor(const std::string& root);

    FileSystem& files_;
    std::string again_;
    std::map<std::string, SystemError> found_;  ///< what looking for a root has given
};

}  // namespace marlok
