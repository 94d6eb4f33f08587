#include "forms/TreeView.h"

#include <utility>

#include "platform/RuntimeError.h"

namespace marlok::forms {

Node::Node(Node* parent, std::string key, std::string text)
    : parent_(parent), key_(std::move(key)), text_(std::move(text)) {}

std::string Node::FullPath() const {
    std::vector<const Node*> line;
    for (const Node* node = this; node != nullptr; node = node->parent_) {
        line.push_back(node);
    }
    std::string path = line.back()->text_;
    for (auto node = line.rbegin() + 1; node != line.rend(); ++node) {
        path += '\\';
        path += (*node)->text_;
    }
    return path;
}

Node& TreeView::Add(Node* parent, const std::string& key, const std::string& text) {
    const auto [place, added] = byKey_.try_emplace(key, nullptr);
    if (!added) {
        throw RuntimeError(runtimeerror::keyNotUnique, "Key is not unique in collection");
    }
    Node& node = nodes_.emplace_back(parent, key, text);
    place->second = &node;
    if (parent != nullptr) {
        parent->children_.push_back(&node);
    }
    Changed(Aspect::items);
    return node;
}

std::vector<Node*> TreeView::Roots() {
    std::vector<Node*> roots;
    for (Node& node : nodes_) {
        if (node.Parent() == nullptr) {
            roots.push_back(&node);
        }
    }
    return roots;
}

void TreeView::Clear() {
    byKey_.clear();
    nodes_.clear();
    Changed(Aspect::items);
}

Node* TreeView::Find(const std::string& key) const {
    const auto found = byKey_.find(key);
    return found == byKey_.end() ? nullptr : found->second;
}

}  // namespace marlok::forms
