#include "fileops/FolderScan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "forms/Form.h"
#include "forms/Windows.h"
#include "platform/RuntimeError.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FolderScanTest : public testing::Test {
 protected:
    FolderScanTest() { machine.AddDrive('D'); }

    void TearDown() override { machine.ExpectNoLeaks(); }

    /// Scans `root` and returns the list.
    std::vector<std::string> Scan(const std::string& root) {
        tree.Clear();
        list.Clear();
        node = &tree.Add(nullptr, root + "Dir", root);
        AddChildFolders(scan, tree, *node, &list);
        return list.Items();
    }

    InMemoryMachine machine;
    forms::Windows windows{machine.desktop, machine.clock, nullptr};
    forms::Form form{windows, "Form", ""};
    forms::TreeView tree{form, "TreeView1"};
    forms::ListBox list{form, "List1"};
    FolderScan scan{machine.files, true, true, "", {}, nullptr};
    forms::Node* node = nullptr;
};

TEST_F(FolderScanTest, FoldersComeInPreOrderWithoutTrailingBackslash) {
    machine.Seed({{R"(C:\Data\a\x\)"}, {R"(C:\Data\a\y\)"}, {R"(C:\Data\b\)"}, {R"(C:\Data\file.txt)", "f"}});
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\a)", R"(C:\Data\a\x)", R"(C:\Data\a\y)", R"(C:\Data\b)"));
}

TEST_F(FolderScanTest, NodesBearKeyAndNameAndThePathFollowsFromThem) {
    machine.Seed({{R"(C:\Data\Projects\Deep\)"}});
    Scan(R"(C:\Data)");
    const forms::Node* projects = tree.Find(R"(C:\Data\ProjectsDir)");
    ASSERT_NE(projects, nullptr);
    EXPECT_EQ(projects->Text(), "Projects");
    EXPECT_EQ(projects->Parent(), node);
    EXPECT_EQ(projects->FullPath(), R"(C:\Data\Projects)");
    ASSERT_NE(tree.Find(R"(C:\Data\Projects\DeepDir)"), nullptr);
}

TEST_F(FolderScanTest, ATrailingBackslashOfTheRootGivesTheSameKeys) {
    machine.Seed({{R"(C:\Data\Projects\)"}});
    Scan(R"(C:\Data\)");
    EXPECT_NE(tree.Find(R"(C:\Data\ProjectsDir)"), nullptr);
    EXPECT_THAT(list.Items(), ElementsAre(R"(C:\Data\Projects)"));
}

TEST_F(FolderScanTest, AFolderWithoutSubfoldersIsStillSortedAndExpanded) {
    machine.Seed({{R"(C:\Data\Empty\)"}});
    Scan(R"(C:\Data\Empty)");
    EXPECT_THAT(node->Children(), IsEmpty());
    EXPECT_TRUE(node->Sorted);
    EXPECT_TRUE(node->Expanded);
    scan.gNodesSorted = false;
    scan.gNodesExpanded = false;
    Scan(R"(C:\Data\Empty)");
    EXPECT_FALSE(node->Sorted);
    EXPECT_FALSE(node->Expanded);
}

TEST_F(FolderScanTest, EveryScannedNodeIsSortedAndExpanded) {
    machine.Seed({{R"(C:\Data\a\b\)"}});
    Scan(R"(C:\Data)");
    for (const char* key : {R"(C:\DataDir)", R"(C:\Data\aDir)", R"(C:\Data\a\bDir)"}) {
        ASSERT_NE(tree.Find(key), nullptr) << key;
        EXPECT_TRUE(tree.Find(key)->Sorted && tree.Find(key)->Expanded) << key;
    }
}

TEST_F(FolderScanTest, HiddenAndSystemFoldersAreIncluded) {
    machine.Seed({{R"(C:\Data\h\)", "", {}, attribute::hidden}, {R"(C:\Data\s\)", "", {}, attribute::system}});
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\h)", R"(C:\Data\s)"));
}

TEST_F(FolderScanTest, TheFirstEntryOfADriveIsPassedOverAndTold) {
    machine.Seed({{R"(D:\first\)"}, {R"(D:\second\)"}, {R"(D:\third\)"}});
    EXPECT_THAT(Scan("D:\\"), ElementsAre(R"(D:\second)", R"(D:\third)"));
    EXPECT_THAT(scan.missed, ElementsAre(R"(D:\first)"));
}

TEST_F(FolderScanTest, AFileAsTheFirstEntryOfADriveHidesNoFolder) {
    machine.Seed({{R"(D:\a.txt)", "a"}, {R"(D:\second\)"}});
    EXPECT_THAT(Scan("D:\\"), ElementsAre(R"(D:\second)"));
    EXPECT_THAT(scan.missed, IsEmpty());
}

TEST_F(FolderScanTest, WhatCannotBeListedHasNoChildren) {
    EXPECT_THAT(Scan(R"(C:\Missing)"), IsEmpty());
    machine.Seed({{R"(C:\Data\Closed\Inner\)"}, {R"(C:\Data\Open\)"}});
    machine.Deny(R"(C:\Data\Closed)");
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Closed)", R"(C:\Data\Open)"));
}

TEST_F(FolderScanTest, WithoutAListOnlyNodesAreMade) {
    machine.Seed({{R"(C:\Data\a\)"}});
    forms::Node& root = tree.Add(nullptr, R"(C:\DataDir)", R"(C:\Data)");
    AddChildFolders(scan, tree, root, nullptr);
    EXPECT_EQ(tree.NodeCount(), 2);
}

