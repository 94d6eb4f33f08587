#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

class FolderLinkContract : public ContractTest {
 protected:
    void SetUp() override {
        ASSERT_EQ(files.CreateFolder(In("Target")), error::success);
        Put(In("Target\\kept.txt"), "kept");
        ASSERT_TRUE(contract->MakeFolderLink(In("Link"), In("Target")));
    }

    void TearDown() override { EXPECT_EQ(Content(In("Target\\kept.txt")), "kept") << "the target was touched"; }
};

TEST_F(FolderLinkContract, TheEntryIsTheLinks) {
    const DirectoryEntry entry = EntryOf(In("Link"));
    EXPECT_TRUE(entry.IsLink());
    EXPECT_TRUE(entry.IsFolder());
    EXPECT_FALSE(EntryOf(In("Target")).IsLink());
}

TEST_F(FolderLinkContract, TheListingTellsTheLink) {
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst(In("Link*"), search, entry), error::success);
    EXPECT_EQ(entry.name, "Link");
    EXPECT_TRUE(entry.IsLink());
}

TEST_F(FolderLinkContract, PathsThroughTheLinkReachTheTarget) {
    EXPECT_EQ(Content(In("Link\\kept.txt")), "kept");
    EXPECT_EQ(NamesWithoutDots(In("Link\\*")), std::set<std::string>{"kept.txt"});
    Put(In("Link\\new.txt"), "new");
    EXPECT_EQ(Content(In("Target\\new.txt")), "new");
}

TEST_F(FolderLinkContract, FinalPathAndIdentityAreTheTargets) {
    std::string throughLink;
    std::string direct;
    ASSERT_EQ(files.FinalPath(In("Link"), throughLink), error::success);
    ASSERT_EQ(files.FinalPath(In("Target"), direct), error::success);
    EXPECT_EQ(throughLink, direct);
    ASSERT_EQ(files.FinalPath(In("Link\\kept.txt"), throughLink), error::success);
    EXPECT_EQ(throughLink, direct + "\\kept.txt");
    FileIdentity identityThroughLink;
    FileIdentity identity;
    ASSERT_EQ(files.Identify(In("Link"), identityThroughLink), error::success);
    ASSERT_EQ(files.Identify(In("Target"), identity), error::success);
    EXPECT_EQ(identityThroughLink, identity);
}

TEST_F(FolderLinkContract, RemoveFolderRefusesTheLink) {
    EXPECT_EQ(files.RemoveFolder(In("Link")), error::notSupported);
    EXPECT_TRUE(EntryOf(In("Link")).IsLink());
}

TEST_F(FolderLinkContract, DeleteRefusesTheLink) {
    EXPECT_EQ(files.Delete(In("Link")), error::accessDenied);
    EXPECT_TRUE(EntryOf(In("Link")).IsLink());
}

TEST_F(FolderLinkContract, RemoveLinkTakesTheLinkAndNothingElse) {
    const bool can = contract->CanRemoveLinks();
    EXPECT_EQ(files.RemoveLink(In("Link")), can ? error::success : error::notSupported);
    EXPECT_EQ(Exists(In("Link")), !can);
    EXPECT_TRUE(Exists(In("Target")));
}

TEST_F(FolderLinkContract, RemoveLinkRefusesWhatIsNoLink) {
    EXPECT_EQ(files.RemoveLink(In("Target")), error::notSupported);
    EXPECT_EQ(files.RemoveLink(In("Target\\kept.txt")), error::notSupported);
    EXPECT_EQ(files.RemoveLink(In("absent")), error::fileNotFound);
    ASSERT_EQ(files.CreateFolder(In("Empty")), error::success);
    EXPECT_EQ(files.RemoveLink(In("Empty")), error::notSupported);
    EXPECT_TRUE(Exists(In("Empty")));
}

TEST_F(FolderLinkContract, DeletingThroughTheLinkIsDeletingInTheTarget) {
    Put(In("Target\\gone.txt"), "gone");
    EXPECT_EQ(files.Delete(In("Link\\gone.txt")), error::success);
    EXPECT_FALSE(Exists(In("Target\\gone.txt")));
}

}  // namespace
}  // namespace marlok::test
