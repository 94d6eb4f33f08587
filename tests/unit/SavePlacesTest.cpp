#include "engine/SavePlaces.h"

#include "fileops/Whereabouts.h"
#include "tests/machine/ForwardingFiles.h"
#include "tests/machine/Program.h"
#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A disk whose paths cannot be resolved: folders are told apart by their identity alone.
class UnresolvedFiles : public ForwardingFiles {
 public:
    using ForwardingFiles::ForwardingFiles;
    SystemError FinalPath(const std::string& /*path*/, std::string& /*finalPath*/) override {
        return error::notSupported;
    }
};

/// A disk that numbers nothing: folders are told apart by their paths alone.
class NumberlessFiles : public ForwardingFiles {
 public:
    using ForwardingFiles::ForwardingFiles;
    SystemError Identify(const std::string& /*path*/, FileIdentity& /*identity*/) override {
        return error::notSupported;
    }
};

class SavePlacesTest : public ProgramTest {
 protected:
    SavePlacesTest() { machine.Seed({{R"(C:\Work\Data\a.doc)", "one", At(10, 0)}, {R"(C:\Other\o.txt)", "other"}}); }

    std::string WhyNotEmptied(const std::string& location) { return WhyNotEmptied(machine.files, location); }

    std::string WhyNotEmptied(FileSystem& files, const std::string& location) {
        Machine on = WithFiles(machine, files);
        const Program program(on);
        return SavePlaces(on, program.session.Configuration()).WhyNotEmptied(Location(location));
    }

    /// Copies everything into `location` and expects that whatever was there before is still there.
    void ExpectNotEmptied(const std::string& location) {
        const Tree before = machine.Tree("C:\\");
        EXPECT_EQ(RunUnattended(machine, "A"), exitcode::somethingFailed);
        EXPECT_THAT(ErrorLog(machine), Contains(Reported(Location(location).Path())));
        const Tree after = machine.Tree("C:\\");
        for (const auto& [path, content] : before) {
            ASSERT_EQ(after.count(path), 1U) << path << " is gone";
            if (!path.ends_with(programfile::errorLog) && !path.ends_with(programfile::runLog) &&
                !path.ends_with(programfile::report) && !path.ends_with(programfile::history)) {
                EXPECT_EQ(after.at(path), content) << path;
            }
        }
    }
};

TEST_F(SavePlacesTest, AnOrdinaryLocationMayBeEmptied) {
    const std::vector<std::string> sources{R"(C:\Work\Data)"};
    Configure(machine, {{R"(E:\Save)", sources}, {R"(C:\Work\Data2)", sources}, {R"(C:\Work\Data\Below)", sources}});
    EXPECT_EQ(WhyNotEmptied(R"(E:\Save)"), "");
    machine.Seed({{R"(E:\Save\)"}});
    EXPECT_EQ(WhyNotEmptied(R"(E:\Save)"), "");
    EXPECT_EQ(WhyNotEmptied(R"(C:\Save)"), "");
    EXPECT_EQ(WhyNotEmptied(R"(C:\Work\Data2)"), "") << "a name that begins alike is another folder";
    EXPECT_EQ(WhyNotEmptied(R"(C:\Work\Data\Below)"), "") << "a location below its source holds no source";
}

TEST_F(SavePlacesTest, ALocationAtOrAboveASourceIsNeverEmptied) {
    for (const char* location :
         {R"(C:\Work\Data)", R"(C:\Work)", "C:\\", R"(c:\WORK)", R"(C:\Work\)", R"(C:\Work\Data\)"}) {
        Configure(machine, {{location, {R"(C:\Work\Data)"}}});
        EXPECT_THAT(WhyNotEmptied(location), HasSubstr(R"(C:\Work\Data)")) << location;
        ExpectNotEmptied(location);
    }
}

TEST_F(SavePlacesTest, ASourceOfAnotherLocationCountsAsWell) {
    Configure(machine, {{R"(C:\Work)", {R"(C:\Other)"}}, {R"(E:\Save)", {R"(C:\Work\Data)"}}});
    EXPECT_THAT(WhyNotEmptied(R"(C:\Work)"), HasSubstr(R"(C:\Work\Data)"));
    ExpectNotEmptied(R"(C:\Work)");
}

TEST_F(SavePlacesTest, ASingleFileInTheLocationKeepsItFromBeingEmptied) {
    Configure(machine, {{R"(C:\Work\Data)", {R"(C:\Work\Data\a.doc)"}}});
    ExpectNotEmptied(R"(C:\Work\Data)");
}

