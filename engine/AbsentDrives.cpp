#include "engine/AbsentDrives.h"

#include "fileops/Whereabouts.h"
#include "paths/Path.h"
#include "paths/Roots.h"

namespace marlok {

namespace {

/// True for what a drive or a share answers that cannot be reached.
bool SaysUnreachable(SystemError code) {
    return IsAbsent(code) || code == error::networkNameGone || code == error::unexpectedNetworkError;
}

std::string WhatToDo(PathRoot::Kind kind, const std::string& root, SystemError code) {
    if (kind == PathRoot::Kind::network) {
        return WithoutBackslash(root) +
               " cannot be reached. Connect to its network and see that the server runs, then ";
    }
    const std::string drive = "Drive " + root.substr(0, 2);
    return code == error::notReady ? drive + " holds no disk. Insert it, then "
                                   : drive + " is not connected. Connect it, then ";
}

}  // namespace

SystemError AbsentDrives::LookFor(const std::string& root) {
    const auto known = found_.find(root);
    if (known != found_.end()) {
        return known->second;
    }
    DirectoryEntry entry;
    const SystemError code = files_.GetEntry(root, entry);
    found_.emplace(root, code);
    return code;
}

std::string AbsentDrives::Sentence(const std::string& path, SystemError code) {
    const PathRoot root = RootOf(path);
    if (!SaysUnreachable(code) || (root.kind != PathRoot::Kind::drive && root.kind != PathRoot::Kind::network)) {
        return "";
    }
    const std::string top = path.substr(0, root.length);
    const SystemError looked = LookFor(top);
    return looked == error::success
               ? ""
               : WhatToDo(root.kind, top, looked) + again_ + " (error " + std::to_string(code) + ")";
}

}  // namespace marlok
