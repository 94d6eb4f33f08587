#include "fileops/Whereabouts.h"

#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

namespace {

/// Some drives made by software do not know the question, and have no links either.
bool IsNotProvided(SystemError code) {
    return code == error::invalidFunction || code == error::notSupported;
}

std::string Folded(const std::string& path) {
    return text::Fold(WithoutBackslash(path));
}

}  // namespace

bool IsAbsent(SystemError code) {
    return code == error::fileNotFound || code == error::pathNotFound || code == error::notReady ||
           code == error::badNetworkPath;
}

const Whereabouts::Identity& Whereabouts::Identify(const std::string& path) {
    const auto [found, added] = identities_.try_emplace(path);
    Identity& identity = found->second;
    if (added) {
        const SystemError code = files_.Identify(path, identity.identity);
        if (code == error::success) {
            // Some network and virtual disks number nothing, which tells nobody apart.
            identity.known = identity.identity.NumbersNothing() ? Answer::no : Answer::yes;
        } else {
            identity.known = IsAbsent(code) || IsNotProvided(code) ? Answer::no : Answer::unknown;
        }
    }
    return identity;
}

/// Resolves as far as the path exists. False when the system would not tell.
bool Whereabouts::TryResolve(const std::string& path, std::string& resolved) {
    const std::string plain = WithoutBackslash(path);
    const SystemError code = files_.FinalPath(plain, resolved);
    if (code == error::success) {
        resolved = WithoutBackslash(resolved);
        return true;
    }
    const std::string above = FolderAbove(plain);
    if (above.empty() || !IsAbsent(code)) {
        resolved = plain;
        return IsAbsent(code) || IsNotProvided(code);
    }
    const bool told = TryResolve(above, resolved);
    resolved = Join(resolved, plain.substr(AddBackslash(above).size()));
    return told;
}

void Whereabouts::AddSteps(const std::string& path, Trail& trail) {
    const std::string plain = WithoutBackslash(path);
    for (std::string above = plain; !above.empty(); above = FolderAbove(above)) {
        const std::size_t length = AddBackslash(above).size();
        trail.steps.push_back(
            {Folded(above), length < plain.size() ? plain.substr(length) : std::string(), Identify(above)});
    }
}

const Whereabouts::Trail& Whereabouts::TrailOf(const std::string& path) {
    const auto [found, added] = trails_.try_emplace(path);
    Trail& trail = found->second;
    if (added) {
        trail.told = TryResolve(path, trail.resolved);
        AddSteps(path, trail);
        if (trail.told && trail.resolved != WithoutBackslash(path)) {
            AddSteps(trail.resolved, trail);
        }
    }
    return trail;
}

Whereabouts::Relation Whereabouts::Inside(const std::string& path, const std::string& folder) {
    const Trail& of = TrailOf(path);
    const Trail& in = TrailOf(folder);
    const std::string written = Folded(folder);
    const std::string resolved = Folded(in.resolved);
    const Identity& identity = Identify(WithoutBackslash(folder));
    bool unknown = !of.told || !in.told || identity.known == Answer::unknown;
    for (const Step& step : of.steps) {
        const bool sameText = step.folded == written || (of.told && in.told && step.folded == resolved);
        const bool sameFolder = identity.known == Answer::yes && step.identity.known == Answer::yes &&
                                step.identity.identity == identity.identity;
        if (sameText || sameFolder) {
            return {Answer::yes, step.below};
        }
        unknown = unknown || step.identity.known == Answer::unknown;
    }
    return {unknown ? Answer::unknown : Answer::no, ""};
}

bool Whereabouts::IsInside(const std::string& path, const std::string& folder) {
    return Inside(path, folder).inside == Answer::yes;
}

bool Whereabouts::MayBeInside(const std::string& path, const std::string& folder) {
    return Inside(path, folder).inside != Answer::no;
}

Answer Whereabouts::Same(const std::string& a, const std::string& b) {
    const Relation relation = Inside(a, b);
    return relation.inside == Answer::yes && !relation.below.empty() ? Answer::no : relation.inside;
}

const std::string& Whereabouts::Resolved(const std::string& path) {
    return TrailOf(path).resolved;
}

bool IsInside(FileSystem& files, const std::string& path, const std::string& folder) {
    return Whereabouts(files).IsInside(path, folder);
}

bool MayBeInside(FileSystem& files, const std::string& path, const std::string& folder) {
    return Whereabouts(files).MayBeInside(path, folder);
}

std::string ResolvedPath(FileSystem& files, const std::string& path) {
    return Whereabouts(files).Resolved(path);
}

bool IsSurelyInside(FileSystem& files, const std::string& path, const std::string& folder) {
    std::string finalPath;
    std::string finalFolder;
    return files.FinalPath(WithoutBackslash(path), finalPath) == error::success &&
           files.FinalPath(WithoutBackslash(folder), finalFolder) == error::success &&
           IsAtOrBelow(finalPath, finalFolder);
}

}  // namespace marlok
