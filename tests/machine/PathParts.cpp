#include "tests/machine/PathParts.h"

#include <algorithm>
#include <cctype>

#include "text/Text.h"

namespace marlok::test {
namespace {

constexpr std::size_t longestName = 255;    // UTF-16 units, as on NTFS
constexpr std::size_t longestPath = 32767;  // UTF-16 units, the kernel's own bound

constexpr std::string_view verbatimPrefix = R"(\\?\)";
constexpr std::string_view verbatimNetworkPrefix = R"(\\?\UNC\)";

bool HasDrive(std::string_view path) {
    return path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0])) != 0;
}

PathParts Failed(SystemError code) {
    PathParts parts;
    parts.error = code;
    return parts;
}

bool IsForbidden(char character, bool wildcards) {
    if (character == '*' || character == '?') {
        return !wildcards;
    }
    return static_cast<unsigned char>(character) < 32 ||
           std::string_view("<>\"|:").find(character) != std::string::npos;
}

SystemError CheckNames(const PathParts& parts, PathRules rules) {
    for (std::size_t i = 0; i < parts.names.size(); ++i) {
        const std::string& name = parts.names[i];
        const bool wildcards = rules.wildcards && i + 1 == parts.names.size();
        if (std::any_of(name.begin(), name.end(), [&](char c) { return IsForbidden(c, wildcards); })) {
            return error::invalidName;
        }
        // A unit takes one byte at least, so that only long names need the conversion.
        if (name.size() > longestName && text::ToUtf16(name).size() > longestName) {
            return error::invalidName;
        }
    }
    return error::success;
}

/// Appends the components of `rest` to `parts`, resolving "." and "..".
void AppendNames(PathParts& parts, std::string_view rest, PathRules rules) {
    const std::vector<std::string_view> pieces = text::Split(rest, "\\");
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const std::string_view piece = pieces[i];
        if (piece == "..") {
            if (!parts.names.empty()) {
                parts.names.pop_back();
            }
            continue;
        }
        // "*." stands for names without extension; its dot is no part of a name to be trimmed.
        const bool pattern = rules.wildcards && i + 1 == pieces.size() && piece.find('*') != std::string::npos;
        const std::size_t end = rules.trimNames && !pattern ? piece.find_last_not_of(". ") : piece.size() - 1;
        if (piece.empty() || piece == "." || end == std::string::npos) {
            continue;
        }
        parts.names.emplace_back(piece.substr(0, end + 1));
    }
    parts.trailingSeparator = !pieces.empty() && pieces.back().empty() && !rest.empty();
}

/// "\\server\share\..." without its two leading separators.
PathParts ParseNetwork(std::string_view rest, PathRules rules) {
    const std::size_t server = rest.find('\\');
    if (server == std::string::npos || server == 0 || server + 1 == rest.size()) {
        return Failed(error::badNetworkPath);
    }
    const std::size_t share = std::min(rest.find('\\', server + 1), rest.size());
    PathParts parts;
    parts.root = "\\\\" + std::string(rest.substr(0, share));
    AppendNames(parts, rest.substr(std::min(share + 1, rest.size())), rules);
    return parts;
}

/// "X:..." with what stands behind the colon.
PathParts ParseDrive(const std::string& path, const std::string& currentFolder, PathRules rules) {
    PathParts parts;
    const std::string_view rest = std::string_view(path).substr(2);
    const bool absolute = !rest.empty() && rest[0] == '\\';
    if (!absolute && !currentFolder.empty() && text::EqualIgnoringCase(currentFolder.substr(0, 2), path.substr(0, 2))) {
        parts = ParsePath(currentFolder, "", {});
    }
    parts.root = path.substr(0, 2);
    AppendNames(parts, absolute ? rest.substr(1) : rest, rules);
    return parts;
}

PathParts ParseVerbatim(const std::string& path, PathRules rules) {
    rules.trimNames = false;
    if (path.compare(0, verbatimNetworkPrefix.size(), verbatimNetworkPrefix) == 0) {
        return ParseNetwork(std::string_view(path).substr(verbatimNetworkPrefix.size()), rules);
    }
    const std::string rest = path.substr(verbatimPrefix.size());
    return HasDrive(rest) ? ParseDrive(rest, "", rules) : Failed(error::invalidName);
}

PathParts ParseOrdinary(std::string path, const std::string& currentFolder, PathRules rules) {
    std::replace(path.begin(), path.end(), '/', '\\');
    if (path.size() >= 2 && path[0] == '\\' && path[1] == '\\') {
        return ParseNetwork(std::string_view(path).substr(2), rules);
    }
    if (HasDrive(path)) {
        return ParseDrive(path, currentFolder, rules);
    }
    PathParts parts = ParsePath(currentFolder, "", {});
    if (path[0] == '\\') {
        parts.names.clear();
        path.erase(0, 1);
    }
    AppendNames(parts, path, rules);
    return parts;
}

}  // namespace

std::string PathParts::Text() const {
    std::string path = root;
    for (const std::string& name : names) {
        path += "\\" + name;
    }
    return names.empty() ? path + "\\" : path;
}

PathParts ParsePath(const std::string& path, const std::string& currentFolder, PathRules rules) {
    if (path.empty()) {
        return Failed(error::pathNotFound);
    }
    if (path.find('\0') != std::string::npos) {
        return Failed(error::invalidName);
    }
    if (path.size() > longestPath && text::ToUtf16(path).size() > longestPath) {
        return Failed(error::nameTooLong);
    }
    const bool verbatim = path.compare(0, verbatimPrefix.size(), verbatimPrefix) == 0;
    PathParts parts = verbatim ? ParseVerbatim(path, rules) : ParseOrdinary(path, currentFolder, rules);
    const SystemError code = parts.error != error::success ? parts.error : CheckNames(parts, rules);
    return code == error::success ? parts : Failed(code);
}

bool IsPlainPath(std::string_view path) {
    const bool drive = HasDrive(path) && path.size() > 2 && path[2] == '\\';
    const bool network = path.size() > 2 && path.substr(0, 2) == "\\\\" && path[2] != '\\' && path[2] != '?';
    if ((!drive && !network) || path.find('/') != std::string::npos) {
        return false;
    }
    path.remove_prefix(drive ? 3 : 2);
    if (!path.empty() && path.back() == '\\') {
        path.remove_suffix(1);
    }
    const std::vector<std::string_view> names = text::Split(path, "\\");
    return path.empty() || std::none_of(names.begin(), names.end(), [](std::string_view name) {
               return name.empty() || name == "." || name == "..";
           });
}

std::u16string NameKey(std::string_view name, UpcaseTable upcase) {
    std::u16string key = text::ToUtf16(name);
    std::transform(key.begin(), key.end(), key.begin(), upcase);
    return key;
}

}  // namespace marlok::test
