#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

using NameSet = std::set<std::string>;

/// Links to files.
class FileLinkContract : public ContractTest {
 protected:
    void SetUp() override {
        Put(In("target"), "12345");
        Put(In("other"), "other");
        ASSERT_TRUE(contract->MakeFileLink(In("link"), In("target")));
        ASSERT_TRUE(contract->MakeFileLink(In("dangling"), In("made")));
    }
};

TEST_F(FileLinkContract, TheyAreListedAsLinks) {
    // Wine shows what they lead to, and those that lead nowhere not at all.
    EXPECT_TRUE(Is(NamesWithoutDots(In("*")), NameSet{"dangling", "link", "other", "target"},
                   NameSet{"link", "other", "target"}));
    std::unique_ptr<FolderSearch> search;
    DirectoryEntry entry;
    ASSERT_EQ(files.FindFirst(In("link"), search, entry), error::success);
    EXPECT_TRUE(Is(entry.IsLink(), true, false));
    EXPECT_FALSE(entry.IsFolder());
    EXPECT_TRUE(Is<std::uint64_t>(entry.size, 0, 5));
    EXPECT_TRUE(Is(EntryOf(In("link")).IsLink(), true, false));
}

TEST_F(FileLinkContract, ACopyOfOneIsAPlainFile) {
    LetTimePass(60);
    ASSERT_EQ(files.Copy(In("link"), In("copy"), copyflag::none, {}), error::success);
    EXPECT_EQ(Content(In("copy")), "12345");
    EXPECT_FALSE(EntryOf(In("copy")).IsLink());
    EXPECT_EQ(EntryOf(In("copy")).lastWriteTime, EntryOf(In("target")).lastWriteTime);
}

TEST_F(FileLinkContract, ACopyOntoOneGoesToItsTarget) {
    ASSERT_EQ(files.Copy(In("other"), In("link"), copyflag::none, {}), error::success);
    EXPECT_EQ(Content(In("target")), "other");
    EXPECT_EQ(files.Copy(In("other"), In("link"), copyflag::failIfExists, {}), error::fileExists);
}

TEST_F(FileLinkContract, ACopyOntoOneThatLeadsNowhereMakesItsTarget) {
    EXPECT_TRUE(
        Is(files.Copy(In("other"), In("dangling"), copyflag::failIfExists, {}), error::success, error::fileExists));
    EXPECT_TRUE(Is(Exists(In("made")), true, false));
}

TEST_F(FileLinkContract, WritingThroughOneThatLeadsNowhereMakesItsTarget) {
    Put(In("dangling"), "written");
    EXPECT_EQ(Content(In("made")), "written");
    EXPECT_EQ(Content(In("dangling")), "written");
}

TEST_F(FileLinkContract, AFolderIsNotMadeInItsPlace) {
    EXPECT_TRUE(Is(files.CreateFolder(In("dangling")), error::alreadyExists, error::alreadyExists));
}

TEST_F(FileLinkContract, ALinkMovesAndItsTargetStays) {
    ASSERT_EQ(files.Move(In("link"), In("moved"), moveflag::none), error::success);
    EXPECT_EQ(Content(In("moved")), "12345");
    // Wine opens what a link leads to wherever Windows opens the link: it moves and deletes the target.
    EXPECT_TRUE(Is(Exists(In("target")), true, false));
    EXPECT_TRUE(Is(EntryOf(In("moved")).IsLink(), true, false));
}

TEST_F(FileLinkContract, NothingMovesOntoALinkUnasked) {
    EXPECT_EQ(files.Move(In("other"), In("link"), moveflag::none), error::alreadyExists);
    EXPECT_EQ(Content(In("other")), "other");
}

TEST_F(FileLinkContract, AttributesAreTheLinks) {
    ASSERT_EQ(files.SetAttributes(In("link"), attribute::hidden), error::success);
    EXPECT_TRUE(Is((EntryOf(In("target")).attributes & attribute::hidden) != 0, false, true));
    ASSERT_EQ(files.SetAttributes(In("link"), attribute::normal), error::success);
}

TEST_F(FileLinkContract, DeletingTakesTheLinkAlone) {
    EXPECT_EQ(files.Delete(In("link")), error::success);
    EXPECT_TRUE(Is(Exists(In("target")), true, false));
    EXPECT_FALSE(Exists(In("link")));
}

TEST_F(FileLinkContract, TheFinalPathOfALinkToALinkIsTheFile) {
    ASSERT_TRUE(contract->MakeFileLink(In("second"), In("link")));
    std::string direct;
    std::string through;
    ASSERT_EQ(files.FinalPath(In("target"), direct), error::success);
    ASSERT_EQ(files.FinalPath(In("second"), through), error::success);
    EXPECT_EQ(direct, through);
}

}  // namespace
}  // namespace marlok::test
