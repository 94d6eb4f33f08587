#include "forms/Area.h"

#include <gtest/gtest.h>

#include "forms/Controls.h"
#include "forms/Windows.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::forms {

static bool operator==(const Area& a, const Area& b) {
    return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
}

static void PrintTo(const Area& area, std::ostream* out) {
    *out << area.width << "x" << area.height << " at " << area.left << "," << area.top;
}

}  // namespace marlok::forms

namespace marlok::test {
namespace {

using forms::Area;

constexpr Area whole{100, 200, 1000, 500};

TEST(AreaTest, AStripFromTheTopLeavesWhatIsBelowItsGap) {
    Area area = whole;
    EXPECT_EQ(area.TakeTop(50, 10), (Area{100, 200, 1000, 50}));
    EXPECT_EQ(area, (Area{100, 260, 1000, 440}));
}

TEST(AreaTest, AStripFromTheBottomLeavesWhatIsAboveItsGap) {
    Area area = whole;
    EXPECT_EQ(area.TakeBottom(50, 10), (Area{100, 650, 1000, 50}));
    EXPECT_EQ(area, (Area{100, 200, 1000, 440}));
}

TEST(AreaTest, AStripFromTheLeftLeavesWhatIsRightOfItsGap) {
    Area area = whole;
    EXPECT_EQ(area.TakeLeft(300, 20), (Area{100, 200, 300, 500}));
    EXPECT_EQ(area, (Area{420, 200, 680, 500}));
}

TEST(AreaTest, AStripFromTheRightLeavesWhatIsLeftOfItsGap) {
    Area area = whole;
    EXPECT_EQ(area.TakeRight(300, 20), (Area{800, 200, 300, 500}));
    EXPECT_EQ(area, (Area{100, 200, 680, 500}));
}

TEST(AreaTest, WithoutAGapStripsTouch) {
    Area area = whole;
    const Area first = area.TakeTop(50);
    const Area second = area.TakeTop(70);
    EXPECT_EQ(first.top + first.height, second.top);
    EXPECT_EQ(area.height, whole.height - 120);
}

TEST(AreaTest, AStripThatDoesNotFitGetsAllThereIs) {
    Area top = whole;
    EXPECT_EQ(top.TakeTop(600, 10), whole);
    EXPECT_EQ(top, (Area{100, 700, 1000, 0}));
    Area bottom = whole;
    EXPECT_EQ(bottom.TakeBottom(600, 10), whole);
    EXPECT_EQ(bottom, (Area{100, 200, 1000, 0}));
    Area left = whole;
    EXPECT_EQ(left.TakeLeft(1200, 10), whole);
    EXPECT_EQ(left, (Area{1100, 200, 0, 500}));
    Area right = whole;
    EXPECT_EQ(right.TakeRight(1200, 10), whole);
    EXPECT_EQ(right, (Area{100, 200, 0, 500}));
}

TEST(AreaTest, AGapThatDoesNotFitTakesTheRest) {
    Area top = whole;
    EXPECT_EQ(top.TakeTop(490, 30).height, 490);
    EXPECT_EQ(top, (Area{100, 700, 1000, 0}));
    Area right = whole;
    EXPECT_EQ(right.TakeRight(990, 30).width, 990);
    EXPECT_EQ(right, (Area{100, 200, 0, 500}));
}

TEST(AreaTest, AStripOfLessThanNothingIsEmpty) {
    Area area = whole;
    EXPECT_EQ(area.TakeTop(-5), (Area{100, 200, 1000, 0}));
    EXPECT_EQ(area, whole);
}

TEST(AreaTest, NothingIsLeftOfAnEmptyArea) {
    Area area{100, 200, 0, 0};
    EXPECT_EQ(area.TakeTop(50, 10), (Area{100, 200, 0, 0}));
    EXPECT_EQ(area.TakeLeft(50, 10), (Area{100, 200, 0, 0}));
    EXPECT_EQ(area.TakeBottom(50, 10), (Area{100, 200, 0, 0}));
    EXPECT_EQ(area.TakeRight(50, 10), (Area{100, 200, 0, 0}));
}

TEST(AreaTest, AMarginIsKeptOnAllFourSides) {
    EXPECT_EQ(whole.Inside(30), (Area{130, 230, 940, 440}));
}

TEST(AreaTest, AMarginWiderThanTheAreaLeavesNothing) {
    const Area inside = whole.Inside(600);
    EXPECT_EQ(inside.width, 0);
    EXPECT_EQ(inside.height, 0);
}

TEST(AreaTest, AControlIsPutOnTheWholeArea) {
    InMemoryMachine machine;
    forms::Windows windows(machine.desktop, machine.clock, nullptr);
    forms::Form form(windows, "Form", "");
    forms::Label label(form, "Label1");
    forms::Put(label, whole);
    EXPECT_EQ((Area{label.Left, label.Top, label.Width, label.Height}), whole);
}

}  // namespace
}  // namespace marlok::test
