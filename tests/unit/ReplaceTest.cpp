#include "ui/frmReplace.h"

#include "tests/machine/Program.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class ReplaceTest : public ProgramTest {
 protected:
    ReplaceTest() {
        machine.Seed({{R"(E:\Save\Data\a.doc)", "saved a", At(8, 0)},
                      {R"(E:\Save\Data\b.txt)", "saved b", At(8, 0)},
                      {R"(C:\Data\a.doc)", "now a", At(10, 0)},
                      {R"(C:\Data\b.txt)", "now b", At(10, 0)},
                      {Beside("Save.txt"), "C:\\Data\\a.doc\r\nC:\\Data\\b.txt\r\n"}});
    }

    void TearDown() override {
        program.windows.UnloadAll();
        EXPECT_EQ(machine.desktop.UnexpectedBoxes(), 0);
        EXPECT_EQ(machine.desktop.AnswersLeft(), 0U);
        EXPECT_EQ(machine.desktop.ShutdownReason(), "");
        EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
        ProgramTest::TearDown();
    }

    ui::frmReplace& Replace(const Lines& saved = {R"(E:\Save\Data\a.doc)", R"(E:\Save\Data\b.txt)"}) {
        auto& window = program.windows.Load<ui::frmReplace>(program.session.machine, [this] { ++closed; });
        window.Run(Location(R"(E:\Save)"), saved);
        return window;
    }

    void Finish(ui::frmReplace& window) {
        WaitFor(machine, program, [&] { return !window.Timer1.Running(); });
    }

    [[nodiscard]] bool IsLoaded() const { return program.windows.Find<ui::frmReplace>() != nullptr; }

    Program program{machine.machine()};
    int closed = 0;
};

TEST_F(ReplaceTest, TheWindowCannotBeClosedBeforeItsLogIsWritten) {
    ui::frmReplace& window = Replace();
    window.UserClosed();
    EXPECT_TRUE(IsLoaded());
    Finish(window);
    EXPECT_THAT(LinesBeside(machine, "Replaced File Log.txt"), SizeIs(4));
    window.UserClosed();
    EXPECT_FALSE(IsLoaded());
    EXPECT_EQ(closed, 1);
}

TEST_F(ReplaceTest, ALogOutstandingIsWrittenWhenTheProgramIsEnded) {
    Replace();
    EXPECT_THAT(LinesBeside(machine, "Replaced File Log.txt"), IsEmpty());
    program.windows.UnloadAll();
    EXPECT_THAT(LinesBeside(machine, "Replaced File Log.txt"), SizeIs(4));
}

TEST_F(ReplaceTest, WhatWasClickedMeanwhileIsDropped) {
    bool acted = false;
    machine.faults.BeforeStep([&](const Step& step) {
        if (step.operation == "Copy") {
            machine.desktop.HasDone([&acted] { acted = true; });
        }
    });
    ui::frmReplace& window = Replace();
    machine.faults.BeforeStep({});
    Finish(window);
    EXPECT_FALSE(acted);
}

TEST_F(ReplaceTest, WhatWasTypedBeforeABoxWasThereDoesNotAnswerIt) {
    machine.Remove(R"(E:\Save\Data\b.txt)");
    bool dropped = false;
    bool acted = false;
    machine.faults.BeforeStep([&](const Step& step) {
        if (step.operation == "Copy") {
            machine.desktop.HasDone([&acted] { acted = true; });
        }
    });
    const int discards = machine.desktop.Discards();
    machine.desktop.OnMessage([&](const ShownMessage&) {
        dropped = dropped || machine.desktop.Discards() > discards;
        return button::ok;
    });
    ui::frmReplace& window = Replace();
    machine.faults.BeforeStep({});
    EXPECT_TRUE(dropped);
    Finish(window);
    EXPECT_FALSE(acted);
}

TEST_F(ReplaceTest, AMissingListIsSaidOnceForAllFiles) {
    machine.Remove(Beside("Save.txt"));
    machine.desktop.Answer(button::ok);
    Replace();
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(1));
    EXPECT_EQ(machine.desktop.Messages().front().text,
              Beside("Save.txt") +
                  "\r\n\r\n Could Not Be Read\r\n\r\nthe file was not found (error 2). No file was replaced.");
    EXPECT_FALSE(IsLoaded());
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(machine.Read(R"(C:\Data\a.doc)"), "now a");
    EXPECT_FALSE(machine.Exists(Beside("Replaced File Log.txt")));
}

