#include "forms/TabControl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "forms/Controls.h"
#include "tests/machine/InMemoryMachine.h"
#include "tests/unit/RecordingViews.h"

namespace marlok::test {
namespace {

using testing::Contains;
using testing::IsEmpty;

class TabForm : public forms::Form {
 public:
    explicit TabForm(forms::Windows& windows) : Form(windows, "TabForm", "Tabs") {
        first.PutOn(tabs, 0);
        second.PutOn(tabs, 1);
    }
    forms::TabControl tabs{*this, "Tabs", {"One", "Two", "Three"}};
    forms::Label first{*this, "First"};
    forms::Label second{*this, "Second"};
    forms::Label everywhere{*this, "Everywhere"};
};

class TabControlTest : public testing::Test {
 protected:
    TabControlTest() {
        form.tabs.Click = [this] { ++clicks; };
    }

    void ShowOnAView() {
        form.Show();
        views.records.clear();
    }

    InMemoryMachine machine;
    RecordingViews views;
    forms::Windows windows{machine.desktop, machine.clock, &views};
    TabForm& form = windows.Load<TabForm>();
    forms::TabControl& tabs = form.tabs;
    int clicks = 0;
};

TEST_F(TabControlTest, TheFirstTabIsTheCurrentOneAtFirst) {
    EXPECT_EQ(tabs.Tab(), 0);
    EXPECT_EQ(tabs.TabCount(), 3);
}

TEST_F(TabControlTest, EveryTabHasItsCaption) {
    EXPECT_EQ(tabs.TabCaption(0), "One");
    EXPECT_EQ(tabs.TabCaption(2), "Three");
}

TEST_F(TabControlTest, ANumberWithoutATabHasNoCaptionAndIsDisabled) {
    for (const int none : {-1, 3}) {
        EXPECT_EQ(tabs.TabCaption(none), "");
        EXPECT_FALSE(tabs.TabEnabled(none));
    }
}

TEST_F(TabControlTest, BringingATabToTheFrontFiresClickOnce) {
    tabs.SetTab(2);
    tabs.SetTab(2);
    EXPECT_EQ(tabs.Tab(), 2);
    EXPECT_EQ(clicks, 1);
}

TEST_F(TabControlTest, ATabThatDoesNotExistIsNotBroughtToTheFront) {
    tabs.SetTab(3);
    tabs.SetTab(-1);
    EXPECT_EQ(tabs.Tab(), 0);
    EXPECT_EQ(clicks, 0);
}

TEST_F(TabControlTest, CodeBringsADisabledTabToTheFrontToo) {
    tabs.SetTabEnabled(1, false);
    tabs.SetTab(1);
    EXPECT_EQ(tabs.Tab(), 1);
    EXPECT_EQ(clicks, 1);
}

TEST_F(TabControlTest, TheUserBringsAnEnabledTabToTheFront) {
    tabs.UserChose(1);
    EXPECT_EQ(tabs.Tab(), 1);
    EXPECT_EQ(clicks, 1);
}

TEST_F(TabControlTest, TheUserCannotBringADisabledTabToTheFront) {
    tabs.SetTabEnabled(1, false);
    tabs.UserChose(1);
    EXPECT_EQ(tabs.Tab(), 0);
    EXPECT_EQ(clicks, 0);
}

TEST_F(TabControlTest, AViewThatShowsADisabledTabIsSetRight) {
    tabs.SetTabEnabled(1, false);
    ShowOnAView();
    tabs.UserChose(1);
    EXPECT_THAT(views.records, Contains("TabForm.Tabs changed"));
}

TEST_F(TabControlTest, ADisabledTabCanBeEnabledAgain) {
    tabs.SetTabEnabled(1, false);
    EXPECT_FALSE(tabs.TabEnabled(1));
    EXPECT_TRUE(tabs.TabEnabled(2)) << "the others stay as they are";
    tabs.SetTabEnabled(1, true);
    EXPECT_TRUE(tabs.TabEnabled(1));
}

TEST_F(TabControlTest, EnablingWhatIsEnabledTellsTheViewNothing) {
    ShowOnAView();
    tabs.SetTabEnabled(1, true);
    tabs.SetTabEnabled(7, false);
    EXPECT_THAT(views.records, IsEmpty());
}

TEST_F(TabControlTest, TheKeyboardGoesFromTabToTabAndRoundTheEnds) {
    EXPECT_EQ(tabs.NextEnabled(1), 1);
    EXPECT_EQ(tabs.NextEnabled(-1), 2);
    tabs.SetTab(2);
    EXPECT_EQ(tabs.NextEnabled(1), 0);
    EXPECT_EQ(tabs.NextEnabled(-1), 1);
}

TEST_F(TabControlTest, TheKeyboardPassesOverDisabledTabs) {
    tabs.SetTabEnabled(1, false);
    EXPECT_EQ(tabs.NextEnabled(1), 2);
    tabs.SetTab(2);
    EXPECT_EQ(tabs.NextEnabled(-1), 0);
}

TEST_F(TabControlTest, WithoutAnotherEnabledTabTheKeyboardStays) {
    tabs.SetTabEnabled(1, false);
    tabs.SetTabEnabled(2, false);
    EXPECT_EQ(tabs.NextEnabled(1), 0);
    tabs.SetTabEnabled(0, false);
    EXPECT_EQ(tabs.NextEnabled(1), 0);
    EXPECT_EQ(tabs.NextEnabled(-1), 0);
}

TEST_F(TabControlTest, AControlIsShownWhileItsTabIsTheCurrentOne) {
    EXPECT_TRUE(form.first.IsShown());
    EXPECT_FALSE(form.second.IsShown());
    tabs.SetTab(1);
    EXPECT_FALSE(form.first.IsShown());
    EXPECT_TRUE(form.second.IsShown());
}

TEST_F(TabControlTest, AControlOnNoTabIsShownOnAll) {
    for (int tab = 0; tab < tabs.TabCount(); ++tab) {
        tabs.SetTab(tab);
        EXPECT_TRUE(form.everywhere.IsShown()) << tab;
    }
    EXPECT_EQ(form.everywhere.Tabs(), nullptr);
    EXPECT_EQ(form.first.Tabs(), &tabs);
}

TEST_F(TabControlTest, WithHiddenTabsNothingOnThemIsShown) {
    tabs.Visible = false;
    EXPECT_FALSE(form.first.IsShown());
    EXPECT_TRUE(form.everywhere.IsShown());
}

TEST_F(TabControlTest, AHiddenControlStaysHiddenOnTheCurrentTab) {
    form.first.Visible = false;
    EXPECT_FALSE(form.first.IsShown());
}

TEST_F(TabControlTest, AnotherTabTellsTheViewWhichControlsAreSeenNow) {
    ShowOnAView();
    tabs.SetTab(1);
    EXPECT_THAT(views.records, Contains("TabForm.First changed"));
    EXPECT_THAT(views.records, Contains("TabForm.Second changed"));
}

}  // namespace
}  // namespace marlok::test
