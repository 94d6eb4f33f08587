#include "ui/run/Form5.h"

#include <algorithm>

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int twipsPerPixel = 15;

class Form5Test : public ProgramTest {
 protected:
    Form5& Load() { return program.windows.Load<Form5>(program.session.machine, program.session.gAllFiles); }

    /// Loads the window on a system of this version.
    Form5& LoadOn(const VersionRecord& version) {
        machine.system.version = version;
        return Load();
    }

    Program program{machine.machine(), nullptr};
};

// Versions as the systems tell them: major, minor, build, family.
const VersionRecord windows95{4, 0, 950, 1, ""};
const VersionRecord windows98{4, 10, 1998, 1, ""};
const VersionRecord windowsME{4, 90, 3000, 1, ""};
const VersionRecord windows2000{5, 0, 2195, 2, ""};
const VersionRecord windowsXP{5, 1, 2600, 2, ""};
const VersionRecord windows10{10, 0, 19045, 2, ""};

const forms::Control* FindControl(const forms::Form& form, const std::string& name) {
    const auto found =
        std::ranges::find_if(form.Controls(), [&](const forms::Control* control) { return control->Name() == name; });
    return found == form.Controls().end() ? nullptr : *found;
}

forms::Colour Red(forms::Colour colour) {
    return colour & 0xFFU;
}
forms::Colour Green(forms::Colour colour) {
    return (colour >> 8U) & 0xFFU;
}
forms::Colour Blue(forms::Colour colour) {
    return (colour >> 16U) & 0xFFU;
}

bool Overlap(const forms::Control& a, const forms::Control& b) {
    return a.Left < b.Left + b.Width && b.Left < a.Left + a.Width && a.Top < b.Top + b.Height &&
           b.Top < a.Top + a.Height;
}

TEST_F(Form5Test, ItSaysThatAllFilesAreCopied) {
    program.session.gAllFiles = true;
    const Form5& window = Load();
    EXPECT_EQ(window.Label2.Caption.Get(), "Copying All Files!");
    EXPECT_EQ(window.Label2.Alignment.Get(), forms::Label::Align::centre);
}

TEST_F(Form5Test, ItSaysThatChangedFilesOnlyAreCopied) {
    program.session.gAllFiles = false;
    EXPECT_EQ(Load().Label2.Caption.Get(), "Copying Changed Files Only!");
}

TEST_F(Form5Test, ItsTitleNamesTheProgram) {
    const Form5& window = Load();
    EXPECT_EQ(window.Label1.Caption.Get(), "Marlok Backup Utility");
    for (const forms::Label* label : {&window.Label1, &window.Label2, &window.Label3}) {
        EXPECT_EQ(label->TextFont.Get().name, "Comic Sans MS") << label->Name();
    }
}

TEST_F(Form5Test, OnWindowsMETheNoteIsItsOwnThoughItPassesForWindows98Too) {
    const Form5& window = LoadOn(windowsME);
    EXPECT_EQ(window.Label3.Caption.Get(), "With Windows ME Animation Is Slow");
    EXPECT_TRUE(window.Label3.Visible);
}

TEST_F(Form5Test, OnWindows98TheAnimationIsSlow) {
    const Form5& window = LoadOn(windows98);
    EXPECT_EQ(window.Label3.Caption.Get(), "With Windows 98 Animation Is Slow");
    EXPECT_TRUE(window.Label3.Visible);
}

TEST_F(Form5Test, OnWindows95TheAnimationIsSlow) {
    const Form5& window = LoadOn(windows95);
    EXPECT_EQ(window.Label3.Caption.Get(), "With Windows 95 Animation Is Slow");
    EXPECT_TRUE(window.Label3.Visible);
}

TEST_F(Form5Test, OnWindows2000ItMayTakeAWhile) {
    const Form5& window = LoadOn(windows2000);
    EXPECT_EQ(window.Label3.Caption.Get(), "This May Take A While!");
    EXPECT_TRUE(window.Label3.Visible);
}

TEST_F(Form5Test, OnWindowsXPItMayTakeAWhile) {
    const Form5& window = LoadOn(windowsXP);
    EXPECT_EQ(window.Label3.Caption.Get(), "This May Take A While!");
    EXPECT_TRUE(window.Label3.Visible);
}

TEST_F(Form5Test, OnANewerWindowsThereIsNoNote) {
    EXPECT_FALSE(LoadOn(windows10).Label3.Visible);
}

TEST_F(Form5Test, OnASystemThatDoesNotTellItsVersionThereIsNoNote) {
    machine.system.answersVersion = false;
    EXPECT_FALSE(LoadOn(windowsME).Label3.Visible);
}