TEST_F(SavePlacesTest, TheProgramFolderAndThoseAboveAreNeverEmptied) {
    for (const char* location : {programFolder, R"(C:\Program Files)"}) {
        Configure(machine, {{location, {R"(C:\Other)"}}});
        EXPECT_THAT(WhyNotEmptied(location), HasSubstr("this program")) << location;
        ExpectNotEmptied(location);
    }
}

TEST_F(SavePlacesTest, TheWindowsFolderIsNeverEmptied) {
    Configure(machine, {{R"(C:\WINDOWS)", {R"(C:\Other)"}}});
    EXPECT_THAT(WhyNotEmptied(R"(C:\WINDOWS)"), HasSubstr("Windows"));
    ExpectNotEmptied(R"(C:\WINDOWS)");
}

TEST_F(SavePlacesTest, AFolderOfListsOfOriginalPathsIsNeverEmptied) {
    const std::string lists = Beside("Backups");
    Configure(machine, {{R"(E:\Backups\Daily)", {R"(C:\Work\Data)"}}, {lists, {R"(C:\Other)"}}});
    EXPECT_EQ(RunUnattended(machine, R"(C E:\Backups)"), exitcode::allDone);
    EXPECT_THAT(WhyNotEmptied(lists), HasSubstr("list of original paths"));
    ExpectNotEmptied(lists);
}

TEST_F(SavePlacesTest, ALinkToWhatHoldsASourceIsSeenThrough) {
    machine.MakeLink(R"(C:\Link)", R"(C:\Work)");
    Configure(machine, {{R"(C:\Link)", {R"(C:\Work\Data)"}}});
    EXPECT_NE(WhyNotEmptied(R"(C:\Link)"), "");
    ExpectNotEmptied(R"(C:\Link)");
}

TEST_F(SavePlacesTest, ALinkOnTheWayToTheSourceIsSeenThrough) {
    machine.MakeLink(R"(C:\Link)", R"(C:\Work\Data)");
    Configure(machine, {{R"(C:\Work)", {R"(C:\Link)"}}});
    EXPECT_NE(WhyNotEmptied(R"(C:\Work)"), "");
    ExpectNotEmptied(R"(C:\Work)");
}

