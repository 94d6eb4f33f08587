#include "paths/Path.h"

#include <algorithm>

#include "paths/Roots.h"
#include "text/Text.h"

namespace marlok {

std::string AddBackslash(std::string_view path) {
    std::string result(path);
    if (result.empty() || result.back() != '\\') {
        result += '\\';
    }
    return result;
}

std::string WithoutBackslash(std::string_view path) {
    while (path.size() > 1 && path.back() == '\\' && !(path.size() == 3 && path[1] == ':')) {
        path.remove_suffix(1);
    }
    return std::string(path);
}

std::string Join(std::string_view folder, std::string_view name) {
    return AddBackslash(folder).append(name);
}

std::string_view PathFindNextComponent(std::string_view path) {
    const std::size_t slash = path.find('\\');
    if (slash == std::string_view::npos) {
        return {};
    }
    const bool doubled = slash + 1 < path.size() && path[slash + 1] == '\\';
    return path.substr(slash + (doubled ? 2 : 1));
}

std::string_view PathFindFileName(std::string_view path) {
    std::size_t last = 0;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        const bool separator = path[i] == '\\' || path[i] == '/' || path[i] == ':';
        if (separator && path[i + 1] != '\\' && path[i + 1] != '/') {
            last = i + 1;
        }
    }
    return path.substr(last);
}

std::string FileNameOf(std::string_view path) {
    return std::string(PathFindFileName(path));
}

std::string PathAfterRoot(std::string_view path) {
    return std::string(PathFindNextComponent(path));
}

std::string FolderOf(std::string_view path) {
    const std::size_t slash = path.rfind('\\');
    if (slash == std::string_view::npos) {
        return "";
    }
    return WithoutBackslash(path.substr(0, slash + 1));
}

std::string FolderAbove(std::string_view path) {
    const std::string folder = WithoutBackslash(path);
    std::string above = IsRoot(folder) ? "" : FolderOf(folder);
    return above.size() < folder.size() ? above : "";  // "\" alone is no root: whoever goes up must arrive somewhere
}

std::vector<std::string> FoldersOnTheWay(const std::string& path) {
    const PathRoot root = RootOf(path);
    std::vector<std::string> way;
    if (root.length > 0) {
        way.push_back(WithoutBackslash(std::string_view(path).substr(0, root.length)));
    }
    for (std::size_t start = root.length; start < path.size();) {
        const std::size_t end = std::min(path.find('\\', start), path.size());
        if (end > start) {
            way.push_back(path.substr(0, end));
        }
        start = end + 1;
    }
    return way;
}

std::vector<std::string_view> Components(std::string_view path) {
    std::vector<std::string_view> components = text::Split(path, "\\");
    std::erase(components, std::string_view());
    return components;
}

std::string NextToken(std::string& text, std::string_view delimiter) {
    const std::size_t found = delimiter.empty() ? std::string::npos : text.find(delimiter);
    if (found == std::string::npos) {
        return "";
    }
    std::string token = text.substr(0, found + delimiter.size());
    text.erase(0, token.size());
    return token;
}

bool HasThreeLetterExtension(std::string_view path) {
    const std::string_view tail = text::Right(path, 4);
    return text::CharacterCount(tail) == 4 && tail.front() == '.';
}

bool IsAtOrBelow(std::string_view path, std::string_view folder) {
    const std::string inner = text::Fold(AddBackslash(path));
    return inner.starts_with(text::Fold(AddBackslash(folder)));
}

}  // namespace marlok
