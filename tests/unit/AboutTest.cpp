#include "tests/unit/MainWindowFixture.h"
#include "ui/Donation.h"
#include "ui/frmAbout.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* page =
    "https://www.example.com/donate?business=donations%40example.com&no_note=1&tax=0&currency_code=USD";

class AboutTest : public MainWindowFixture {
 protected:
    AboutTest() { Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}}); }

    ui::frmAbout& OpenAbout() {
        Open().Command7.Click();
        return *program.windows.Find<ui::frmAbout>();
    }
};

TEST_F(AboutTest, TellsVersionAndPurpose) {
    const ui::frmAbout& about = OpenAbout();
    EXPECT_TRUE(about.IsVisible());
    EXPECT_EQ(about.Caption(), "Marlok Backup Utility");
    EXPECT_EQ(about.Label2.Caption.Get(), "Version 4.0.0");
    EXPECT_EQ(about.Label1.Caption.Get(),
              "This program was written to make backing up my files easier and works very well for me. It gives you "
              "several options in how you want to do your backups and if scheduled properly you will never forget to "
              "backup your files. Like all my other programs this one is free and will not bug you to register or pay "
              "for more options. If you like the program and want to make a donation to help defray the cost of "
              "developing, maintaining and posting on the internet, click on the button below and thanks in advance.");
    EXPECT_EQ(about.Label5.Caption.Get(), "Connecting      Please Wait");
    EXPECT_FALSE(about.Label5.Visible);
}

TEST_F(AboutTest, ReturnLeadsBackToTheMainWindow) {
    OpenAbout().Command2.Click();
    EXPECT_EQ(program.windows.Find<ui::frmAbout>(), nullptr);
    EXPECT_TRUE(program.windows.Find<ui::frmSSTab>()->IsVisible());
}

TEST_F(AboutTest, EscapeAndEnterReturn) {
    ui::frmAbout& about = OpenAbout();
    EXPECT_EQ(about.CancelButton(), &about.Command2);
    EXPECT_EQ(about.DefaultButton(), &about.Command2);
}

TEST_F(AboutTest, WithoutAConnectionADonationIsRefused) {
    machine.system.connected = false;
    machine.system.connectionFlags = 0;
    machine.desktop.Answer(button::ok);
    ui::frmAbout& about = OpenAbout();
    about.Command1.Click();
    ExpectMessage("You Must Be Connected To The Internet To Use This Button", information);
    EXPECT_TRUE(about.Label1.Visible);
    EXPECT_TRUE(about.Command1.Enabled);
    EXPECT_THAT(machine.browser.calls, IsEmpty());
}

TEST_F(AboutTest, ADonationShowsThePageAndEndsTheProgram) {
    machine.browser.pollsUntilComplete = 2;
    const std::uint64_t begin = machine.clock.TickCount();
    OpenAbout().Command1.Click();
    EXPECT_THAT(machine.browser.calls,
                ElementsAre("start", std::string("navigate ") + page, "ask", "ask", "ask", "show", "release"));
    EXPECT_EQ(machine.clock.TickCount() - begin, 500U);
    EXPECT_EQ(program.windows.Find<ui::frmAbout>(), nullptr);
    EXPECT_EQ(program.windows.Find<ui::frmSSTab>(), nullptr);
    EXPECT_THAT(machine.shell.Opened(), IsEmpty());
}

TEST_F(AboutTest, TheMainWindowStaysAfterItsOwnDonationButton) {
    ui::frmSSTab& window = Open();
    window.Command10.Click();
    EXPECT_THAT(machine.browser.calls, testing::Contains("show"));
    EXPECT_TRUE(window.IsVisible());
    EXPECT_TRUE(window.Command10.Enabled);
    EXPECT_FALSE(window.Label9.Visible);
}

TEST_F(AboutTest, WhileALocationIsBeingChosenTheFrameComesAndGoes) {
    ui::frmSSTab& window = Open();
    window.Command8.Click();
    ASSERT_FALSE(window.Frame1.Visible);
    window.Command10.Click();
    EXPECT_FALSE(window.Frame1.Visible);
    window.SSTab1.SetTab(ui::tab::backupFolder);
    window.SSTab1.SetTab(ui::tab::options);
    window.Command10.Click();
    EXPECT_TRUE(window.Frame1.Visible) << "it stays where it was shown before";
}

TEST_F(AboutTest, WithoutADrivableBrowserTheDefaultOneIsUsed) {
    machine.browser.exists = false;
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    Open().Command10.Click();
    ASSERT_EQ(machine.shell.Opened().size(), 1U);
    EXPECT_EQ(machine.shell.Opened().front().path, page);
}

TEST_F(AboutTest, ABrowserThatStopsAnsweringDoesNotHoldTheProgram) {
    machine.browser.answers = false;
    machine.desktop.OnMessage([](const ShownMessage&) { return button::ok; });
    Open().Command10.Click();
    EXPECT_EQ(machine.shell.Opened().size(), 1U);
    EXPECT_THAT(machine.browser.calls, testing::Not(testing::Contains("show")));
}

TEST_F(AboutTest, APageThatCannotBeOpenedIsTold) {
    machine.browser.exists = false;
    machine.desktop.Answer(button::ok);
    Open().Command10.Click();
    EXPECT_THAT(LastMessage(), StartsWith("The Page Could Not Be Opened"));
    EXPECT_THAT(LastMessage(), HasSubstr(page));
}

}  // namespace
}  // namespace marlok::test
