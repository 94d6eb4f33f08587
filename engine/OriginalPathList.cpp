#include "engine/OriginalPathList.h"

#include <algorithm>

#include "fileops/FolderFunctions.h"
#include "fileops/txtFunctions.h"

namespace marlok {

namespace {

/// Up to so many items, seeking each of them is quicker than preparing for many.
constexpr std::size_t fewItems = 4;

/// Items sought at once by what they have in common: each begins with the same `lead` characters before a mark that few
/// places of the text bear (a drive root's ":\", the two "\" of a network path). Only those places are looked at.
class MarkedItems {
 public:
    /// `mark` stands at `offset` bytes in every item.
    MarkedItems(std::string_view mark, std::size_t offset) : mark_(mark), offset_(offset) {}

    void Add(std::string_view item, std::size_t index) { items_.push_back({item, index, none, false}); }

    /// Marks in `occurs` the items that occur in `text`.
    void Seek(std::string_view text, std::vector<bool>& occurs) {
        Prepare();
        for (std::size_t at = text.find(mark_); at != std::string_view::npos; at = text.find(mark_, at + 1)) {
            if (at >= offset_) {
                MatchAt(text.substr(at - offset_), occurs);
            }
        }
    }

 private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    struct Item {
        std::string_view text;
        std::size_t index;
        std::size_t shorter;  ///< the longest other item that this one begins with
        bool seen;
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

    void MatchAt(std::string_view place, std::vector<bool>& occurs) {
        const auto behind = std::ranges::upper_bound(items_, place, {}, &Item::text);
        std::size_t i = behind == items_.begin() ? none : static_cast<std::size_t>(behind - items_.begin()) - 1;
        // The items that the place begins with are all on the chain of its predecessor.
        for (; i != none && !items_[i].seen; i = items_[i].shorter) {
            if (place.starts_with(items_[i].text)) {
                items_[i].seen = true;
                occurs[items_[i].index] = true;
            }
        }
    }

    std::string_view mark_;
    std::size_t offset_;
    std::vector<Item> items_;
};

std::vector<bool> Occurring(std::string_view text, const std::vector<std::string>& items) {
    std::vector<bool> occurs(items.size(), false);
    MarkedItems onDrives(":\\", 1);
    MarkedItems onNetwork("\\\\", 0);
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (items.size() > fewItems && HasDriveRoot(items[i])) {
            onDrives.Add(items[i], i);
        } else if (items.size() > fewItems && IsNetworkPath(items[i])) {
            onNetwork.Add(items[i], i);
        } else {
            occurs[i] = text.find(items[i]) != std::string_view::npos;
        }
    }
    onDrives.Seek(text, occurs);
    onNetwork.Seek(text, occurs);
    return occurs;
}

}  // namespace

std::vector<std::string_view> NotOccurring(std::string_view text, const std::vector<std::string>& items) {
    const std::vector<bool> occurs = Occurring(text, items);
    std::vector<std::string_view> missing;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (!occurs[i] && !items[i].empty()) {
            missing.push_back(items[i]);
        }
    }
    return missing;
}

SystemError AddToOriginalList(Program& program, const std::string& listPath,
                              const std::vector<std::string>& originals) {
    Machine& machine = program.machine;
    DirectoryEntry entry;
    const SystemError looked = machine.files.GetEntry(listPath, entry);
    const bool exists = looked == error::success;
    if (!exists && looked != error::fileNotFound && looked != error::pathNotFound) {
        return looked;  // a list that cannot be seen may be there all the same
    }
    std::string bytes;
    if (exists) {
        const SystemError code = ReadWholeFile(machine.files, listPath, bytes);
        if (code != error::success) {
            return code;
        }
    } else if (!CreateNestedFolders(machine.files, machine.process, FolderOf(listPath))) {
        return error::pathNotFound;
    }
    std::string list = DecodeText(machine.system, std::move(bytes));
    std::string added;
    for (const std::string_view line : NotOccurring(list, originals)) {
        added.append(line).append("\r\n");
    }
    if (exists && added.empty()) {
        return error::success;
    }
    // A list that was cut short, or written by hand, may lack its last line's end.
    if (!list.empty() && list.back() != '\n') {
        list += "\r\n";
    }
    return SaveWholeFile(machine.files, listPath, list + added);
}

}  // namespace marlok
