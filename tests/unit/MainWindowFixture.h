#pragma once

#include <string>

#include "tests/machine/Program.h"
#include "tests/unit/ProgramFixture.h"
#include "ui/frmSSTab.h"

namespace marlok::test {

/// The main window of an installed program. Configure the machine, then call Open.
class MainWindowFixture : public ProgramTest {
 protected:
    void TearDown() override {
        program.windows.UnloadAll();
        ProgramTest::TearDown();
    }

    /// Loads the window, as the start does.
    ui::frmSSTab& Open() {
        auto& window = program.windows.Load<ui::frmSSTab>(program.session);
        window.Show();
        return window;
    }

    /// Loads it and brings a tab to the front.
    ui::frmSSTab& OpenAt(int tab) {
        ui::frmSSTab& window = Open();
        window.SSTab1.SetTab(tab);
        return window;
    }

    /// The text of the last message box; "" when none was shown.
    [[nodiscard]] std::string LastMessage() const {
        return machine.desktop.Messages().empty() ? "" : machine.desktop.Messages().back().text;
    }

    /// Expects exactly one message box so far, and compares what it showed.
    void ExpectMessage(const std::string& text, std::uint32_t style,
                       const std::string& title = "Marlok Info.....") const {
        ASSERT_EQ(machine.desktop.Messages().size(), 1U);
        EXPECT_EQ(machine.desktop.Messages().front().text, text);
        EXPECT_EQ(machine.desktop.Messages().front().style, style);
        EXPECT_EQ(machine.desktop.Messages().front().title, title);
    }

    /// The values of a section of the settings, "name=data" each.
    [[nodiscard]] Lines Stored(const std::string& section) {
        Lines stored;
        for (const auto& [name, data] : machine.registry.Values(SettingsKey(section))) {
            stored.push_back(name + "=" + data);
        }
        return stored;
    }

    static constexpr std::uint32_t information = messagestyle::ok | messagestyle::information;
    static constexpr std::uint32_t question = messagestyle::yesNo | messagestyle::question;

    Program program{machine.machine()};
};

}  // namespace marlok::test
