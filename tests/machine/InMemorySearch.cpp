#include "tests/machine/InMemorySearch.h"

#include <algorithm>
#include <utility>

namespace marlok::test {
namespace {

bool Matches(const Node& node, const std::string& pattern) {
    return MatchesPattern(node.name, pattern) ||
           (!node.alternateName.empty() && MatchesPattern(node.alternateName, pattern));
}

}  // namespace

InMemorySearch::InMemorySearch(FaultPlan& faults, int& openSearches, std::string pattern, bool tellsReparseTags)
    : faults_(faults), openSearches_(openSearches), path_(std::move(pattern)), tellsReparseTags_(tellsReparseTags) {
    ++openSearches_;
}

InMemorySearch::~InMemorySearch() {
    --openSearches_;
}

void InMemorySearch::Collect(const NodePtr& folder, const std::string& pattern) {
    if (pattern.find_first_of("*?") == std::string::npos) {
        if (NodePtr node = folder->Find(pattern)) {
            nodes_.push_back(std::move(node));
        }
        return;
    }
    AddDots(*folder, pattern);
    for (const auto& [key, node] : folder->children) {
        if (Matches(*node, pattern)) {
            nodes_.push_back(node);
        }
    }
    if (folder->volume->options.listsInCreationOrder) {
        std::sort(nodes_.begin(), nodes_.end(),
                  [](const NodePtr& a, const NodePtr& b) { return a->sequence < b->sequence; });
    }
}

void InMemorySearch::AddDots(const Node& folder, const std::string& pattern) {
    if (folder.parent == nullptr) {
        return;
    }
    for (const auto& [name, node] : {std::pair<const char*, const Node*>{".", &folder}, {"..", folder.parent}}) {
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
    entry = next_ < dots_.size() ? dots_[next_] : nodes_[next_ - dots_.size()]->Entry();
    entry.reparseTag = tellsReparseTags_ ? entry.reparseTag : 0;
    ++next_;
    return true;
}

}  // namespace marlok::test
