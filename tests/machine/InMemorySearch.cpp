#include "tests/machine/InMemorySearch.h"

#include <algorithm>
#include <utility>

#include "tests/machine/NamePattern.h"

namespace marlok::test {
namespace {

bool Matches(const Node& node, const std::string& pattern) {
    const UpcaseTable upcase = node.volume->options.upcase;
    return MatchesPattern(node.name, pattern, upcase) ||
           (!node.alternateName.empty() && MatchesPattern(node.alternateName, pattern, upcase));
}

}  // namespace

InMemorySearch::InMemorySearch(FaultPlan& faults, int& openSearches, std::string pattern, bool tellsReparseTags)
    : faults_(faults), openSearches_(openSearches), path_(std::move(pattern)), tellsReparseTags_(tellsReparseTags) {
    ++openSearches_;
}

InMemorySearch::~InMemorySearch() {
    --openSearches_;
}

void InMemorySearch::Collect(Handle folder, const std::string& pattern) {
    folder_ = std::move(folder);
    const Node& node = *folder_.Get();
    if (pattern.find_first_of("*?") != std::string::npos) {
        AddAll(node, pattern);
    } else if (NodePtr found = node.Find(pattern)) {
        nodes_.push_back(std::move(found));
    }
}

void InMemorySearch::AddAll(const Node& folder, const std::string& pattern) {
    AddDots(folder, pattern);
    for (const auto& [key, node] : folder.children) {
        if (Matches(*node, pattern)) {
            nodes_.push_back(node);
        }
    }
    if (folder.volume->ListsInCreationOrder()) {
        std::sort(nodes_.begin(), nodes_.end(),
                  [](const NodePtr& a, const NodePtr& b) { return a->sequence < b->sequence; });
    }
}

/// The root of a drive has no dots; that of a network share is some folder of the server's.
void InMemorySearch::AddDots(const Node& folder, const std::string& pattern) {
    if (folder.parent == nullptr && !folder.volume->IsShare()) {
        return;
    }
    const Node* above = folder.parent != nullptr ? folder.parent : &folder;
    for (const auto& [name, node] : {std::pair<const char*, const Node*>{".", &folder}, {"..", above}}) {
        if (MatchesPattern(name, pattern)) {
            dots_.push_back(node->Entry());
            dots_.back().name = name;
            dots_.back().alternateName.clear();
        }
    }
}

SystemError InMemorySearch::Next(DirectoryEntry& entry) {
    const SystemError code = faults_.Enter("FindNext", path_, false);
    if (code != error::success) {
        return code;
    }
    return Fetch(entry) ? error::success : error::noMoreFiles;
}

bool InMemorySearch::Fetch(DirectoryEntry& entry) {
    if (next_ >= dots_.size() + nodes_.size()) {
        return false;
    }
    entry = next_ < dots_.size() ? dots_[next_] : nodes_[next_ - dots_.size()]->ListedEntry();
    entry.reparseTag = tellsReparseTags_ ? entry.reparseTag : 0;
    ++next_;
    return true;
}

}  // namespace marlok::test
