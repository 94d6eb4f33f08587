#include "fileops/PatientFiles.h"

#include <gtest/gtest.h>

#include "tests/machine/ForwardingFiles.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

class PatientFilesTest : public testing::Test {
 protected:
    PatientFilesTest() {
        memory.AddDrive('E');
        memory.Seed({{R"(C:\a)", "a"}, {R"(E:\old)", "old"}, {R"(E:\Folder\)"}});
    }

    /// So many calls of `operation` fail with `code`, or all of them.
    void Hold(const std::string& operation, SystemError code, int times) {
        memory.faults.FailWhen([this, operation, code, times](const Step& step) {
            return step.operation == operation && calls++ < times ? code : error::success;
        });
    }

    /// Milliseconds that pass in the call.
    std::uint64_t Took(const std::function<SystemError()>& call, SystemError expected) {
        const std::uint64_t begin = memory.clock.TickCount();
        EXPECT_EQ(call(), expected);
        return memory.clock.TickCount() - begin;
    }

    InMemoryMachine memory;
    PatientFiles files{memory.files, memory.clock};
    int calls = 0;
    static constexpr int always = 1'000'000;
};

TEST_F(PatientFilesTest, AMomentaryHoldIsWaitedOut) {
    Hold("Copy", error::sharingViolation, 3);
    EXPECT_EQ(Took([&] { return files.Copy(R"(C:\a)", R"(E:\a)", 0, {}); }, error::success), 80U);
    EXPECT_EQ(memory.Read(R"(E:\a)"), "a");
    calls = 0;
    Hold("Move", error::accessDenied, 1);
    EXPECT_EQ(Took([&] { return files.Move(R"(E:\a)", R"(E:\old)", moveflag::replace); }, error::success), 10U);
    calls = 0;
    Hold("Delete", error::lockViolation, 2);
    EXPECT_EQ(Took([&] { return files.Delete(R"(E:\old)"); }, error::success), 30U);
    calls = 0;
    Hold("RemoveFolder", error::sharingViolation, 1);
    EXPECT_EQ(Took([&] { return files.RemoveFolder(R"(E:\Folder)"); }, error::success), 10U);
}

TEST_F(PatientFilesTest, AHoldThatLastsIsReportedAfterLessThanASecond) {
    Hold("Copy", error::sharingViolation, always);
    EXPECT_EQ(Took([&] { return files.Copy(R"(C:\a)", R"(E:\a)", 0, {}); }, error::sharingViolation), 780U);
    EXPECT_EQ(calls, 7);
}

TEST_F(PatientFilesTest, WhatIsNoMomentaryHoldFailsAtOnce) {
    Hold("Copy", error::diskFull, always);
    EXPECT_EQ(Took([&] { return files.Copy(R"(C:\a)", R"(E:\a)", 0, {}); }, error::diskFull), 0U);
    Hold("Copy", error::accessDenied, always);
    EXPECT_EQ(Took([&] { return files.Copy(R"(C:\a)", R"(E:\a)", 0, {}); }, error::accessDenied), 0U);
    memory.faults.Reset();
    memory.Seed({{R"(E:\read-only)", "r", {}, attribute::readOnly}});
    EXPECT_EQ(Took([&] { return files.Delete(R"(E:\read-only)"); }, error::accessDenied), 0U);
    EXPECT_EQ(Took([&] { return files.Delete(R"(E:\none)"); }, error::fileNotFound), 0U);
    memory.Seed({{R"(E:\Folder\full)", "f"}});
    EXPECT_EQ(Took([&] { return files.RemoveFolder(R"(E:\Folder)"); }, error::directoryNotEmpty), 0U);
}

TEST_F(PatientFilesTest, AThousandFilesInUseAreNotAllWaitedFor) {
    Hold("Copy", error::sharingViolation, always);
    const std::uint64_t begin = memory.clock.TickCount();
    for (int file = 0; file < 1000; ++file) {
        EXPECT_EQ(files.Copy(R"(C:\a)", R"(E:\a)", 0, {}), error::sharingViolation);
    }
    EXPECT_LE(memory.clock.TickCount() - begin, 25'000U);
    // Time gives patience back.
    memory.clock.Advance(600'000);
    EXPECT_EQ(Took([&] { return files.Copy(R"(C:\a)", R"(E:\a)", 0, {}); }, error::sharingViolation), 780U);
}

}  // namespace
}  // namespace marlok::test
