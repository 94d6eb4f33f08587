#include "engine/RunJournal.h"

#include <random>

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {

/// For the messages of failing tests, and for comparisons.
static bool operator==(const JournalEntry& a, const JournalEntry& b) {
    return a.size == b.size && a.time == b.time && a.replaces == b.replaces && a.target == b.target &&
           a.source == b.source;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Group = std::vector<JournalEntry>;

bool SameGroups(const std::vector<Group>& a, const std::vector<Group>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Group& x, const Group& y) {
        return std::equal(x.begin(), x.end(), y.begin(), y.end(),
                          [](const JournalEntry& p, const JournalEntry& q) { return p == q; });
    });
}

const Group first{{3, At(10, 0), false, R"(Data\a.doc)", R"(C:\Data\a.doc)"},
                  {0, 0, true, R"(Data\b.doc)", R"(C:\Data\b.doc)"}};
const Group second{{0xFFFF'FFFF'FFFF'FFFF, 0xFFFF'FFFF'FFFF'FFFF, false, "c", "\\\\server\\share\\c"}};

TEST(JournalTextTest, GroupsComeBackAsTheyWere) {
    const std::string text = FormatJournalGroup(first) + FormatJournalGroup({}) + FormatJournalGroup(second);
    EXPECT_TRUE(SameGroups(ParseJournal(text), {first, {}, second}));
    EXPECT_TRUE(SameGroups(ParseJournal(""), {}));
}

TEST(JournalTextTest, AnyNameComesBack) {
    const std::uint32_t seed = std::random_device()();
    std::mt19937 random(seed);
    static constexpr std::string_view alphabet = "aZ\\.%\t\r\n 09Af\xC3\xA4\xED\xA0\x80";
    const auto name = [&] {
        std::string text;
        for (auto left = random() % 12; left > 0; --left) {
            text += alphabet[random() % alphabet.size()];
        }
        return text;
    };
    for (int round = 0; round < 500; ++round) {
        std::vector<Group> groups(random() % 4);
        std::string text;
        for (Group& group : groups) {
            for (auto left = random() % 4; left > 0; --left) {
                group.push_back({random(), random(), random() % 2 == 0, name(), name()});
            }
            text += FormatJournalGroup(group);
        }
        ASSERT_TRUE(SameGroups(ParseJournal(text), groups)) << "seed " << seed << ", round " << round << "\n" << text;
    }
}

TEST(JournalTextTest, ATornGroupIsLeftOutWhereverItIsTorn) {
    const std::string whole = FormatJournalGroup(first);
    const std::string torn = FormatJournalGroup(second);
    for (std::size_t length = 0; length < torn.size(); ++length) {
        EXPECT_TRUE(SameGroups(ParseJournal(whole + torn.substr(0, length)), {first})) << length;
    }
}

TEST(JournalTextTest, DamagedGroupsAndAllThatFollowAreLeftOut) {
    const std::string good = FormatJournalGroup(first);
    for (const char* damaged : {
             "group 1\nend 1\n",
             "group 2\n1\t1\tn\ta\tb\nend 2\n",
             "group 1\n1\t1\tn\ta\tb\nend 2\n",
             "group 1\n1\t1\tx\ta\tb\nend 1\n",
             "group 1\n1\t1\tn\ta\nend 1\n",
             "group 1\n1\t1\tn\ta\tb\tc\nend 1\n",
             "group 1\n-1\t1\tn\ta\tb\nend 1\n",
             "group 1\n1\t99999999999999999999\tn\ta\tb\nend 1\n",
             "group 1\n1\t1\tn\ta%\tb\nend 1\n",
             "group 1\n1\t1\tn\ta%4\tb\nend 1\n",
             "group 1\n1\t1\tn\ta%G0\tb\nend 1\n",
             "group 18446744073709551615\nend 18446744073709551615\n",
             "group x\nend x\n",
             "group\nend\n",
             "nonsense\n",
             "\n",
         }) {
        EXPECT_TRUE(SameGroups(ParseJournal(good + damaged + good), {first})) << damaged;
        EXPECT_TRUE(SameGroups(ParseJournal(damaged), {})) << damaged;
    }
}

class RunJournalTest : public ProgramTest {
 protected:
    RunJournalTest() { machine.Seed({{R"(C:\Data\a.doc)", "one", At(10, 0)}, {R"(E:\Save\)"}}); }

    const Location location{R"(E:\Save)"};
    static constexpr const char* journalPath = R"(E:\Save\~Marlok Backup.run)";

    void WriteJournal(const std::vector<Group>& groups) {
        std::string text;
        for (const Group& group : groups) {
            text += FormatJournalGroup(group);
        }
        machine.Write(journalPath, text);
    }

