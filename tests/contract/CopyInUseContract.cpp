#include "tests/contract/ContractTest.h"

namespace marlok::test {
namespace {

/// Copying from and onto what other programs have open.
class CopyInUseContract : public ContractTest {
 protected:
    void SetUp() override {
        Put(In("from"), "new");
        Put(In("to"), "old");
    }

    SystemError Copy() { return files.Copy(In("from"), In("to"), copyflag::none, {}); }

    /// What the copy comes to while another program has `name` open like that.
    SystemError CopyWhile(const std::string& name, Use use) {
        const auto held = contract->Hold(In(name), use);
        EXPECT_NE(held, nullptr);
        return Copy();
    }
};

TEST_F(CopyInUseContract, ASourceIsReadAlongWithWritersThatLetOthersRead) {
    EXPECT_EQ(CopyWhile("from", {access::read, access::write}), error::sharingViolation);
    EXPECT_EQ(Content(In("to")), "old");
    EXPECT_EQ(CopyWhile("from", {access::read | access::write, access::read}), error::success);
    EXPECT_EQ(Content(In("to")), "new");
}

TEST_F(CopyInUseContract, ASourceIsReadAlongWithWhoIsAboutToDeleteIt) {
    EXPECT_EQ(CopyWhile("from", {access::remove, access::read}), error::success);
    EXPECT_EQ(Content(In("to")), "new");
}

TEST_F(CopyInUseContract, ATargetIsWrittenAlongWithWhoLetsOthersWrite) {
    EXPECT_EQ(CopyWhile("to", {access::write, access::read}), error::sharingViolation);
    EXPECT_EQ(Content(In("to")), "old");
    EXPECT_EQ(CopyWhile("to", {access::read | access::write, access::write}), error::success);
    EXPECT_EQ(Content(In("to")), "new");
}

TEST_F(CopyInUseContract, ATargetIsNotWrittenWhileSomebodyIsAboutToDeleteIt) {
    EXPECT_EQ(CopyWhile("to", {access::remove, access::all}), error::sharingViolation);
    EXPECT_EQ(Content(In("to")), "old");
}

TEST_F(CopyInUseContract, AMissingSourceIsNoticedBeforeALockedTarget) {
    const auto held = contract->Hold(In("to"), {access::read, access::none});
    EXPECT_EQ(files.Copy(In("absent"), In("to"), copyflag::none, {}), error::fileNotFound);
}

TEST_F(CopyInUseContract, AMappedTargetIsNotCut) {
    const auto held = contract->Map(In("to"));
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(Copy(), error::mappedFile);
    EXPECT_EQ(Content(In("to")), "old");
}

TEST_F(CopyInUseContract, ACopyThatIsCalledOffStaysWithWhoForbidsDeleting) {
    const auto held = contract->Hold(In("to"), {access::read, access::read | access::write});
    ASSERT_NE(held, nullptr);
    const auto stop = [](const CopyProgressInfo&) { return CopyAnswer::cancel; };
    EXPECT_EQ(files.Copy(In("from"), In("to"), copyflag::none, stop), error::requestAborted);
    EXPECT_TRUE(Exists(In("to")));
}

TEST_F(CopyInUseContract, ACopyThatIsCalledOffGoesWithWhoSharesDeleting) {
    auto held = contract->Hold(In("to"), {access::read, access::all});
    ASSERT_NE(held, nullptr);
    const auto stop = [](const CopyProgressInfo&) { return CopyAnswer::cancel; };
    EXPECT_EQ(files.Copy(In("from"), In("to"), copyflag::none, stop), error::requestAborted);
    held.reset();
    EXPECT_FALSE(Exists(In("to")));
}

}  // namespace
}  // namespace marlok::test