TEST_F(Form5Test, AStatusReplacesTheNote) {
    Form5& window = LoadOn(windows2000);
    window.ShowStatus("Copying Save Files");
    EXPECT_EQ(window.Label3.Caption.Get(), "Copying Save Files");
}

TEST_F(Form5Test, AStatusIsShownWhereNoNoteWas) {
    Form5& window = LoadOn(windows10);
    window.ShowStatus("Copying Save Files");
    EXPECT_TRUE(window.Label3.Visible);
}

TEST_F(Form5Test, AGradientGoesEvenlyFromTheUpperColourTowardsTheLower) {
    EXPECT_THAT(
        GradientRows(forms::Rgb(0, 100, 40), forms::Rgb(100, 200, 80), 4),
        ElementsAre(forms::Rgb(0, 100, 40), forms::Rgb(25, 125, 50), forms::Rgb(50, 150, 60), forms::Rgb(75, 175, 70)));
}

TEST_F(Form5Test, AGradientDescendsInThePartsInWhichTheLowerColourIsDarker) {
    const std::vector<forms::Colour> rows = GradientRows(forms::Rgb(200, 0, 255), forms::Rgb(0, 200, 0), 10);
    ASSERT_THAT(rows, SizeIs(10));
    EXPECT_EQ(rows.front(), forms::Rgb(200, 0, 255));
    EXPECT_EQ(rows[5], forms::Rgb(100, 100, 128));
    EXPECT_EQ(rows.back(), forms::Rgb(20, 180, 26));
}

TEST_F(Form5Test, NoPartOfAGradientsColourEverRunsOverIntoAnother) {
    for (const int rows : {1, 2, 3, 254, 255, 256, 257, 864, 4000}) {
        forms::Colour above = forms::Rgb(255, 0, 255);
        for (const forms::Colour row : GradientRows(above, forms::Rgb(0, 255, 0), rows)) {
            ASSERT_LE(Red(row), Red(above)) << rows;
            ASSERT_GE(Green(row), Green(above)) << rows;
            ASSERT_LE(Blue(row), Blue(above)) << rows;
            ASSERT_EQ(row >> 24U, 0U) << rows;
            above = row;
        }
    }
}

TEST_F(Form5Test, AGradientWithoutRowsIsEmpty) {
    EXPECT_THAT(GradientRows(forms::Rgb(1, 2, 3), forms::Rgb(4, 5, 6), 0), IsEmpty());
    EXPECT_THAT(GradientRows(forms::Rgb(1, 2, 3), forms::Rgb(4, 5, 6), -1), IsEmpty());
}

TEST_F(Form5Test, TheWindowsBackgroundIsAGradientBetweenTheColoursOfItsPictures) {
    const Form5& window = Load();
    const forms::Colour top = window.Picture1.BackColor;
    const forms::Colour bottom = window.Picture2.BackColor;
    EXPECT_NE(top, bottom);
    EXPECT_EQ(window.Backdrop(), GradientRows(top, bottom, window.Height() / twipsPerPixel));
}

TEST_F(Form5Test, AHigherWindowHasMoreRowsOfBackground) {
    Form5& window = Load();
    const std::size_t before = window.Backdrop().size();
    window.Place(0, 0, window.Width(), window.Height() + 100 * twipsPerPixel);
    window.Form_Resize();
    EXPECT_EQ(window.Backdrop().size(), before + 100);
}

TEST_F(Form5Test, TheAnimationLiesInAPictureBoxThatIsAddedUnderItsName) {
    const Form5& window = Load();
    ASSERT_NE(window.picBox, nullptr);
    EXPECT_EQ(FindControl(window, "picBox"), window.picBox.get());
    EXPECT_EQ(window.WebBrowser1.Container(), window.picBox.get());
    EXPECT_EQ(window.picBox->BackColor, 0x800000U);
    EXPECT_TRUE(window.WebBrowser1.IsShown());
}

TEST_F(Form5Test, TheAnimationsOwnFrameAndScrollBarsLieOutsideThePictureBox) {
    const Form5& window = Load();
    constexpr int bar = InMemoryDesktop::scrollBar;
    EXPECT_EQ(window.WebBrowser1.Left, -bar);
    EXPECT_EQ(window.WebBrowser1.Top, -bar);
    EXPECT_EQ(window.WebBrowser1.Left + window.WebBrowser1.Width, window.picBox->Width + bar);
    EXPECT_EQ(window.WebBrowser1.Top + window.WebBrowser1.Height, window.picBox->Height + bar);
}

