#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/FileSystem.h"

namespace marlok {

/// An answer that matters when it is yes, and when it cannot be had.
enum class Answer { no, yes, unknown };

/// Where things lie, whatever path they are named by: links, 8.3 aliases, substituted drives and shares of this machine
/// are seen through, by resolved path and by what the file system says that two folders are the same.
///
/// Answers are kept: one object serves a run, during which folders are expected to stay where they are. `files`
/// outlives it.
class Whereabouts {
 public:
    explicit Whereabouts(FileSystem& files) : files_(files) {}

    struct Relation {
        Answer inside = Answer::no;
        std::string below;  ///< when inside: the way from the folder down to the path, "" for the folder itself
    };

    /// Whether `path` is `folder` or lies below it.
    [[nodiscard]] Relation Inside(const std::string& path, const std::string& folder);

    /// True when that is known; true when it cannot be ruled out.
    [[nodiscard]] bool IsInside(const std::string& path, const std::string& folder);
    [[nodiscard]] bool MayBeInside(const std::string& path, const std::string& folder);

    /// Whether both are one and the same.
    [[nodiscard]] Answer Same(const std::string& a, const std::string& b);

    /// `path` with links, aliases and substituted drives resolved as far as it exists, without "\" at its end unless it
    /// is a drive's root. What cannot be resolved stays as it is written.
    [[nodiscard]] const std::string& Resolved(const std::string& path);

 private:
    struct Identity {
        Answer known = Answer::no;  ///< no: nothing is there, or the file system numbers nothing
        FileIdentity identity;
    };

    /// One folder on the way up from a path.
    struct Step {
        std::string folded;  ///< its path, for comparison
        std::string below;   ///< the way from it down to the path
        Identity identity;
    };

    struct Trail {
        std::string resolved;
        bool told = false;        ///< `resolved` is what the system says
        std::vector<Step> steps;  ///< from the path up to its root, as it is written and as it is resolved
    };

    [[nodiscard]] const Trail& TrailOf(const std::string& path);
    [[nodiscard]] bool TryResolve(const std::string& path, std::string& resolved);
    [[nodiscard]] const Identity& Identify(const std::string& path);
    void AddSteps(const std::string& path, Trail& trail);

    FileSystem& files_;
    std::unordered_map<std::string, Trail> trails_;
    std::unordered_map<std::string, Identity> identities_;
};

/// The same questions, asked once.
[[nodiscard]] bool IsInside(FileSystem& files, const std::string& path, const std::string& folder);
[[nodiscard]] bool MayBeInside(FileSystem& files, const std::string& path, const std::string& folder);
[[nodiscard]] std::string ResolvedPath(FileSystem& files, const std::string& path);

/// True when `path` lies in `folder` for certain: where links, aliases and substituted drives lead decides, not how the
/// paths are written. False when the system does not tell.
[[nodiscard]] bool IsSurelyInside(FileSystem& files, const std::string& path, const std::string& folder);

/// True for the codes that say that something is not there now: the file, its folder, the disk or the server.
[[nodiscard]] bool IsAbsent(SystemError code);

}  // namespace marlok
