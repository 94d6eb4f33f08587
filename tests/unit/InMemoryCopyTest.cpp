#include <gtest/gtest.h>

#include <vector>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

/// The steps a copy is made of: eight bytes go over in chunks of three.
class InMemoryCopyTest : public ::testing::Test {
 protected:
    InMemoryCopyTest() {
        memory.files.SetCopyChunk(3);
        memory.Seed({{"C:\\from", "12345678", At(10, 0), attribute::hidden}});
        memory.AddDrive('E');
    }

    SystemError Copy(std::uint32_t flags) { return memory.files.Copy("C:\\from", "E:\\to", flags, {}); }

    InMemoryMachine memory;
};

TEST_F(InMemoryCopyTest, ItsPartsAreSteps) {
    ASSERT_EQ(Copy(copyflag::none), error::success);
    std::vector<std::string> operations;
    for (const Step& step : memory.faults.Journal()) {
        operations.push_back(step.operation);
    }
    EXPECT_EQ(operations, (std::vector<std::string>{"Copy", "Copy.Create", "Copy.Write", "Copy.Write", "Copy.Write",
                                                    "Copy.Finish"}));
}

TEST_F(InMemoryCopyTest, AFileBeingCopiedIsYoungUntilTheEnd) {
    memory.faults.BeforeStep([&](const Step& step) {
        if (step.operation == "Copy.Finish") {
            EXPECT_EQ(memory.EntryOf("E:\\to").lastWriteTime, At(12, 0));
            EXPECT_NE(memory.EntryOf("E:\\to").attributes & attribute::hidden, 0U);
            EXPECT_EQ(memory.Read("E:\\to"), "12345678");
        }
    });
    ASSERT_EQ(Copy(copyflag::none), error::success);
    EXPECT_EQ(memory.EntryOf("E:\\to").lastWriteTime, At(10, 0));
}

TEST_F(InMemoryCopyTest, ProgressTellsEachChunk) {
    std::vector<std::uint64_t> totals;
    ASSERT_EQ(memory.files.Copy("C:\\from", "E:\\to", 0,
                                [&](const CopyProgressInfo& info) {
                                    totals.push_back(info.totalTransferred);
                                    return CopyAnswer::goOn;
                                }),
              error::success);
    EXPECT_EQ(totals, (std::vector<std::uint64_t>{0, 3, 6, 8}));
}

TEST_F(InMemoryCopyTest, ADeathLeavesWhatWasWritten) {
    memory.faults.DieAt(5);
    EXPECT_THROW(static_cast<void>(Copy(copyflag::none)), ProcessDied);
    EXPECT_EQ(memory.Read("E:\\to"), std::string("123456\0\0", 8)) << "it has its full size from the beginning";
    EXPECT_EQ(memory.EntryOf("E:\\to").lastWriteTime, At(12, 0));
    memory.Restart();
    EXPECT_EQ(memory.files.Delete("E:\\to"), error::success) << "the dead process holds nothing";
}

TEST_F(InMemoryCopyTest, AFailureDeletesTheTarget) {
    memory.faults.FailAt(4, error::ioDevice);
    EXPECT_EQ(Copy(copyflag::none), error::ioDevice);
    EXPECT_FALSE(memory.Exists("E:\\to"));
}

TEST_F(InMemoryCopyTest, AFailureOfARestartableCopyLeavesItsPart) {
    memory.faults.FailAt(4, error::ioDevice);
    EXPECT_EQ(Copy(copyflag::restartable), error::ioDevice);
    EXPECT_EQ(memory.Read("E:\\to"), std::string("123\0\0\0\0\0", 8));
}

TEST_F(InMemoryCopyTest, AFullDiskFailsTheCopyBeforeItsFirstByte) {
    memory.AddDrive('E', {.capacityBytes = 5});
    EXPECT_EQ(Copy(copyflag::none), error::diskFull);
    EXPECT_FALSE(memory.Exists("E:\\to"));
    EXPECT_EQ(memory.faults.Count("Copy.Write"), 0U);
    EXPECT_EQ(Copy(copyflag::restartable), error::diskFull);
    EXPECT_EQ(memory.Read("E:\\to"), "");
}

TEST_F(InMemoryCopyTest, AFullDiskRuinsWhatWasToBeOverwritten) {
    memory.AddDrive('E', {.capacityBytes = 5});
    memory.Seed({{"E:\\to", "old", At(8, 0)}});
    EXPECT_EQ(Copy(copyflag::none), error::diskFull);
    EXPECT_EQ(memory.Read("E:\\to"), "");
    EXPECT_EQ(memory.EntryOf("E:\\to").lastWriteTime, At(12, 0));
}

