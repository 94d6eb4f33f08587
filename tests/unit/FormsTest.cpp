#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "forms/Controls.h"
#include "forms/TreeView.h"
#include "forms/Windows.h"
#include "platform/RuntimeError.h"
#include "tests/machine/InMemoryMachine.h"
#include "tests/unit/RecordingViews.h"

namespace marlok::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string>& Events() {
    static std::vector<std::string> events;
    return events;
}

class FirstForm : public forms::Form {
 public:
    explicit FirstForm(forms::Windows& windows) : Form(windows, "FirstForm", "First") {
        Timer1.Tick = [this] {
            Events().emplace_back("first tick");
            if (onTick) {
                onTick();
            }
        };
    }
    forms::Timer Timer1{*this, "Timer1", 100};
    forms::ListBox List1{*this, "List1"};
    std::function<void()> onTick;

 protected:
    void Form_Load() override { Events().emplace_back("first loaded"); }
    void Form_Unload() override { Events().emplace_back("first unloaded"); }
};

class SecondForm : public forms::Form {
 public:
    explicit SecondForm(forms::Windows& windows) : Form(windows, "SecondForm", "Second") {
        Timer1.Tick = [this] {
            Events().emplace_back("second tick");
            Timer1.Stop();
        };
    }
    forms::Timer Timer1{*this, "Timer1", 250};

 protected:
    void Form_Unload() override {
        Events().emplace_back("second unloaded");
        throw RuntimeError(runtimeerror::overflow, "Overflow");
    }
};

class FormsTest : public testing::Test {
 protected:
    FormsTest() { Events().clear(); }
    InMemoryMachine machine;
    forms::Windows windows{machine.desktop, machine.clock, nullptr};
};

TEST_F(FormsTest, AWindowIsLoadedOnceAndIsTheOnlyOneOfItsClass) {
    EXPECT_EQ(windows.Find<FirstForm>(), nullptr);
    FirstForm& form = windows.Load<FirstForm>();
    EXPECT_EQ(&windows.Load<FirstForm>(), &form);
    EXPECT_EQ(windows.Find<FirstForm>(), &form);
    EXPECT_THAT(Events(), ElementsAre("first loaded"));
}

TEST_F(FormsTest, AHandlerMayUnloadItsOwnWindow) {
    FirstForm& form = windows.Load<FirstForm>();
    form.onTick = [&form] {
        form.Unload();
        form.Unload();  // the object is still there, and unloading it again does nothing
    };
    form.Timer1.Start();
    windows.Run();
    EXPECT_THAT(Events(), ElementsAre("first loaded", "first tick", "first unloaded"));
    EXPECT_FALSE(windows.AnyLoaded());
}

TEST_F(FormsTest, TimersFireWhenTheyAreDueAndAgain) {
    FirstForm& form = windows.Load<FirstForm>();
    SecondForm& second = windows.Load<SecondForm>();
    form.Timer1.Start();
    second.Timer1.Start();
    const std::uint64_t start = machine.clock.TickCount();
    while (machine.clock.TickCount() - start < 300) {
        windows.Turn();
    }
    EXPECT_THAT(Events(), ElementsAre("first loaded", "first tick", "first tick", "second tick", "first tick"));
}

TEST_F(FormsTest, AStoppedTimerAndTheTimerOfAnUnloadedWindowAreSilent) {
    FirstForm& form = windows.Load<FirstForm>();
    form.Timer1.Start();
    form.Timer1.Stop();
    machine.clock.Advance(1000);
    windows.Turn();
    form.Timer1.Start();
    form.Unload();
    machine.clock.Advance(1000);
    windows.Turn();
    EXPECT_THAT(Events(), ElementsAre("first loaded", "first unloaded"));
}

TEST_F(FormsTest, UnloadingAllGoesInTheOrderOfLoadingPastAWindowThatThrows) {
    windows.Load<SecondForm>();
    windows.Load<FirstForm>();
    EXPECT_THROW(windows.UnloadAll(), RuntimeError);
    EXPECT_FALSE(windows.AnyLoaded());
    EXPECT_THAT(Events(), ElementsAre("first loaded", "second unloaded", "first unloaded"));
}

