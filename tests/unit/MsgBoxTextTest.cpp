#include "fileops/MsgBoxText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* prompt = "Do You Want To Delete The Saved File, or Only The List Entry?";

class MsgBoxTextTest : public testing::Test {
 protected:
    EntryOrFile AskAndPress(int pressed) {
        machine.desktop.Answer(pressed);
        return AskEntryOrFile(machine.desktop, prompt, "Marlok Backup Utility");
    }

    InMemoryMachine machine;
};

TEST_F(MsgBoxTextTest, TheBoxHasThreeButtonsWithCaptionsOfTheirOwn) {
    AskAndPress(button::ignore);
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(1));
    const ShownMessage& shown = machine.desktop.Messages().front();
    ASSERT_THAT(shown.captions, SizeIs(3));
    EXPECT_EQ(shown.captions[0].button, 3);
    EXPECT_EQ(shown.captions[0].caption, "Only Entry");
    EXPECT_EQ(shown.captions[1].button, 4);
    EXPECT_EQ(shown.captions[1].caption, "File Also");
    EXPECT_EQ(shown.captions[2].button, 5);
    EXPECT_EQ(shown.captions[2].caption, "Cancel");
}

TEST_F(MsgBoxTextTest, TheBoxShowsPromptTitleAndStyle) {
    AskAndPress(button::ignore);
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(1));
    const ShownMessage& shown = machine.desktop.Messages().front();
    EXPECT_EQ(shown.text, prompt);
    EXPECT_EQ(shown.title, "Marlok Backup Utility");
    EXPECT_EQ(shown.style, 66U) << "three buttons and an icon";
}

TEST_F(MsgBoxTextTest, OnlyEntryIsTheFirstButton) {
    EXPECT_EQ(AskAndPress(button::abort), EntryOrFile::onlyEntry);
    EXPECT_EQ(static_cast<int>(EntryOrFile::onlyEntry), 3);
}

TEST_F(MsgBoxTextTest, FileAlsoIsTheSecondButton) {
    EXPECT_EQ(AskAndPress(button::retry), EntryOrFile::fileAlso);
    EXPECT_EQ(static_cast<int>(EntryOrFile::fileAlso), 4);
}

TEST_F(MsgBoxTextTest, CancelIsTheThirdButton) {
    EXPECT_EQ(AskAndPress(button::ignore), EntryOrFile::cancel);
    EXPECT_EQ(static_cast<int>(EntryOrFile::cancel), 5);
}

TEST_F(MsgBoxTextTest, AnyOtherAnswerDeletesNothing) {
    EXPECT_EQ(AskAndPress(button::ok), EntryOrFile::cancel);
    EXPECT_EQ(AskAndPress(button::yes), EntryOrFile::cancel);
}

TEST_F(MsgBoxTextTest, ALaterBoxHasItsOrdinaryCaptions) {
    AskAndPress(button::ignore);
    machine.desktop.Answer(button::abort);
    machine.desktop.ShowMessage("Ordinary", messagestyle::abortRetryIgnore, "Title");
    EXPECT_THAT(machine.desktop.Messages().back().captions, IsEmpty());
}

}  // namespace
}  // namespace marlok::test