    /// An entry as the run that copied C:\Data\a.doc wrote it.
    static JournalEntry Entry(const std::string& target, bool replaces = false) {
        return {3, At(10, 0), replaces, target, R"(C:\Data\a.doc)"};
    }

    Leftovers Clear() { return ClearLeftovers(machine.files, location); }
};

TEST_F(RunJournalTest, NothingIsWrittenBeforeTheFirstRecord) {
    RunJournal journal(machine.files, location);
    EXPECT_FALSE(machine.Exists(journalPath));
    EXPECT_EQ(journal.Finish(), error::success);
    EXPECT_FALSE(machine.Exists(journalPath));
}

TEST_F(RunJournalTest, RecordsAreOnTheDiskAtOnceAndGoAtTheEnd) {
    RunJournal journal(machine.files, location);
    EXPECT_EQ(journal.Record(first), error::success);
    EXPECT_TRUE(SameGroups(ParseJournal(machine.Read(journalPath)), {first}));
    EXPECT_EQ(journal.Record(second), error::success);
    EXPECT_TRUE(SameGroups(ParseJournal(machine.Read(journalPath)), {first, second}));
    EXPECT_EQ(journal.Finish(), error::success);
    EXPECT_FALSE(machine.Exists(journalPath));
}

TEST_F(RunJournalTest, WhatIsKeptStaysForTheNextRun) {
    RunJournal journal(machine.files, location);
    EXPECT_EQ(journal.Record(first), error::success);
    journal.KeepForNextRun(first[1]);
    EXPECT_EQ(journal.Finish(), error::success);
    EXPECT_TRUE(SameGroups(ParseJournal(machine.Read(journalPath)), {{first[1]}}));
}

TEST_F(RunJournalTest, ARecordThatCannotBeWrittenIsToldAndStaysAway) {
    machine.AddDrive('E', {true, 0, 1, false});
    RunJournal journal(machine.files, location);
    EXPECT_EQ(journal.Record(first), error::writeProtected);
    EXPECT_EQ(journal.Finish(), error::success);
}

TEST_F(RunJournalTest, WithoutAJournalNothingIsLeft) {
    const Leftovers leftovers = Clear();
    EXPECT_THAT(leftovers.originals, IsEmpty());
    EXPECT_THAT(leftovers.notRemoved, IsEmpty());
    EXPECT_EQ(RemoveJournal(machine.files, location), error::success);
}

TEST_F(RunJournalTest, ATornCopyOfTheLastGroupGoesAndAWholeOneIsTold) {
    machine.Seed({{R"(E:\Save\whole.doc)", "one", At(10, 0)},
                  {R"(E:\Save\short.doc)", "o", At(10, 0)},
                  {R"(E:\Save\late.doc)", "one", At(11, 0)},
                  {R"(E:\Save\readonly.doc)", "o", At(11, 0), attribute::readOnly | attribute::hidden}});
    WriteJournal(
        {{Entry("whole.doc"), Entry("short.doc"), Entry("late.doc"), Entry("readonly.doc"), Entry("none.doc")}});
    EXPECT_THAT(Clear().originals, ElementsAre(R"(C:\Data\a.doc)"));
    EXPECT_EQ(machine.Tree(location.Path()).size(), 2U);
    EXPECT_TRUE(machine.Exists(R"(E:\Save\whole.doc)"));
    EXPECT_EQ(RemoveJournal(machine.files, location), error::success);
    EXPECT_EQ(machine.Tree(location.Path()), (Tree{{"whole.doc", "one"}}));
}

TEST_F(RunJournalTest, OnlyTheLastGroupCanBeTorn) {
    machine.Seed({{R"(E:\Save\early.doc)", "changed since", At(11, 0)}, {R"(E:\Save\torn.doc)", "o", At(11, 0)}});
    WriteJournal({{Entry("early.doc")}, {Entry("torn.doc")}});
    EXPECT_THAT(Clear().originals, IsEmpty());
    EXPECT_TRUE(machine.Exists(R"(E:\Save\early.doc)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\torn.doc)"));
}

TEST_F(RunJournalTest, AJournalThatEndsInATornGroupEndsWithTheGroupBefore) {
    machine.Seed({{R"(E:\Save\torn.doc)", "o", At(11, 0)}, {R"(E:\Save\next.doc)", "o", At(11, 0)}});
    const std::string next = FormatJournalGroup(Group{Entry("next.doc")});
    machine.Write(journalPath, FormatJournalGroup(Group{Entry("torn.doc")}) + next.substr(0, next.size() / 2));
    EXPECT_THAT(Clear().originals, IsEmpty());
    EXPECT_FALSE(machine.Exists(R"(E:\Save\torn.doc)"));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\next.doc)"));
}