TEST_F(InMemoryCopyTest, AFailureRuinsWhatWasToBeOverwritten) {
    memory.Seed({{"E:\\to", "old content", At(8, 0)}});
    memory.faults.FailAt(4, error::ioDevice);
    EXPECT_EQ(Copy(copyflag::none), error::ioDevice);
    EXPECT_EQ(memory.Read("E:\\to"), std::string("123\0\0\0\0\0", 8));
}

TEST_F(InMemoryCopyTest, TheSourceCanVanishJustBefore) {
    memory.faults.BeforeStep([this](const Step& step) {
        if (step.operation == "Copy") {
            memory.Remove(step.path);
        }
    });
    EXPECT_EQ(Copy(copyflag::none), error::fileNotFound);
    EXPECT_FALSE(memory.Exists("E:\\to"));
}

TEST_F(InMemoryCopyTest, ItHoldsSourceAndTargetMeanwhile) {
    int tried = 0;
    SystemError source = error::success;
    SystemError target = error::success;
    const SystemError code = memory.files.Copy("C:\\from", "E:\\to", 0, [&](const CopyProgressInfo&) {
        ++tried;
        source = memory.files.Delete("C:\\from");
        target = memory.files.Delete("E:\\to");
        return CopyAnswer::goOn;
    });
    EXPECT_EQ(code, error::success);
    EXPECT_EQ(tried, 4);
    EXPECT_EQ(source, error::sharingViolation);
    EXPECT_EQ(target, error::sharingViolation);
}

TEST_F(InMemoryCopyTest, ACopyIsCalledOffAtAnyCall) {
    for (int last = 1; last <= 4; ++last) {
        int calls = 0;
        const auto stop = [&](const CopyProgressInfo&) {
            return ++calls == last ? CopyAnswer::cancel : CopyAnswer::goOn;
        };
        EXPECT_EQ(memory.files.Copy("C:\\from", "E:\\to", copyflag::restartable, stop), error::requestAborted);
        EXPECT_EQ(calls, last);
        EXPECT_FALSE(memory.Exists("E:\\to"));
    }
}

TEST_F(InMemoryCopyTest, ASourceMayBeReadableInPartAlone) {
    memory.FailReads("C:\\from", error::dataError, 4);
    EXPECT_EQ(Copy(copyflag::restartable), error::dataError);
    EXPECT_EQ(memory.Read("E:\\to").substr(0, 3), "123");
    memory.Remove("E:\\to");
    memory.FailReads("C:\\from", error::networkNameGone);
    EXPECT_EQ(Copy(copyflag::none), error::networkNameGone);
    std::unique_ptr<File> file;
    std::string bytes;
    memory.FailReads("C:\\from", error::dataError, 4);
    ASSERT_EQ(memory.files.Open("C:\\from", OpenMode::read, file), error::success);
    EXPECT_EQ(file->Read(bytes, 100), error::success);
    EXPECT_EQ(bytes, "1234");
    EXPECT_EQ(file->Read(bytes, 100), error::dataError);
    memory.FailReads("C:\\from", error::success);
    EXPECT_EQ(Copy(copyflag::none), error::success);
    EXPECT_EQ(memory.Read("E:\\to"), "12345678");
}

TEST_F(InMemoryCopyTest, ASystemMaySwallowReadErrors) {
    memory.files.SetSwallowsReadErrors(true);
    memory.FailReads("C:\\from", error::dataError, 6);
    EXPECT_EQ(Copy(copyflag::none), error::success);
    EXPECT_EQ(memory.Read("E:\\to"), "123456");
    EXPECT_EQ(memory.EntryOf("E:\\to").lastWriteTime, At(10, 0));
}

TEST_F(InMemoryCopyTest, AnEncryptedFileGoesInClearOnlyWhenAllowed) {
    memory.SetAttributes("C:\\from", attribute::encrypted);
    memory.AddDrive('F', {.fileSystem = "FAT32"});
    EXPECT_EQ(Copy(copyflag::none), error::success);
    EXPECT_EQ(memory.files.Copy("C:\\from", "F:\\to", copyflag::none, {}), error::encryptionFailed);
    EXPECT_FALSE(memory.Exists("F:\\to"));
    EXPECT_EQ(memory.files.Copy("C:\\from", "F:\\to", copyflag::allowDecryptedDestination, {}), error::success);
    EXPECT_EQ(memory.EntryOf("F:\\to").attributes & attribute::encrypted, 0U);
}

TEST_F(InMemoryCopyTest, AFileIsNotCopiedOntoItself) {
    EXPECT_NE(memory.files.Copy("C:\\from", "C:\\FROM", 0, {}), error::success);
    EXPECT_EQ(memory.Read("C:\\from"), "12345678");
}

}  // namespace
}  // namespace marlok::test
