#include "ui/run/Callback.h"

#include <gtest/gtest.h>

#include "fileops/FileOperations.h"
#include "forms/Form.h"
#include "forms/Windows.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

class CallbackTest : public testing::Test {
 protected:
    CallbackTest() { machine.AddDrive('E'); }
    void TearDown() override { machine.ExpectNoLeaks(); }

    /// A copy that the bar follows.
    SystemError Copy(const std::string& source, const std::string& destination) {
        return CopyWithProgress(machine.files, source, destination, copyflag::none,
                                [this](const CopyProgressInfo& info) {
                                    CopyProgress(bar, info);
                                    return CopyAnswer::goOn;
                                });
    }

    InMemoryMachine machine;
    forms::Windows windows{machine.desktop, machine.clock, nullptr};
    forms::Form form{windows, "Form5", ""};
    forms::ProgressBar bar{form, "ProgressBar1"};
};

TEST_F(CallbackTest, TheBarShowsTheBytesOfAFile) {
    machine.Seed({{R"(C:\Data\big.bin)", std::string(200'000, 'x')}, {R"(E:\x\)"}});
    EXPECT_EQ(Copy(R"(C:\Data\big.bin)", R"(E:\x\big.bin)"), error::success);
    EXPECT_EQ(bar.Min.Get(), 0.0F);
    EXPECT_EQ(bar.Max.Get(), 200'000.0F);
    EXPECT_EQ(bar.Value.Get(), 200'000.0F);
}

TEST_F(CallbackTest, AnEmptyFileLeavesTheBarsMaxAlone) {
    machine.Seed({{R"(C:\Data\empty.bin)"}, {R"(E:\x\)"}});
    bar.Min = 5.0F;
    bar.Max = 77.0F;
    bar.Value = 50.0F;
    EXPECT_EQ(Copy(R"(C:\Data\empty.bin)", R"(E:\x\empty.bin)"), error::success);
    EXPECT_EQ(bar.Min.Get(), 0.0F);
    EXPECT_EQ(bar.Max.Get(), 77.0F);
    EXPECT_EQ(bar.Value.Get(), 0.0F);
}

TEST_F(CallbackTest, TheCountingBarGoesFromOneToNinetyNineAndStartsAgain) {
    bar.Value = 0.0F;
    for (int file = 1; file <= 99; ++file) {
        CountCopiedFile(bar);
        EXPECT_EQ(bar.Value.Get(), static_cast<float>(file));
    }
    CountCopiedFile(bar);
    EXPECT_EQ(bar.Value.Get(), 1.0F);
}

TEST_F(CallbackTest, OtherReasonsLeaveTheBarAlone) {
    bar.Min = 1.0F;
    bar.Max = 2.0F;
    bar.Value = 1.5F;
    CopyProgress(bar, {10, 5, static_cast<CopyProgressInfo::Reason>(7)});
    EXPECT_EQ(bar.Value.Get(), 1.5F);
    CopyProgress(bar, {10, 5, CopyProgressInfo::Reason::chunkFinished});
    EXPECT_EQ(bar.Value.Get(), 5.0F);
    EXPECT_EQ(bar.Max.Get(), 2.0F);
}

}  // namespace
}  // namespace marlok::test