TEST_F(ReplaceTest, OfASingleFileItIsSaidThatItIsNotListed) {
    machine.Remove(Beside("Save.txt"));
    machine.desktop.Answer(button::ok);
    Replace({R"(E:\Save\Data\a.doc)"});
    ASSERT_THAT(machine.desktop.Messages(), SizeIs(1));
    EXPECT_THAT(machine.desktop.Messages().front().text, testing::EndsWith(" Not Listed In Log File"));
}

TEST_F(ReplaceTest, OnlyFilesAreCountedAsNotReplaced) {
    machine.Lock(R"(C:\Data\a.doc)");
    machine.Seed({{Beside("Replaced File Log.txt"), "old"}});
    machine.Lock(Beside("Replaced File Log.txt"));
    ui::frmReplace& window = Replace();
    Finish(window);
    EXPECT_EQ(window.Label4.Caption.Get(), "1 File Not Replaced, See \"Backup Error Log.txt\"");
    EXPECT_THAT(ErrorLog(machine), SizeIs(2));
}

TEST_F(ReplaceTest, ALogThatCannotBeWrittenIsAFailureOfItsOwn) {
    machine.Seed({{Beside("Replaced File Log.txt"), "old"}});
    machine.Lock(Beside("Replaced File Log.txt"));
    ui::frmReplace& window = Replace();
    Finish(window);
    EXPECT_TRUE(window.Label4.Visible);
    EXPECT_EQ(window.Label4.Caption.Get(), "1 Failure, See \"Backup Error Log.txt\"");
}

TEST_F(ReplaceTest, AnErrorLogThatCannotBeWrittenIsSaidWithItsFirstLines) {
    machine.Lock(R"(C:\Data\a.doc)");
    machine.Seed({{Beside("Backup Error Log.txt"), "old"}});
    machine.Lock(Beside("Backup Error Log.txt"));
    ui::frmReplace& window = Replace();
    Finish(window);
    EXPECT_THAT(window.Label4.Caption.Get(), HasSubstr("1 File Not Replaced. \"Backup Error Log.txt\" Could Not Be"));
    EXPECT_THAT(window.Label4.Caption.Get(), HasSubstr("\r\nE:\\Save\\Data\\a.doc -> C:\\Data\\a.doc: the file is in"));
}

TEST_F(ReplaceTest, WhenTheSessionEndsTheRestIsLeftAndReported) {
    machine.faults.BeforeStep([this](const Step& step) {
        if (step.operation == "Replace") {
            EXPECT_EQ(machine.desktop.ShutdownReason(), "Files are being put back.");
            EXPECT_FALSE(machine.desktop.EndSession());
            machine.clock.Advance(1000);
        }
    });
    ui::frmReplace& window = Replace();
    machine.faults.BeforeStep({});
    EXPECT_THAT(LinesBeside(machine, "Replaced File Log.txt"),
                ElementsAre(testing::EndsWith("was 1"), "", R"(C:\Data\a.doc)"))
        << "at once";
    EXPECT_THAT(ErrorLog(machine),
                ElementsAre("E:\\Save: the replacement was stopped: 1 of the selected files were not "
                            "put back; select them again"));
    EXPECT_EQ(machine.desktop.ShutdownReason(), "");
    EXPECT_EQ(machine.Read(R"(C:\Data\b.txt)"), "now b");
    Finish(window);
    EXPECT_EQ(window.Label4.Caption.Get(), "1 File Not Replaced, See \"Backup Error Log.txt\"");
}

TEST_F(ReplaceTest, TheWindowPaintsDuringALargeFile) {
    machine.Seed({{R"(E:\Save\Data\a.doc)", std::string(1'000'000, 'x')}});
    machine.faults.BeforeStep([this](const Step& step) {
        if (step.operation == "Copy.Write") {
            machine.clock.Advance(100);
        }
    });
    const int paints = machine.desktop.Paints();
    Finish(Replace({R"(E:\Save\Data\a.doc)"}));
    machine.faults.BeforeStep({});
    EXPECT_GE(machine.desktop.Paints() - paints, 3);
}

}  // namespace
}  // namespace marlok::test
