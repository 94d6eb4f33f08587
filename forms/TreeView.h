#pragma once

#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "forms/Control.h"

namespace marlok::forms {

/// One node of a tree. Nodes live as long as the tree is not cleared.
class Node {
 public:
    Node(Node* parent, std::string key, std::string text);

    [[nodiscard]] const std::string& Key() const { return key_; }
    [[nodiscard]] const std::string& Text() const { return text_; }
    [[nodiscard]] Node* Parent() const { return parent_; }
    [[nodiscard]] const std::vector<Node*>& Children() const { return children_; }

    /// The texts from the root down to this node, joined by "\".
    [[nodiscard]] std::string FullPath() const;

    bool Sorted = false;
    bool Expanded = false;

 private:
    friend class TreeView;
    Node* parent_;
    std::string key_;
    std::string text_;
    std::vector<Node*> children_;
};

/// A tree of nodes with unique keys.
class TreeView : public Control {
 public:
    using Control::Control;

    /// Adds a root node (`parent` null) or a child of `parent`, behind its siblings.
    /// @throws RuntimeError 35602 when a node has that key already.
    Node& Add(Node* parent, const std::string& key, const std::string& text);

    void Clear();

    /// The nodes that have no parent, in the order in which they were added.
    [[nodiscard]] std::vector<Node*> Roots();

    [[nodiscard]] int NodeCount() const { return static_cast<int>(nodes_.size()); }

    /// The node with that key; null when there is none.
    [[nodiscard]] Node* Find(const std::string& key) const;

 private:
    std::deque<Node> nodes_;  ///< a deque: adding moves no node
    std::unordered_map<std::string, Node*> byKey_;
};

}  // namespace marlok::forms