TEST_F(RunJournalTest, TheNeighbourOfAReplacedCopyGoesAndTheCopyStays) {
    machine.Seed({{R"(E:\Save\Data\a.doc)", "old", At(9, 0)}, {R"(E:\Save\Data\~Marlok Backup.part)", "ne"}});
    WriteJournal({{Entry(R"(Data\a.doc)", true)}});
    EXPECT_THAT(Clear().originals, IsEmpty());
    EXPECT_EQ(machine.Read(R"(E:\Save\Data\a.doc)"), "old");
    EXPECT_FALSE(machine.Exists(R"(E:\Save\Data\~Marlok Backup.part)"));
}

TEST_F(RunJournalTest, AFileThatCannotBeRemovedIsTold) {
    machine.Seed({{R"(E:\Save\torn.doc)", "o", At(11, 0)}});
    machine.Lock(R"(E:\Save\torn.doc)");
    WriteJournal({{Entry("torn.doc")}});
    EXPECT_THAT(Clear().notRemoved, ElementsAre(R"(E:\Save\torn.doc)"));
    EXPECT_TRUE(machine.Exists(journalPath));
}

TEST_F(RunJournalTest, ALastCopyIsKeptWhereOnlyCoarseTimesMakeTheDifference) {
    machine.Seed({{R"(E:\Save\gone.doc)", "one", At(10, 0, 2)}, {R"(E:\Save\torn.doc)", "one", At(10, 0, 3)}});
    JournalEntry gone = Entry("gone.doc");
    gone.source = R"(C:\Data\gone.doc)";
    JournalEntry torn = gone;
    torn.target = "torn.doc";
    WriteJournal({{gone, torn}});
    EXPECT_THAT(Clear().notRemoved, IsEmpty());
    EXPECT_TRUE(machine.Exists(R"(E:\Save\gone.doc)"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\torn.doc)"));
}

TEST_F(RunJournalTest, ANeighbourOfATextFileGoes) {
    machine.Seed({{R"(E:\Save\~Marlok Backup.new)", "half"}});
    EXPECT_THAT(Clear().notRemoved, IsEmpty());
    EXPECT_EQ(machine.Tree(location.Path()), Tree{});
}

class HostileJournalTest : public RunJournalTest, public testing::WithParamInterface<const char*> {};

TEST_P(HostileJournalTest, NothingOutsideTheLocationIsTouched) {
    machine.Seed({{R"(E:\x)", "o", At(11, 0)},
                  {R"(E:\x.txt)", "o", At(11, 0)},
                  {R"(E:\Other\x)", "o", At(11, 0)},
                  {R"(E:\Other\~Marlok Backup.part)", "o", At(11, 0)},
                  {R"(E:\~Marlok Backup.part)", "o", At(11, 0)},
                  {R"(C:\x)", "o", At(11, 0)},
                  {R"(E:\Save\kept.doc)", "o", At(11, 0)},
                  {R"(E:\Save\Sub\kept.doc)", "o", At(11, 0)}});
    machine.MakeLink(R"(E:\Save\Link)", R"(E:\Other)");
    for (const bool replaces : {false, true}) {
        WriteJournal({{Entry(GetParam(), replaces)}});
        const Tree c = machine.Tree("C:\\");
        const Tree e = machine.Tree("E:\\");
        EXPECT_THAT(Clear().notRemoved, IsEmpty());
        EXPECT_EQ(machine.Tree("C:\\"), c);
        EXPECT_EQ(machine.Tree("E:\\"), e);
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, HostileJournalTest,
                         testing::Values(R"(..\x)", R"(..\..\x)", R"(Sub\..\..\x)", R"(..\Other\x)", R"(C:\x)",
                                         R"(E:\x)", R"(\x)", R"(\\server\share\x)", R"(\\?\C:\x)", "kept.doc:stream",
                                         "../x", "Sub/../../x", R"(Link\x)", R"(Link\..\..\x)", "", ".", "..", R"(.\x)",
                                         R"(Sub\)", "*", "?ept.doc", R"(Sub\*)", R"(Missing\x)", R"(kept.doc\x)"));

TEST_F(RunJournalTest, AFolderOrALinkInTheCopysPlaceIsLeftAlone) {
    machine.Seed({{R"(E:\Save\folder.doc\x)", "x"}, {R"(C:\Data\b.doc)", "b"}});
    machine.MakeFileLink(R"(E:\Save\link.doc)", R"(C:\Data\b.doc)");
    WriteJournal({{Entry("folder.doc"), Entry("link.doc")}});
    EXPECT_THAT(Clear().notRemoved, IsEmpty());
    EXPECT_EQ(machine.Read(R"(E:\Save\folder.doc\x)"), "x");
    EXPECT_TRUE(machine.Exists(R"(E:\Save\link.doc)"));
    EXPECT_EQ(machine.Read(R"(C:\Data\b.doc)"), "b");
}

}  // namespace
}  // namespace marlok::test
