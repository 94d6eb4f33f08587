#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "tests/contract/ContractMachine.h"

namespace marlok::test {

/// A test of what every machine must hold to, with a folder of its own and the calls that most tests need.
class ContractTest : public ::testing::Test {
 protected:
    /// The path of something in the scratch folder.
    [[nodiscard]] std::string In(const std::string& name) const { return scratch + "\\" + name; }

    /// Writes a file anew.
    void Put(const std::string& path, const std::string& content);

    /// The content of a file; the test fails when it cannot be read.
    [[nodiscard]] std::string Content(const std::string& path);

    /// The names that a listing of `pattern` returns; empty when it fails.
    [[nodiscard]] std::set<std::string> Names(const std::string& pattern);

    /// As Names, without "." and "..".
    [[nodiscard]] std::set<std::string> NamesWithoutDots(const std::string& pattern);

    [[nodiscard]] bool Exists(const std::string& path);

    /// The entry of an existing path; the test fails when there is none.
    [[nodiscard]] DirectoryEntry EntryOf(const std::string& path);

    /// What writing to a read-only file comes to on this machine.
    [[nodiscard]] SystemError ReadOnlyResult() {
        return contract->KeepsReadOnlyFiles() ? error::accessDenied : error::success;
    }

    /// Compares what a call came to with what it comes to on Windows, where Wine is known to do something else. Under
    /// Wine it must do that: once Wine does as Windows does the comparison fails, and the exception is to be taken out.
    template <class T>
    [[nodiscard]] ::testing::AssertionResult Is(const T& actual, const T& onWindows, const T& onWine) {
        if (actual == (contract->IsWine() ? onWine : onWindows)) {
            return ::testing::AssertionSuccess();
        }
        const char* why = contract->IsWine() && actual == onWindows
                              ? "Wine does as Windows does now: no exception needed"
                          : contract->IsWine() ? "another value is known of Wine"
                                               : "Windows has another value";
        return ::testing::AssertionFailure()
               << ::testing::PrintToString(actual) << " (on Windows " << ::testing::PrintToString(onWindows)
               << ", under Wine " << ::testing::PrintToString(onWine) << "): " << why;
    }

    /// Lets the machine's time go on for at least that long.
    void LetTimePass(std::uint32_t milliseconds);

    std::unique_ptr<ContractMachine> contract = MakeContractMachine();
    Machine& machine = contract->machine();
    FileSystem& files = machine.files;
    std::string scratch = contract->ScratchFolder();
};

}  // namespace marlok::test