TEST_F(SavePlacesTest, ALocationThatHoldsALinkToItsSourceIsEmptiedOfTheLinkAlone) {
    machine.Seed({{R"(E:\Save\stale.txt)", "stale"}});
    machine.MakeLink(R"(E:\Save\Link)", R"(C:\Work)");
    Configure(machine, {{R"(E:\Save)", {R"(C:\Work\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::allDone);
    EXPECT_EQ(machine.Tree(R"(E:\Save)"), (Tree{{"Work\\", ""}, {"Work\\Data\\", ""}, {"Work\\Data\\a.doc", "one"}}));
    EXPECT_EQ(machine.Read(R"(C:\Work\Data\a.doc)"), "one");
}

TEST_F(SavePlacesTest, ASourceInsideTheLocationByItsLinkedNameIsKept) {
    machine.MakeLink(R"(C:\Work\Link)", R"(C:\Other)");
    Configure(machine, {{R"(C:\Work)", {R"(C:\Work\Link)"}}});
    ExpectNotEmptied(R"(C:\Work)");
}

TEST_F(SavePlacesTest, ASubstitutedDriveIsSeenThrough) {
    machine.disk.Substitute("S:", R"(C:\Work)");
    Configure(machine, {{"S:\\", {R"(C:\Work\Data)"}}});
    EXPECT_NE(WhyNotEmptied("S:\\"), "");
    ExpectNotEmptied("S:\\");
    Configure(machine, {{R"(C:\Work)", {R"(S:\Data)"}}});
    ExpectNotEmptied(R"(C:\Work)");
}

TEST_F(SavePlacesTest, IdentityTellsWhatNoPathTells) {
    UnresolvedFiles files(machine.files);
    machine.disk.Substitute("S:", R"(C:\Work)");
    Configure(machine, {{"S:\\", {R"(C:\Work\Data)"}}});
    EXPECT_NE(WhyNotEmptied(files, "S:\\"), "");
    machine.disk.Substitute("T:", R"(C:\Program Files)");
    EXPECT_NE(WhyNotEmptied(files, "T:\\"), "");
    machine.disk.Substitute("W:", R"(C:\Windows)");
    EXPECT_NE(WhyNotEmptied(files, "W:\\"), "");
}

TEST_F(SavePlacesTest, PathsTellWhatNoIdentityTells) {
    NumberlessFiles files(machine.files);
    machine.disk.Substitute("S:", R"(C:\Work)");
    Configure(machine, {{"S:\\", {R"(C:\Work\Data)"}}, {R"(E:\Save)", {R"(C:\Other)"}}});
    EXPECT_NE(WhyNotEmptied(files, "S:\\"), "");
    EXPECT_EQ(WhyNotEmptied(files, R"(E:\Save)"), "");
}

TEST_F(SavePlacesTest, AMissingSourceKeepsTheLastCopies) {
    machine.Seed({{R"(E:\Save\Gone\only.txt)", "only copy"}, {R"(E:\Save\stale.txt)", "stale"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Gone)", R"(C:\Work\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::somethingFailed);
    EXPECT_EQ(machine.Read(R"(E:\Save\Gone\only.txt)"), "only copy");
    EXPECT_EQ(machine.Read(R"(E:\Save\Work\Data\a.doc)"), "one");
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Failed(R"(C:\Gone)", error::fileNotFound), Reported(R"(E:\Save)")));
}

TEST_F(SavePlacesTest, ADriveThatIsNotReadyKeepsTheLastCopies) {
    machine.AddDrive('D');
    machine.SetDriveFailure("D:", error::notReady);
    machine.Seed({{R"(E:\Save\Data\only.txt)", "only copy"}});
    Configure(machine, {{R"(E:\Save)", {R"(D:\Data)"}}});
    EXPECT_EQ(RunUnattended(machine, "A"), exitcode::somethingFailed);
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\only.txt)"), "only copy");
}

TEST_F(SavePlacesTest, TheMissingSourceOfAnotherLocationIsNoReason) {
    machine.Seed({{R"(E:\Save\stale.txt)", "stale"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Work\Data)"}}, {R"(E:\More)", {R"(C:\Gone)"}}});
    EXPECT_EQ(WhyNotEmptied(R"(E:\Save)"), "");
}

/// One call that fails must not be what lets originals be deleted.
TEST_F(SavePlacesTest, NoSingleFailureLosesASource) {
    for (std::size_t k = 1;; ++k) {
        InMemoryMachine fresh;
        Install(fresh);
        fresh.Seed({{R"(C:\Work\Data\a.doc)", "one"}, {R"(C:\Work\own.txt)", "own"}});
        fresh.MakeLink(R"(C:\Link)", R"(C:\Work)");
        Configure(fresh, {{R"(C:\Link)", {R"(C:\Work\Data)"}}});
        fresh.faults.FailAt(k, error::accessDenied);
        static_cast<void>(RunUnattended(fresh, "A"));
        ASSERT_TRUE(fresh.Exists(R"(C:\Work\Data\a.doc)")) << "lost when step " << k << " failed";
        ASSERT_TRUE(fresh.Exists(R"(C:\Work\own.txt)")) << "lost when step " << k << " failed";
        if (!fresh.faults.Fired()) {
            EXPECT_GT(k, 50U);
            return;
        }
    }
}

class OwnFilesTest : public ProgramTest {
 protected:
    /// Saves C:\Other into `location` from sources that bear the names of the program's files.
    void ExpectOwnFilesKept(const std::string& location, const std::string& source) {
        Configure(machine, {{location, {source}}});
        EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
        EXPECT_EQ(machine.Read(Beside("Marlok Backup.exe")), "program");
        EXPECT_EQ(machine.Read(Beside("Restart.sec")), "restarter");
        EXPECT_FALSE(machine.Exists(Beside("DeleteFolder.txt")));
        EXPECT_FALSE(machine.Exists(Beside("Restart.exe")));
    }

    void SeedSource(const std::string& folder) {
        for (const char* name : {"Marlok Backup.exe", "RESTART.SEC", "DeleteFolder.txt", "restart.exe", "Command.txt",
                                 "Backup Log File.txt", "Backup Error Log.txt", "harmless.txt"}) {
            machine.Seed({{folder + "\\" + name, "not the program's", At(11, 0)}});
        }
    }
};

TEST_F(OwnFilesTest, ALocationThatIsTheProgramFolderKeepsTheProgramsFiles) {
    // D:\ is saved straight into the program folder.
    SeedSource("D:");
    ExpectOwnFilesKept(programFolder, "D:\\");
    EXPECT_EQ(machine.Read(Beside("harmless.txt")), "not the program's");
    EXPECT_THAT(ErrorLog(machine), Contains(Reported(R"(D:\Marlok Backup.exe)")));
    EXPECT_THAT(ErrorLog(machine), Contains(Reported(R"(D:\RESTART.SEC)")));
    EXPECT_THAT(ErrorLog(machine), Contains(Reported(R"(D:\DeleteFolder.txt)")));
}

TEST_F(OwnFilesTest, ALocationAboveTheProgramFolderKeepsTheProgramsFiles) {
    SeedSource(R"(D:\Marlok)");
    ExpectOwnFilesKept(R"(C:\Program Files)", R"(D:\Marlok)");
    EXPECT_EQ(machine.Read(Beside("harmless.txt")), "not the program's");
}

TEST_F(OwnFilesTest, ALocationThatIsALinkToTheProgramFolderKeepsTheProgramsFiles) {
    machine.MakeLink(R"(E:\Link)", programFolder);
    SeedSource("D:");
    ExpectOwnFilesKept(R"(E:\Link)", "D:\\");
    EXPECT_EQ(machine.Read(Beside("harmless.txt")), "not the program's");
}

TEST_F(OwnFilesTest, ALocationOnADriveThatStandsForTheProgramFolderKeepsTheProgramsFiles) {
    machine.disk.Substitute("S:", programFolder);
    SeedSource("D:");
    ExpectOwnFilesKept("S:\\", "D:\\");
}

TEST_F(OwnFilesTest, ListsOfOriginalPathsAreKept) {
    machine.Seed({{R"(D:\Save.txt)", "not a list", At(11, 0)}, {R"(C:\Data\a.doc)", "one"}});
    Configure(machine, {{R"(E:\Save)", {R"(C:\Data)"}}, {programFolder, {"D:\\"}}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::somethingFailed);
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre(R"(C:\Data\a.doc)"));
    EXPECT_THAT(ErrorLog(machine), ElementsAre(Reported(R"(D:\Save.txt)")));
}

TEST_F(OwnFilesTest, ElsewhereFilesOfTheseNamesAreSavedLikeAnyOther) {
    SeedSource(R"(D:\Copies)");
    Configure(machine, {{R"(E:\Save)", {R"(D:\Copies)"}}});
    EXPECT_EQ(RunUnattended(machine, "C"), exitcode::allDone);
    EXPECT_EQ(machine.Tree(R"(E:\Save\Copies)").size(), 8U);
    EXPECT_THAT(ErrorLog(machine), IsEmpty());
}

TEST(ResolvedPathTest, ResolvesAsFarAsThePathExists) {
    InMemoryMachine machine;
    machine.Seed({{R"(C:\Work\Data\a.doc)", "one"}});
    machine.MakeLink(R"(C:\Link)", R"(C:\Work)");
    EXPECT_EQ(ResolvedPath(machine.files, R"(C:\Link\Data)"), R"(C:\Work\Data)");
    EXPECT_EQ(ResolvedPath(machine.files, R"(C:\Link\New\Deeper)"), R"(C:\Work\New\Deeper)");
    EXPECT_EQ(ResolvedPath(machine.files, R"(C:\Link\)"), R"(C:\Work)");
    EXPECT_EQ(ResolvedPath(machine.files, R"(X:\Nowhere\Near)"), R"(X:\Nowhere\Near)");
    EXPECT_EQ(ResolvedPath(machine.files, "C:\\"), "C:\\");
}

TEST(IsInsideTest, AtBelowAndBeside) {
    InMemoryMachine machine;
    machine.Seed({{R"(C:\Work\Data\)"}});
    EXPECT_TRUE(IsInside(machine.files, R"(C:\Work\Data)", R"(C:\Work\Data)"));
    EXPECT_TRUE(IsInside(machine.files, R"(c:\WORK\data\New)", R"(C:\Work\Data\)"));
    EXPECT_TRUE(IsInside(machine.files, R"(C:\Work)", "C:\\"));
    EXPECT_FALSE(IsInside(machine.files, R"(C:\Work)", R"(C:\Work\Data)"));
    EXPECT_FALSE(IsInside(machine.files, R"(C:\Work\Data2)", R"(C:\Work\Data)"));
    EXPECT_FALSE(IsInside(machine.files, R"(E:\Work\Data)", "C:\\"));
}

}  // namespace
}  // namespace marlok::test
