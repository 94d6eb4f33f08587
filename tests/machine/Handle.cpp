#include <utility>

#include "tests/machine/InMemoryDisk.h"

namespace marlok::test {

Handle::Handle(NodePtr node, Use use)
    : node_(std::move(node)), id_(node_->users.Add(use)), writes_((use.access & access::write) != 0) {}

Handle::Handle(Handle&& other) noexcept
    : node_(std::exchange(other.node_, nullptr)), id_(other.id_), writes_(other.writes_) {}

Handle& Handle::operator=(Handle&& other) noexcept {
    if (this != &other) {
        Close();
        node_ = std::exchange(other.node_, nullptr);
        id_ = other.id_;
        writes_ = other.writes_;
    }
    return *this;
}

void Handle::Close() {
    if (node_ == nullptr) {
        return;
    }
    const NodePtr node = std::exchange(node_, nullptr);
    node->users.Remove(id_);
    if (writes_ && !node->users.AnyUse(access::write)) {
        node->listed.reset();
    }
}

}  // namespace marlok::test
