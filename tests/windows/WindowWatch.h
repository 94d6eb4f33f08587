#pragma once

#include <gtest/gtest.h>

namespace marlok::test {

/// Fails every test that leaves a window of this process on the screen: a box that it did not expect or did not answer,
/// or a form that outlives its test and would be found by the next one.
class WindowWatch : public ::testing::EmptyTestEventListener {
 public:
    void OnTestEnd(const ::testing::TestInfo& test) override;
};

}  // namespace marlok::test
