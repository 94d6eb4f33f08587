#include "engine/SharedPlaces.h"

#include "settings/CRegSettings.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SharedPlacesTest : public ProgramTest {
 protected:
    /// What the sources of a location share their places with, "source + other = place" each.
    Lines Shared(const std::string& location, const Lines& sources) {
        CRegSettings settings(machine.registry, machine.system);
        Lines lines;
        for (const SharedPlace& each : FindSharedPlaces(BackupSettings(settings), Location(location), sources)) {
            lines.push_back(each.source + " + " + each.other + " = " + each.place);
        }
        return lines;
    }
};

TEST_F(SharedPlacesTest, EqualPathsOnTwoDrivesMeetInOneLocation) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(D:\DATA)", R"(C:\Music)"}}});
    EXPECT_THAT(Shared(R"(E:\Save)", {R"(D:\DATA)"}), ElementsAre(R"(D:\DATA + C:\Data = E:\Save\Data)"));
    EXPECT_THAT(Shared(R"(E:\Save)", {R"(C:\Music)"}), IsEmpty());
}

TEST_F(SharedPlacesTest, AFileMeetsTheFolderOfAnotherDrive) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(D:\Data\Sub\a.doc)"}}});
    EXPECT_THAT(Shared(R"(E:\Save)", {R"(D:\Data\Sub\a.doc)"}),
                ElementsAre(R"(D:\Data\Sub\a.doc + C:\Data = E:\Save\Data\Sub\a.doc)"));
    EXPECT_THAT(Shared(R"(E:\Save)", {R"(C:\Data)"}),
                ElementsAre(R"(C:\Data + D:\Data\Sub\a.doc = E:\Save\Data\Sub\a.doc)"));
}

TEST_F(SharedPlacesTest, OneSourceInsideAnotherIsTheSameFiles) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)", R"(C:\Data\Sub)", R"(c:\data)", "C:\\"}}});
    EXPECT_THAT(Shared(R"(E:\Save)", {R"(C:\Data)", R"(C:\Data\Sub)", R"(c:\data)", "C:\\"}), IsEmpty());
}

TEST_F(SharedPlacesTest, AWholeDriveMeetsEverythingOfOtherDrives) {
    Configure(machine, {{R"(E:\Save)", {"C:\\", R"(D:\Data)"}}});
    EXPECT_THAT(Shared(R"(E:\Save)", {"C:\\"}), ElementsAre(R"(C:\ + D:\Data = E:\Save\Data)"));
}

TEST_F(SharedPlacesTest, NamesThatOnlyBeginAlikeDoNotMeet) {
    Configure(machine, {{R"(E:\Save)", {R"(C:\Photos)", R"(D:\Photos2019)"}}, {R"(E:\Save2)", {R"(D:\Photos)"}}});
    EXPECT_THAT(Shared(R"(E:\Save)", {R"(D:\Photos2019)"}), IsEmpty());
}

TEST_F(SharedPlacesTest, ALocationInsideAnotherMeetsWhatThatSaves) {
    Configure(machine, {{R"(E:\B)", {R"(C:\Daily)"}}, {R"(E:\B\Daily)", {R"(C:\Docs)"}}});
    EXPECT_THAT(Shared(R"(E:\B\Daily)", {R"(C:\Docs)"}), ElementsAre(R"(C:\Docs + C:\Daily = E:\B\Daily\Docs)"));
    EXPECT_THAT(Shared(R"(E:\B)", {R"(C:\Daily)"}), ElementsAre(R"(C:\Daily + C:\Docs = E:\B\Daily\Docs)"));
}

TEST_F(SharedPlacesTest, LocationsOfOneNameAreLookedAtOnAllTheirDrives) {
    Configure(machine, {{R"(E:\One)", {R"(C:\Data)"}}, {R"(F:\One)", {R"(C:\Data)"}}, {"F:\\", {R"(D:\One)"}}});
    EXPECT_THAT(Shared(R"(E:\One)", {R"(C:\Data)"}), ElementsAre(R"(C:\Data + D:\One = F:\One\Data)"));
}

TEST_F(SharedPlacesTest, ANetworkSourceMeetsFoldersCalledLikeItsServer) {
    Configure(machine, {{R"(E:\Save)", {R"(\\server\share\x)", R"(C:\server\share)"}}});
    EXPECT_THAT(Shared(R"(E:\Save)", {R"(\\server\share\x)"}),
                ElementsAre(R"(\\server\share\x + C:\server\share = E:\Save\server\share\x)"));
}

}  // namespace
}  // namespace marlok::test