TEST_F(FormsTest, WhatAHandlerThrowsLeavesTheLoop) {
    FirstForm& form = windows.Load<FirstForm>();
    form.onTick = [] { throw RuntimeError(runtimeerror::pathNotFound, "Path not found"); };
    form.Timer1.Start();
    EXPECT_THROW(windows.Run(), RuntimeError);
    windows.UnloadAll();
}

TEST_F(FormsTest, RefillingAListFiresNothing) {
    forms::ListBox& list = windows.Load<FirstForm>().List1;
    int clicks = 0;
    list.Click = [&clicks] { ++clicks; };
    list.AddItem("a");
    list.AddItem("c");
    list.InsertItem(1, "b");
    list.SetSelected(1, true);
    list.RemoveItem(0);
    EXPECT_THAT(list.Items(), ElementsAre("b", "c"));
    EXPECT_TRUE(list.Selected(0)) << "the selection moves with its line";
    list.Clear();
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(list.List(0), "") << "outside the list";
    EXPECT_EQ(list.ListIndex(), -1);
}

TEST_F(FormsTest, SelectingALineInCodeFiresClickOnce) {
    forms::ListBox& list = windows.Load<FirstForm>().List1;
    int clicks = 0;
    list.Click = [&clicks] { ++clicks; };
    list.AddItem("a");
    list.AddItem("b");
    list.SetListIndex(1);
    list.SetListIndex(1);
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(list.Selected(1));
    list.SetListIndex(0);
    EXPECT_FALSE(list.Selected(1)) << "one line at a time";
    list.SetListIndex(7);
    EXPECT_EQ(list.ListIndex(), -1);
    EXPECT_EQ(clicks, 2);
}

TEST_F(FormsTest, TheUserSelectsSeveralLines) {
    forms::ListBox& list = windows.Load<FirstForm>().List1;
    list.MultiSelect = true;
    int clicks = 0;
    list.Click = [&clicks] { ++clicks; };
    for (const char* line : {"a", "b", "c"}) {
        list.AddItem(line);
    }
    list.UserSelected(2, {0, 2, 9});
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(list.ListIndex(), 2);
    EXPECT_TRUE(list.Selected(0) && !list.Selected(1) && list.Selected(2));
}

TEST_F(FormsTest, ATreeHasUniqueKeysAndPaths) {
    forms::TreeView tree(windows.Load<FirstForm>(), "TreeView1");
    forms::Node& root = tree.Add(nullptr, "C:\\DataDir", "C:\\Data");
    forms::Node& child = tree.Add(&root, "C:\\Data\\aDir", "a");
    EXPECT_EQ(child.FullPath(), "C:\\Data\\a");
    EXPECT_THAT(root.Children(), ElementsAre(&child));
    EXPECT_THROW(tree.Add(&root, "C:\\Data\\aDir", "a"), RuntimeError);
    EXPECT_EQ(tree.NodeCount(), 2);
    tree.Clear();
    EXPECT_EQ(tree.NodeCount(), 0);
    EXPECT_EQ(tree.Find("C:\\DataDir"), nullptr);
}

TEST_F(FormsTest, PressingACheckBoxChecksAndClearsIt) {
    forms::CheckBox box(windows.Load<FirstForm>(), "Check1", "Run");
    box.UserPressed();
    EXPECT_EQ(box.Value, forms::CheckBox::State::checked);
    box.UserPressed();
    EXPECT_EQ(box.Value, forms::CheckBox::State::unchecked);
}

TEST_F(FormsTest, PressingACheckBoxFiresClickAfterItsValueHasChanged) {
    forms::CheckBox box(windows.Load<FirstForm>(), "Check1", "Run");
    std::vector<forms::CheckBox::State> seen;
    box.Click = [&] { seen.push_back(box.Value); };
    box.UserPressed();
    box.UserPressed();
    EXPECT_THAT(seen, ElementsAre(forms::CheckBox::State::checked, forms::CheckBox::State::unchecked));
}