TEST_F(FolderScanTest, AFolderReachedTwiceIsAnError) {
    machine.Seed({{R"(C:\Data\a\)"}});
    tree.Add(nullptr, R"(C:\Data\aDir)", "taken");
    try {
        Scan(R"(C:\Data)");
        tree.Add(nullptr, R"(C:\Data\aDir)", "taken again");
        FAIL() << "a key must be unique";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::keyNotUnique);
    }
}

TEST_F(FolderScanTest, ALinkToAFolderAboveItIsLeftOut) {
    machine.Seed({{R"(C:\Data\Sub\Deep\)"}});
    machine.MakeLink(R"(C:\Data\Sub\Deep\up)", R"(C:\Data)");
    machine.MakeLink(R"(C:\Data\Sub\self)", R"(C:\Data\Sub)");
    machine.MakeLink(R"(C:\Data\root)", "C:\\");
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Sub)", R"(C:\Data\Sub\Deep)"));
}

TEST_F(FolderScanTest, LinksDoNotLeadRoundAndRound) {
    machine.Seed({{R"(C:\A\)"}, {R"(C:\B\)"}});
    machine.MakeLink(R"(C:\A\toB)", R"(C:\B)");
    machine.MakeLink(R"(C:\B\toA)", R"(C:\A)");
    EXPECT_THAT(Scan(R"(C:\A)"), ElementsAre(R"(C:\A\toB)"));
}

TEST_F(FolderScanTest, ALinkElsewhereIsDescended) {
    machine.Seed({{R"(D:\Far\Inner\)"}, {R"(C:\Data\)"}});
    machine.MakeLink(R"(C:\Data\far)", R"(D:\Far)");
    machine.MakeLink(R"(C:\Data\soft)", R"(D:\Far)", reparse::symbolicLink);
    EXPECT_THAT(Scan(R"(C:\Data)"),
                ElementsAre(R"(C:\Data\far)", R"(C:\Data\far\Inner)", R"(C:\Data\soft)", R"(C:\Data\soft\Inner)"));
}

TEST_F(FolderScanTest, APlaceholderFolderIsAFolderLikeAnyOther) {
    machine.Seed({{R"(C:\Data\Cloud\Inner\)"}});
    machine.MakePlaceholder(R"(C:\Data\Cloud)");
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Cloud)", R"(C:\Data\Cloud\Inner)"));
}

TEST_F(FolderScanTest, TheLocationBeingWrittenIsLeftOut) {
    machine.Seed({{R"(C:\Data\Backup\Data\)"}, {R"(C:\Data\Backup2\)"}, {R"(C:\Data\x\)"}});
    scan.locationFinalPath = R"(C:\data\BACKUP)";
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Backup2)", R"(C:\Data\x)"));
    machine.MakeLink(R"(C:\Data\x\in)", R"(C:\Data\Backup\Data)");
    EXPECT_THAT(Scan(R"(C:\Data)"), ElementsAre(R"(C:\Data\Backup2)", R"(C:\Data\x)"));
}

TEST_F(FolderScanTest, ThirtyTwoThousandFoldersFitAndOneMoreIsAnOverflow) {
    machine.faults.KeepJournal(false);
    for (int i = 0; i < 32'767; ++i) {
        machine.Seed({R"(C:\Data\f)" + std::to_string(i) + "\\"});
    }
    EXPECT_EQ(Scan(R"(C:\Data)").size(), 32'767U);
    machine.Seed({{R"(C:\Data\onemore\)"}});
    try {
        Scan(R"(C:\Data)");
        FAIL() << "no overflow";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::overflow);
    }
}

TEST_F(FolderScanTest, ATreePastFourThousandCharactersIsScannedToItsEnd) {
    std::string path = R"(C:\Data)";
    int folders = 0;
    while (path.size() < 4200) {
        path += R"(\abcdefg)";
        ++folders;
    }
    machine.Seed({path + "\\"});
    const std::vector<std::string> found = Scan(R"(C:\Data)");
    EXPECT_EQ(found.size(), static_cast<std::size_t>(folders));
    EXPECT_EQ(found.back(), path);
}

TEST_F(FolderScanTest, FilesAreHandedOnForTheCopying) {
    machine.Seed({{R"(C:\Data\a.txt)", "one"}, {R"(C:\Data\Sub\b.txt)", "two2"}});
    ListedFolders listed;
    scan.listed = &listed;
    Scan(R"(C:\Data)");
    const auto top = listed.Take(R"(C:\Data\)");
    ASSERT_TRUE(top.has_value());
    ASSERT_EQ(top->size(), 1U);
    EXPECT_EQ(top->front().name, "a.txt");
    EXPECT_EQ(top->front().size, 3U);
    const auto sub = listed.Take(R"(C:\Data\Sub\)");
    ASSERT_TRUE(sub.has_value());
    EXPECT_EQ(sub->front().name, "b.txt");
    EXPECT_FALSE(listed.Take(R"(C:\Data\)").has_value()) << "handed over once";
}

TEST(TrimAtNullTest, TheTextUpToItsFirstZero) {
    EXPECT_EQ(TrimAtNull("plain"), "plain");
    EXPECT_EQ(TrimAtNull(std::string_view("ab\0cd", 5)), "ab");
    EXPECT_EQ(TrimAtNull(std::string_view("\0", 1)), "");
    EXPECT_EQ(TrimAtNull(""), "");
}

TEST(IsAtOrBelowTest, WholeComponentsInAnyLetterCase) {
    EXPECT_TRUE(IsAtOrBelow(R"(C:\Data)", R"(c:\data\)"));
    EXPECT_TRUE(IsAtOrBelow(R"(C:\Data\x)", "C:\\"));
    EXPECT_FALSE(IsAtOrBelow(R"(C:\Data2)", R"(C:\Data)"));
    EXPECT_FALSE(IsAtOrBelow(R"(C:\)", R"(C:\Data)"));
}

}  // namespace
}  // namespace marlok::test
