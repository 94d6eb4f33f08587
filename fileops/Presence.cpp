#include "fileops/Presence.h"

#include <utility>

#include "fileops/FolderListing.h"
#include "fileops/txtFunctions.h"
#include "paths/Path.h"
#include "text/Text.h"

namespace marlok {

namespace {

SystemError EntryOf(FileSystem& files, const std::string& path) {
    DirectoryEntry entry;
    return files.GetEntry(path, entry);
}

}  // namespace

Presence PresenceLookup::Of(const std::string& path) {
    const std::string wanted = WithoutBackslash(path);
    std::string next = wanted;  // the name that the folder above it is asked for
    for (std::string folder = FolderAbove(next); !folder.empty(); folder = FolderAbove(next)) {
        const Listing& listing = ListingOf(folder);
        if (listing.code == error::success) {
            if (!listing.names.contains(text::Fold(std::string_view(next).substr(next.rfind('\\') + 1)))) {
                return Presence::gone;
            }
            // A folder that is there although listing it said that it is not: a link to nowhere, or gone since.
            return next == wanted ? Presence::there : Presence::unknown;
        }
        if (!IsMissing(listing.code)) {
            return Presence::unknown;
        }
        next = std::move(folder);
    }
    return next == wanted && EntryOf(files_, wanted) == error::success ? Presence::there : Presence::unknown;
}

const PresenceLookup::Listing& PresenceLookup::ListingOf(const std::string& folder) {
    const auto [found, added] = listings_.try_emplace(text::Fold(folder));
    Listing& listing = found->second;
    if (added) {
        listing.code = ListFolder(files_, folder, [&listing](DirectoryEntry& entry) {
            listing.names.insert(text::Fold(entry.name));
            if (!entry.alternateName.empty()) {
                listing.names.insert(text::Fold(entry.alternateName));
            }
            return true;
        });
        if (listing.code == error::success && listing.names.empty()) {
            listing.code = EntryOf(files_, folder);  // nothing in it, or nothing there
        }
    }
    return listing;
}

SystemError WhyUnreachable(FileSystem& files, const std::string& folder) {
    const SystemError looked = EntryOf(files, folder);
    return looked != error::success ? looked : ListFolder(files, folder, [](DirectoryEntry&) { return false; });
}

}  // namespace marlok
