#include "paths/Location.h"

#include <algorithm>
#include <vector>

#include "paths/Names.h"
#include "paths/Path.h"
#include "paths/Roots.h"
#include "paths/WorkingFiles.h"
#include "text/Text.h"

namespace marlok {

namespace {

bool IsOwnFile(std::string_view name) {
    return programfile::IsProgramFile(name) || workingfile::IsWorkingFile(name);
}

/// What a source is called below the location that it is saved in.
std::string_view RelativePathOf(std::string_view source) {
    const PathRoot root = RootOf(source);
    if (root.kind != PathRoot::Kind::drive) {
        return text::Trim(source, "\\");
    }
    source.remove_prefix(root.length);
    return source.starts_with('\\') ? source.substr(1) : source;
}

}  // namespace

Location::Location(std::string_view path) : path_(WithoutBackslash(path)), name_(PathAfterRoot(path_)) {}

std::string Location::OriginalList(const ProgramFolder& folder) const {
    return folder.PathOf(name_ + ".txt");
}

std::string Location::Below(std::string_view relative) const {
    return Join(path_, relative);
}

std::string Location::SavedPathOf(std::string_view source) const {
    return Below(RelativePathOf(source));
}

std::string Location::RelativeNameOf(std::string_view saved) const {
    const std::string start = Below("");
    return saved.starts_with(start) ? std::string(saved.substr(start.size())) : "";
}

std::string Location::WhyRefused() const {
    if (!HasDriveRoot(path_) && !IsNetworkPath(path_)) {
        return "a backup location must be a full path with its drive";
    }
    if (!IsPlainRelativePath(name_)) {
        return "a backup location must be a plain path";
    }
    const std::vector<std::string_view> components = Components(name_);
    if (std::ranges::any_of(components, IsDeviceName)) {
        return "the name belongs to a device";
    }
    if (components.empty()) {
        return "";
    }
    const std::string_view first = WithoutTrailingDots(components.front());
    const bool clashes =
        IsOwnFile(first) || LooksLikeAlias(first) || (components.size() == 1 && IsOwnFile(std::string(first) + ".txt"));
    return clashes ? "the name is needed for a file of the program" : "";
}

}  // namespace marlok
