#include "fileops/Presence.h"

#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

class PresenceTest : public testing::Test {
 protected:
    PresenceTest() {
        machine.AddDrive('E');
        machine.Seed({{R"(E:\Save\Data\a.doc)", "a"}, {R"(E:\Save\Empty\)"}});
    }

    void TearDown() override { EXPECT_EQ(machine.Leaks(), ""); }

    Presence Of(const std::string& path) { return PresenceLookup(machine.files).Of(path); }

    InMemoryMachine machine;
};

TEST_F(PresenceTest, WhatIsThereIsThereInAnyLetterCase) {
    EXPECT_EQ(Of(R"(E:\Save\Data\a.doc)"), Presence::there);
    EXPECT_EQ(Of(R"(e:\SAVE\data\A.DOC)"), Presence::there);
    EXPECT_EQ(Of(R"(E:\Save\Data\)"), Presence::there);
    EXPECT_EQ(Of("E:\\"), Presence::there);
    machine.SetAlias(R"(E:\Save\Data\a.doc)", "A~1.DOC");
    EXPECT_EQ(Of(R"(E:\Save\Data\a~1.doc)"), Presence::there);
}

TEST_F(PresenceTest, WhatIsNotInAFolderThatCanBeListedIsGone) {
    EXPECT_EQ(Of(R"(E:\Save\Data\b.doc)"), Presence::gone);
    EXPECT_EQ(Of(R"(E:\Save\Missing\Deep\b.doc)"), Presence::gone);
    EXPECT_EQ(Of(R"(E:\Save\Empty\x)"), Presence::gone);
    EXPECT_EQ(Of(R"(E:\Nowhere)"), Presence::gone);
    machine.AddDrive('F');
    EXPECT_EQ(Of(R"(F:\a.doc)"), Presence::gone) << "the root of an empty drive";
}

TEST_F(PresenceTest, NothingIsKnownWhereTheLookUpFails) {
    EXPECT_EQ(Of("N:\\"), Presence::unknown);
    EXPECT_EQ(Of(R"(N:\Save\Data\a.doc)"), Presence::unknown) << "a drive that is not there";
    machine.SetDriveFailure("E:", error::notReady);
    EXPECT_EQ(Of(R"(E:\Save\Data\b.doc)"), Presence::unknown);
    machine.SetDriveFailure("E:", error::success);
    machine.Deny(R"(E:\Save\Data)");
    EXPECT_EQ(Of(R"(E:\Save\Data\b.doc)"), Presence::unknown);
    machine.Deny(R"(E:\Save\Data)", false);
    EXPECT_EQ(Of(R"(E:\Save\Data\a.doc\x)"), Presence::unknown) << "a file in the place of a folder";
    machine.MakeLink(R"(E:\Save\away)", R"(N:\Real)");
    EXPECT_EQ(Of(R"(E:\Save\away\b.doc)"), Presence::unknown) << "a link to nowhere";
    EXPECT_EQ(Of(R"(E:\Save\away)"), Presence::there);
}

TEST_F(PresenceTest, AListingThatBreaksOffTellsNothing) {
    machine.faults.FailWhen(
        [](const Step& step) { return step.operation == "FindNext" ? error::ioDevice : error::success; });
    EXPECT_EQ(Of(R"(E:\Save\Data\b.doc)"), Presence::unknown);
}

TEST_F(PresenceTest, AFolderIsListedOnceForAllItsFiles) {
    PresenceLookup lookup(machine.files);
    machine.faults.Reset();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(lookup.Of(R"(E:\Save\Data\)" + std::to_string(i)), Presence::gone);
    }
    EXPECT_EQ(machine.faults.Count("FindFirst"), 1U);
    EXPECT_EQ(machine.faults.Count("GetEntry"), 0U);
}

TEST_F(PresenceTest, AFolderThatCanBeListedIsReachable) {
    EXPECT_EQ(WhyUnreachable(machine.files, R"(E:\Save)"), error::success);
    EXPECT_EQ(WhyUnreachable(machine.files, "E:\\"), error::success);
    EXPECT_EQ(WhyUnreachable(machine.files, R"(E:\Nowhere)"), error::fileNotFound);
    EXPECT_EQ(WhyUnreachable(machine.files, R"(N:\Save)"), error::pathNotFound);
    machine.MakeLink(R"(E:\away)", R"(N:\Real)");
    EXPECT_NE(WhyUnreachable(machine.files, R"(E:\away)"), error::success);
    EXPECT_NE(WhyUnreachable(machine.files, R"(E:\Save\Data\a.doc)"), error::success) << "a file is no folder";
}

}  // namespace
}  // namespace marlok::test
