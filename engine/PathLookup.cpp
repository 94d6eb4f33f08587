#include "engine/PathLookup.h"

#include <algorithm>
#include <functional>
#include <map>

namespace marlok {

namespace {

/// Up to so many items, seeking each of them is quicker than preparing for many.
constexpr std::size_t fewItems = 4;

constexpr std::size_t none = static_cast<std::size_t>(-1);

/// Called for an item (its index) that occurs at a place; false when no further place of it is wanted.
using Found = std::function<bool(std::size_t item, std::size_t place)>;

/// Items that begin with the same characters. Only the places of the text that bear these are looked at.
class ItemGroup {
 public:
    explicit ItemGroup(std::string_view lead) : lead_(lead) {}

    void Add(std::string_view item, std::size_t index) { items_.push_back({item, index, none, true}); }

    void Seek(std::string_view text, const Found& found) {
        Prepare();
        for (std::size_t at = text.find(lead_); at != std::string_view::npos; at = text.find(lead_, at + 1)) {
            MatchAt(text.substr(at), at, found);
        }
    }

 private:
    struct Item {
        std::string_view text;
        std::size_t index;
        std::size_t shorter;  ///< the longest other item that this one begins with
        bool wanted;
    };

    /// Sorts, so that what a place of the text begins with is found by bisection; and links each item to the longest
    /// one that it begins with.
    void Prepare() {
        std::ranges::sort(items_, {}, &Item::text);
        std::vector<std::size_t> open;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            while (!open.empty() && !items_[i].text.starts_with(items_[open.back()].text)) {
                open.pop_back();
            }
            items_[i].shorter = open.empty() ? none : open.back();
            open.push_back(i);
        }
    }

    void MatchAt(std::string_view place, std::size_t position, const Found& found) {
        const auto behind = std::ranges::upper_bound(items_, place, {}, &Item::text);
        std::size_t i = behind == items_.begin() ? none : static_cast<std::size_t>(behind - items_.begin()) - 1;
        // The items that the place begins with are all on the chain of its predecessor. One that is not wanted any more
        // has been found, and so have those it begins with.
        for (; i != none && items_[i].wanted; i = items_[i].shorter) {
            if (place.starts_with(items_[i].text)) {
                items_[i].wanted = found(items_[i].index, position);
            }
        }
    }

    std::string_view lead_;
    std::vector<Item> items_;
};

/// What an item's group is called: its first component with the "\" behind it ("Data\", "C:\"); for a network path both
/// "\" before the server. "" for an item without any "\", which is sought by itself.
std::string_view LeadOf(std::string_view item) {
    const std::size_t from = item.starts_with("\\\\") ? 1 : 0;
    const std::size_t backslash = item.find('\\', from);
    return backslash == std::string_view::npos ? std::string_view() : item.substr(0, backslash + 1);
}

void SeekOne(std::string_view text, std::string_view item, std::size_t index, const Found& found) {
    if (item.empty()) {
        static_cast<void>(found(index, 0));
        return;
    }
    bool wanted = true;
    for (std::size_t at = text.find(item); wanted && at != std::string_view::npos; at = text.find(item, at + 1)) {
        wanted = found(index, at);
    }
}

/// Tells every place of every item, in ascending order for each, until no more of it are wanted.
void Seek(std::string_view text, const std::vector<std::string>& items, const Found& found) {
    std::map<std::string_view, ItemGroup> groups;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string_view lead = LeadOf(items[i]);
        if (items.size() <= fewItems || lead.empty()) {
            SeekOne(text, items[i], i, found);
        } else {
            groups.try_emplace(lead, lead).first->second.Add(items[i], i);
        }
    }
    for (auto& [lead, group] : groups) {
        group.Seek(text, found);
    }
}

}  // namespace

std::vector<std::size_t> FirstOccurrences(std::string_view text, const std::vector<std::string>& items) {
    std::vector<std::size_t> places(items.size(), notFound);
    Seek(text, items, [&](std::size_t item, std::size_t place) {
        places[item] = place;
        return false;
    });
    return places;
}

std::vector<std::vector<std::size_t>> LinesContaining(std::string_view text, const std::vector<std::string>& items) {
    std::vector<std::size_t> starts;  // of the lines
    for (std::size_t at = 0; at != std::string_view::npos;) {
        starts.push_back(at);
        const std::size_t end = text.find("\r\n", at);
        at = end == std::string_view::npos ? end : end + 2;
    }
    std::vector<std::vector<std::size_t>> lines(items.size());
    Seek(text, items, [&](std::size_t item, std::size_t place) {
        const auto behind = std::ranges::upper_bound(starts, place);
        const auto line = static_cast<std::size_t>(behind - starts.begin()) - 1;
        if (lines[item].empty() || lines[item].back() != line) {
            lines[item].push_back(line);
        }
        return true;
    });
    return lines;
}

}  // namespace marlok
