#pragma once

#include <string>
#include <vector>

#include "platform/Browser.h"

namespace marlok::test {

/// A browser that does what the test tells it, and records what it was asked.
class InMemoryBrowser : public Browser {
 public:
    bool Start() override {
        calls.emplace_back("start");
        return exists;
    }
    bool Navigate(const std::string& address) override {
        calls.push_back("navigate " + address);
        return answers;
    }
    bool ReadyState(int& state) override {
        calls.emplace_back("ask");
        state = pollsUntilComplete > 0 ? 1 : 4;
        --pollsUntilComplete;
        return answers;
    }
    bool Show() override {
        calls.emplace_back("show");
        return answers;
    }
    void Release() override { calls.emplace_back("release"); }

    bool exists = true;
    bool answers = true;
    int pollsUntilComplete = 0;
    std::vector<std::string> calls;
};

}  // namespace marlok::test
