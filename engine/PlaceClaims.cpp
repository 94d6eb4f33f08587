#include "engine/PlaceClaims.h"

#include <utility>

#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

namespace {

std::string ShortName(const std::string& longName) {
    return "not saved: its name is the short name of \"" + longName +
           "\" in the backup location; rename one of the two";
}

}  // namespace

std::string SamePlace(const std::string& other) {
    return "not saved: " + other + " is saved in the same place; give one of the two a backup location of its own";
}

std::string PlaceClaims::WhyTaken(const FolderWork& work, const std::string& source, const SavedFolder::Found& saved) {
    const std::string name = FileNameOf(source);
    if (saved.entry.name == name) {
        return "";
    }
    const SavedFolder::Found other = FindOnVolume(files_, Join(work.from, saved.entry.name));
    if (other.code == error::success && other.entry.name == saved.entry.name && !other.entry.IsFolder()) {
        return SamePlace(Join(work.from, saved.entry.name));
    }
    if (!saved.entry.alternateName.empty() && text::EqualIgnoringCase(saved.entry.alternateName, name)) {
        return ShortName(saved.entry.name);
    }
    return "";
}

std::string PlaceClaims::WhyClaimed(const FolderWork& work, const std::string& source, const std::string& target) {
    for (const std::string& key : KeysOf(work, target)) {
        const auto claim = claims_.find(key);
        if (claim != claims_.end() && claim->second != source) {
            return SamePlace(claim->second);
        }
    }
    return "";
}

void PlaceClaims::Claim(const FolderWork& work, const std::string& source, const std::string& target) {
    for (std::string& key : KeysOf(work, target)) {
        claims_.try_emplace(std::move(key), source);
    }
}

/// What stands for a place that others may come for: its name, and what is there already, whatever it is called.
std::vector<std::string> PlaceClaims::KeysOf(const FolderWork& work, const std::string& target) {
    std::vector<std::string> keys;
    if (work.contested) {
        keys.push_back(text::Fold(target));
        FileIdentity identity;
        if (files_.Identify(target, identity) == error::success && !identity.NumbersNothing()) {
            keys.push_back(std::to_string(identity.volume) + "/" + std::to_string(identity.high) + "/" +
                           std::to_string(identity.index));
        }
    }
    return keys;
}

}  // namespace marlok