TEST_F(FormsTest, NoPressingGreysACheckBox) {
    forms::CheckBox box(windows.Load<FirstForm>(), "Check1", "Run");
    box.Value = forms::CheckBox::State::greyed;
    for (int press = 0; press < 3; ++press) {
        box.UserPressed();
        EXPECT_NE(box.Value, forms::CheckBox::State::greyed) << press;
    }
}

TEST_F(FormsTest, CheckingABoxInCodeFiresNothing) {
    forms::CheckBox box(windows.Load<FirstForm>(), "Check1", "Run");
    int clicks = 0;
    box.Click = [&clicks] { ++clicks; };
    box.Value = forms::CheckBox::State::checked;
    EXPECT_EQ(clicks, 0);
}

TEST_F(FormsTest, PressingACheckBoxWithoutAHandlerOnlyChecksIt) {
    forms::CheckBox box(windows.Load<FirstForm>(), "Check1");
    EXPECT_NO_THROW(box.UserPressed());
    EXPECT_EQ(box.Value, forms::CheckBox::State::checked);
}

TEST_F(FormsTest, AControlIsShownOnlyInAContainerThatIsShown) {
    FirstForm& form = windows.Load<FirstForm>();
    forms::PictureBox outer(form, "Outer");
    forms::PictureBox inner(form, "Inner");
    forms::Label label(form, "Label1");
    inner.SetContainer(&outer);
    label.SetContainer(&inner);
    EXPECT_TRUE(label.IsShown());
    outer.Visible = false;
    EXPECT_FALSE(label.IsShown());
    EXPECT_TRUE(label.Visible) << "its own visibility is kept";
    outer.Visible = true;
    EXPECT_TRUE(label.IsShown());
}

TEST_F(FormsTest, AHiddenControlIsNotShownWhateverContainsIt) {
    FirstForm& form = windows.Load<FirstForm>();
    forms::PictureBox box(form, "Picture1");
    forms::Label label(form, "Label1");
    label.SetContainer(&box);
    label.Visible = false;
    EXPECT_FALSE(label.IsShown());
}

TEST_F(FormsTest, AControlTakenOutOfItsContainerIsShownByItself) {
    FirstForm& form = windows.Load<FirstForm>();
    forms::PictureBox box(form, "Picture1");
    forms::Label label(form, "Label1");
    box.Visible = false;
    label.SetContainer(&box);
    EXPECT_EQ(label.Container(), &box);
    label.SetContainer(nullptr);
    EXPECT_EQ(label.Container(), nullptr);
    EXPECT_TRUE(label.IsShown());
}

TEST_F(FormsTest, AWindowMayHaveAnySizeUntilALeastOneIsSet) {
    FirstForm& form = windows.Load<FirstForm>();
    EXPECT_EQ(form.LeastWidth(), 0);
    EXPECT_EQ(form.LeastHeight(), 0);
    form.SetLeastSize(3000, 2000);
    EXPECT_EQ(form.LeastWidth(), 3000);
    EXPECT_EQ(form.LeastHeight(), 2000);
}

/// The same windows with views that remember what they were told.
class ViewsTest : public FormsTest {
 protected:
    FirstForm& Shown() {
        FirstForm& form = viewed.Load<FirstForm>();
        form.Show();
        views.records.clear();
        return form;
    }

    RecordingViews views;
    forms::Windows viewed{machine.desktop, machine.clock, &views};
};

TEST_F(ViewsTest, AViewIsAttachedWhenTheWindowIsFirstShown) {
    FirstForm& form = viewed.Load<FirstForm>();
    EXPECT_THAT(views.records, IsEmpty());
    form.Show();
    form.Hide();
    form.Show();
    EXPECT_THAT(views.records,
                ElementsAre("FirstForm attached", "FirstForm changed", "FirstForm changed", "FirstForm changed"));
}

