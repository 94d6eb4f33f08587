#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "platform/FileSystem.h"

namespace marlok {

/// Whether something is where it is looked for.
enum class Presence {
    there,
    gone,     ///< looked for and not found: a folder on the way to it was listed, and the next name was not in it
    unknown,  ///< the look-up failed: the drive is away, access is denied, a listing broke off
};

/// Looks up many paths by listing each folder once. What it has listed it does not look at again: make one for each
/// piece of work, after the deletions that it is to notice.
class PresenceLookup {
 public:
    /// `files` outlives this object.
    explicit PresenceLookup(FileSystem& files) : files_(files) {}

    /// `path` is a full path. A root is never `gone`.
    [[nodiscard]] Presence Of(const std::string& path);

 private:
    struct Listing {
        SystemError code = error::success;
        std::unordered_set<std::string> names;  ///< folded; 8.3 aliases too
    };

    const Listing& ListingOf(const std::string& folder);

    FileSystem& files_;
    std::unordered_map<std::string, Listing> listings_;
};

/// Why nothing can be said of what lies in `folder` now: it is missing, its drive is away, it cannot be listed;
/// `error::success` when it can be listed.
[[nodiscard]] SystemError WhyUnreachable(FileSystem& files, const std::string& folder);

}  // namespace marlok
