#include "engine/SourceMap.h"

#include <algorithm>

#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

std::string LooseKey(const std::string& path) {
    // Every volume folds the letters of ASCII, and none takes another letter for one of them. What it does with the
    // others is its own affair: any two of them may be the same.
    std::string key;
    for (const char16_t unit : text::ToUtf16(path)) {
        key += unit >= 0x80 ? '?' : static_cast<char>(text::FoldUnit(unit));
    }
    return key;
}

SourceMap::SourceMap(const Location& location, const std::vector<ScannedSource>& sources) {
    for (std::size_t s = 0; s < sources.size(); ++s) {
        const ScannedSource& source = sources[s];
        if (source.isFile) {
            const std::string folder = FolderOf(location.RelativeNameOf(location.SavedPathOf(source.path)));
            places_[LooseKey(folder)].files.push_back(s);
            AddWay(folder);
            continue;
        }
        for (std::size_t f = 0; f < source.scan.folders.size(); ++f) {
            const std::string folder =
                WithoutBackslash(location.RelativeNameOf(location.SavedPathOf(source.scan.folders[f].path)));
            places_[LooseKey(folder)].folders.push_back({s, f});
            AddWay(folder);
        }
    }
}

void SourceMap::AddWay(std::string folder) {
    for (; !folder.empty(); folder = FolderOf(folder)) {
        std::vector<std::string>& spellings = ways_[LooseKey(folder)];
        if (std::ranges::find(spellings, folder) != spellings.end()) {
            return;  // and so are the folders that it lies in
        }
        spellings.push_back(folder);
    }
}

const SourceMap::Place* SourceMap::At(const std::string& folder) const {
    const auto found = places_.find(LooseKey(folder));
    return found == places_.end() ? nullptr : &found->second;
}

bool SourceMap::IsOnTheWay(const std::string& folder) const {
    return ways_.contains(LooseKey(folder));
}

std::vector<std::string> SourceMap::SpellingsAt(const std::string& folder) const {
    const auto found = ways_.find(LooseKey(folder));
    return found == ways_.end() ? std::vector<std::string>() : found->second;
}

}  // namespace marlok