TEST_F(ViewsTest, AChangeBeforeTheFirstShowNeedsNoView) {
    FirstForm& form = viewed.Load<FirstForm>();
    form.List1.AddItem("a");
    form.SetCaption("Other");
    form.Refresh();
    EXPECT_THAT(views.records, IsEmpty());
}

TEST_F(ViewsTest, AValueThatIsAssignedAgainTellsNothing) {
    FirstForm& form = Shown();
    form.List1.Visible = true;
    EXPECT_THAT(views.records, IsEmpty());
    form.List1.Visible = false;
    EXPECT_THAT(views.records, ElementsAre("FirstForm.List1 changed"));
}

TEST_F(ViewsTest, AnotherContainerIsToldOnce) {
    FirstForm& form = Shown();
    forms::PictureBox box(form, "Picture1");
    form.List1.SetContainer(&box);
    form.List1.SetContainer(&box);
    EXPECT_THAT(views.records, ElementsAre("FirstForm.List1 changed"));
    form.List1.SetContainer(nullptr);
}

TEST_F(ViewsTest, CaptionPlaceAndBackdropAreTold) {
    FirstForm& form = Shown();
    form.SetCaption("Other");
    form.Place(1, 2, 3, 4);
    form.SetBackdrop({forms::Rgb(1, 2, 3)});
    EXPECT_THAT(views.records, ElementsAre("FirstForm changed", "FirstForm changed", "FirstForm changed"));
}

TEST_F(ViewsTest, AControlThatGoesBeforeItsWindowIsTold) {
    FirstForm& form = Shown();
    {
        const forms::Label label(form, "Label1");
        EXPECT_THAT(views.records, IsEmpty());
    }
    EXPECT_THAT(views.records, ElementsAre("FirstForm.Label1 removed"));
}

TEST_F(ViewsTest, AControlThatHasGoneBelongsToTheWindowNoLonger) {
    FirstForm& form = Shown();
    const std::size_t before = form.Controls().size();
    {
        const forms::Label label(form, "Label1");
        EXPECT_THAT(form.Controls(), Contains(&label));
    }
    EXPECT_EQ(form.Controls().size(), before);
}

TEST_F(ViewsTest, AViewIsToldOfItsOwnWindowAlone) {
    FirstForm& form = Shown();
    SecondForm& other = viewed.Load<SecondForm>();
    other.SetCaption("Not shown yet");
    EXPECT_THAT(views.records, IsEmpty());
    form.Refresh();
    EXPECT_THAT(views.records, ElementsAre("FirstForm refreshed"));
}

TEST_F(ViewsTest, TheViewIsGoneOnceTheWindowIsUnloaded) {
    FirstForm& form = Shown();
    form.Unload();
    viewed.Run();
    EXPECT_THAT(views.records, Contains("FirstForm detached"));
    viewed.Load<FirstForm>();
    EXPECT_THAT(views.records, Not(Contains("FirstForm attached"))) << "a window is loaded unseen";
}

/// A window that is to be finished before it may be closed.
class Unfinished : public forms::Form {
 public:
    explicit Unfinished(forms::Windows& windows) : Form(windows, "Unfinished", "") {}
    [[nodiscard]] bool MayClose() const override { return finished; }
    bool finished = false;
};

TEST(ClosingTest, AWindowThatIsNotFinishedStaysWhenTheUserClosesIt) {
    InMemoryMachine machine;
    forms::Windows windows(machine.desktop, machine.clock, nullptr);
    auto& window = windows.Load<Unfinished>();
    window.UserClosed();
    EXPECT_TRUE(windows.AnyLoaded());
    window.finished = true;
    window.UserClosed();
    EXPECT_FALSE(windows.AnyLoaded());
}

TEST(ClosingTest, TheProgramItselfMayUnloadIt) {
    InMemoryMachine machine;
    forms::Windows windows(machine.desktop, machine.clock, nullptr);
    windows.Load<Unfinished>().Unload();
    EXPECT_FALSE(windows.AnyLoaded());
}

}  // namespace
}  // namespace marlok::test
