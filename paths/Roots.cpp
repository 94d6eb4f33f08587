#include "paths/Roots.h"

#include <algorithm>

namespace marlok {

namespace {

bool IsDriveLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// Length of the component that starts at `from`, with the "\" behind it.
std::size_t PastComponent(std::string_view path, std::size_t from) {
    const std::size_t end = path.find('\\', std::min(from, path.size()));
    return end == std::string_view::npos ? path.size() : end + 1;
}

}  // namespace

PathRoot RootOf(std::string_view path) {
    if (path.size() >= 3 && IsDriveLetter(path[0]) && path[1] == ':' && path[2] == '\\') {
        return {PathRoot::Kind::drive, 3};
    }
    if (!path.starts_with("\\\\")) {
        return {};
    }
    if (path.starts_with("\\\\?\\") || path.starts_with("\\\\.\\")) {
        return {PathRoot::Kind::device, 4};
    }
    return {PathRoot::Kind::network, PastComponent(path, PastComponent(path, 2))};
}

bool HasDriveRoot(std::string_view path) {
    return RootOf(path).kind == PathRoot::Kind::drive;
}

bool IsNetworkPath(std::string_view path) {
    return RootOf(path).kind == PathRoot::Kind::network;
}

bool IsRoot(std::string_view path) {
    const PathRoot root = RootOf(path);
    return root.kind != PathRoot::Kind::none && root.length == path.size();
}

}  // namespace marlok