TEST_F(Form5Test, TheAnimationIsTheFileBesideTheProgram) {
    const Form5& window = Load();
    EXPECT_EQ(window.WebBrowser1.Location.Get(), Beside("pc21.gif"));
    EXPECT_TRUE(window.WebBrowser1.Playing);
}

TEST_F(Form5Test, WithoutTheAnimationsFileTheWindowIsShownAllTheSame) {
    machine.Remove(Beside("pc21.gif"));
    EXPECT_TRUE(Load().IsVisible());
    EXPECT_THAT(machine.desktop.Messages(), IsEmpty());
}

TEST_F(Form5Test, UnloadingStopsTheAnimationAndTakesThePictureBoxAway) {
    Form5& window = Load();
    window.Unload();
    EXPECT_FALSE(window.WebBrowser1.Playing);
    EXPECT_EQ(window.WebBrowser1.Container(), nullptr);
    EXPECT_EQ(window.picBox, nullptr);
    EXPECT_EQ(FindControl(window, "picBox"), nullptr);
    EXPECT_EQ(program.windows.Find<Form5>(), nullptr);
}

TEST_F(Form5Test, UnloadingClosesTheWindowsOfAProcessThatShowsSomethingForIt) {
    machine.desktop.topLevelWindows = {{21, 7, false}, {22, 8, false}, {23, 7, false}};
    Form5& window = Load();
    window.stopProc.processId = 7;
    window.Unload();
    EXPECT_THAT(machine.desktop.closedWindows, ElementsAre(21U, 23U));
}

TEST_F(Form5Test, LoadingShowsTheWindow) {
    EXPECT_TRUE(Load().IsVisible());
}

/// Screens by their size in pixels, at 96 dots to the inch.
class Form5LayoutTest : public Form5Test, public testing::WithParamInterface<std::pair<int, int>> {
 protected:
    Form5LayoutTest() {
        machine.desktop.SetScreenSize(GetParam().first * twipsPerPixel, GetParam().second * twipsPerPixel);
    }

    /// What can be seen in the window itself.
    static std::vector<const forms::Control*> Seen(const Form5& window) {
        return {&window.Label1, &window.Label2, &window.Label3, &window.ProgressBar1, window.picBox.get()};
    }
};

TEST_P(Form5LayoutTest, TheWindowSpansTheScreensWidth) {
    const Form5& window = Load();
    EXPECT_EQ(window.Left(), 0);
    EXPECT_EQ(window.Width(), machine.desktop.ScreenWidth());
    EXPECT_GE(window.Top(), 0);
    EXPECT_LE(window.Top() + window.Height(), machine.desktop.ScreenHeight());
}

TEST_P(Form5LayoutTest, ItsControlsLieInTheWindow) {
    const Form5& window = Load();
    for (const forms::Control* control : Seen(window)) {
        EXPECT_GE(control->Left, 0) << control->Name();
        EXPECT_GE(control->Top, 0) << control->Name();
        EXPECT_LE(control->Left + control->Width, window.Width()) << control->Name();
        EXPECT_LE(control->Top + control->Height, window.Height()) << control->Name();
        EXPECT_GT(control->Width, 0) << control->Name();
        EXPECT_GT(control->Height, 0) << control->Name();
    }
}

TEST_P(Form5LayoutTest, NoControlCoversAnother) {
    const std::vector<const forms::Control*> seen = Seen(Load());
    for (std::size_t i = 0; i < seen.size(); ++i) {
        for (std::size_t j = i + 1; j < seen.size(); ++j) {
            EXPECT_FALSE(Overlap(*seen[i], *seen[j])) << seen[i]->Name() << " and " << seen[j]->Name();
        }
    }
}

TEST_P(Form5LayoutTest, TitleAndStatusSpanTheWindowAndTheModeStandsBelowTheTitle) {
    const Form5& window = Load();
    EXPECT_EQ(window.Label1.Width, window.Width());
    EXPECT_EQ(window.Label3.Width, window.Width());
    EXPECT_GE(window.Label2.Top, window.Label1.Top + window.Label1.Height);
}

INSTANTIATE_TEST_SUITE_P(Screens, Form5LayoutTest,
                         testing::Values(std::pair(640, 480), std::pair(800, 600), std::pair(1024, 768),
                                         std::pair(1920, 1080), std::pair(3840, 2160), std::pair(5120, 1440),
                                         std::pair(1080, 1920)),
                         [](const auto& screen) {
                             return std::to_string(screen.param.first) + "x" + std::to_string(screen.param.second);
                         });

}  // namespace
}  // namespace marlok::test
