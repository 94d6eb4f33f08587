#include "fileops/Whereabouts.h"

#include "paths/Path.h"

namespace marlok {

namespace {

/// Some drives made by software do not know the question, and have no links either.
bool IsNotProvided(SystemError code) {
    return code == error::invalidFunction || code == error::notSupported;
}

Answer SameFolder(FileSystem& files, const std::string& a, const std::string& b) {
    FileIdentity first;
    FileIdentity second;
    for (const SystemError code : {files.Identify(a, first), files.Identify(b, second)}) {
        if (code != error::success) {
            return IsAbsent(code) || IsNotProvided(code) ? Answer::no : Answer::unknown;
        }
    }
    // Some network and virtual disks number nothing; an index of 0 tells nobody apart.
    return first == second && !first.NumbersNothing() ? Answer::yes : Answer::no;
}

/// Whether `folder` is one of the folders on the way up from `path`, told by what the folders are, not how they are
/// called: a substituted drive or a share on this machine hides nothing.
Answer IsOnTheWayUp(FileSystem& files, const std::string& path, const std::string& folder) {
    Answer answer = Answer::no;
    for (std::string above = WithoutBackslash(path); !above.empty(); above = FolderAbove(above)) {
        const Answer same = SameFolder(files, above, folder);
        if (same == Answer::yes) {
            return same;
        }
        answer = same == Answer::unknown ? same : answer;
    }
    return answer;
}

/// Resolves as far as the path exists. False when the system would not tell.
bool TryResolve(FileSystem& files, const std::string& path, std::string& resolved) {
    const std::string plain = WithoutBackslash(path);
    const SystemError code = files.FinalPath(plain, resolved);
    if (code == error::success) {
        resolved = WithoutBackslash(resolved);
        return true;
    }
    const std::string above = FolderAbove(plain);
    if (above.empty() || !IsAbsent(code)) {
        resolved = plain;
        return IsAbsent(code) || IsNotProvided(code);
    }
    const bool told = TryResolve(files, above, resolved);
    resolved = AddBackslash(resolved) + plain.substr(AddBackslash(above).size());
    return told;
}

}  // namespace

bool IsAbsent(SystemError code) {
    return code == error::fileNotFound || code == error::pathNotFound || code == error::notReady ||
           code == error::badNetworkPath;
}

Answer WhetherInside(FileSystem& files, const std::string& path, const std::string& folder) {
    std::string resolvedPath;
    std::string resolvedFolder;
    const bool told = TryResolve(files, path, resolvedPath) && TryResolve(files, folder, resolvedFolder);
    if (IsAtOrBelow(path, folder) || (told && IsAtOrBelow(resolvedPath, resolvedFolder))) {
        return Answer::yes;
    }
    const Answer byText = IsOnTheWayUp(files, path, folder);
    const Answer byTarget = told ? IsOnTheWayUp(files, resolvedPath, folder) : Answer::unknown;
    if (byText == Answer::yes || byTarget == Answer::yes) {
        return Answer::yes;
    }
    return byText == Answer::unknown || byTarget == Answer::unknown ? Answer::unknown : Answer::no;
}

bool MayBeInside(FileSystem& files, const std::string& path, const std::string& folder) {
    return WhetherInside(files, path, folder) != Answer::no;
}

std::string ResolvedPath(FileSystem& files, const std::string& path) {
    std::string resolved;
    // What cannot be resolved stays as it is written: the best that is known.
    static_cast<void>(TryResolve(files, path, resolved));
    return resolved;
}

bool IsInside(FileSystem& files, const std::string& path, const std::string& folder) {
    return WhetherInside(files, path, folder) == Answer::yes;
}

bool IsSurelyInside(FileSystem& files, const std::string& path, const std::string& folder) {
    std::string resolvedPath;
    std::string resolvedFolder;
    return TryResolve(files, path, resolvedPath) && TryResolve(files, folder, resolvedFolder) &&
           IsAtOrBelow(resolvedPath, resolvedFolder);
}

}  // namespace marlok
