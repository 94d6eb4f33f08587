#include "engine/RunJournal.h"

#include <random>

#include "paths/WorkingFiles.h"
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

bool SameGroups(const JournalText& a, const std::vector<Group>& b) {
    return std::equal(a.groups.begin(), a.groups.end(), b.begin(), b.end(), [](const JournalGroup& x, const Group& y) {
        return std::equal(x.entries.begin(), x.entries.end(), y.begin(), y.end(),
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
        const JournalText cut = ParseJournal(whole + torn.substr(0, length));
        EXPECT_TRUE(SameGroups(cut, {first})) << length;
        EXPECT_FALSE(cut.damaged) << length;
        const JournalText unsettled = ParseJournal(whole + ("unsettled" + torn.substr(5)).substr(0, length));
        EXPECT_FALSE(unsettled.damaged) << length;
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
        EXPECT_TRUE(ParseJournal(good + damaged + good).damaged) << damaged;
        EXPECT_TRUE(SameGroups(ParseJournal(damaged), {})) << damaged;
    }
    EXPECT_TRUE(ParseJournal(std::string(100, '\0')).damaged);
}

TEST(JournalTextTest, UnsettledGroupsAreToldFromThoseOfARun) {
    const JournalText text = ParseJournal(FormatJournalGroup(first, true) + FormatJournalGroup(second));
    ASSERT_EQ(text.groups.size(), 2U);
    EXPECT_TRUE(text.groups[0].unsettled);
    EXPECT_FALSE(text.groups[1].unsettled);
}

class RunJournalTest : public ProgramTest {
 protected:
    RunJournalTest() { machine.Seed({{R"(C:\Data\a.doc)", "one", At(10, 0)}, {R"(E:\Save\)"}}); }

    const Location location{R"(E:\Save)"};
    const std::string journalPath = location.Below(workingfile::JournalOf(machine.system.ComputerName()));
    const std::string partName = workingfile::PartOf(machine.system.ComputerName());

    void WriteJournal(const std::vector<Group>& groups) {
        std::string text;
        for (const Group& group : groups) {
            text += FormatJournalGroup(group);
        }
        machine.Write(journalPath, text);
    }

    /// An entry for a file of the source C:\.
    static JournalEntry Entry(const std::string& target, bool replaces = false) {
        return {3, At(10, 0), replaces, target, "C:\\" + target};
    }

    RunJournal Loaded() {
        RunJournal journal(machine.machine(), location);
        EXPECT_EQ(journal.Load(), RunJournal::State::ready);
        return journal;
    }

    JournalText OnDisk() { return ParseJournal(machine.Read(journalPath)); }

    Lines Finish(RunJournal& journal, bool everything = false) {
        Lines incomplete;
        EXPECT_EQ(journal.Finish(everything, incomplete), error::success);
        return incomplete;
    }
};

TEST_F(RunJournalTest, NothingIsWrittenBeforeTheFirstChange) {
    RunJournal journal = Loaded();
    EXPECT_FALSE(machine.Exists(journalPath));
    EXPECT_THAT(Finish(journal), IsEmpty());
    EXPECT_EQ(machine.Tree(location.Path()), Tree{});
}

TEST_F(RunJournalTest, RecordsAreOnTheDeviceAtOnceAndGoAtTheEnd) {
    RunJournal journal = Loaded();
    EXPECT_EQ(journal.Begin(), RunJournal::Begun::yes);
    EXPECT_TRUE(machine.Exists(journalPath)) << "others see that a run is at work";
    machine.faults.Reset();
    EXPECT_TRUE(journal.Record(first));
    EXPECT_EQ(machine.faults.Count("Flush"), 1U) << "before the first copy begins";
    EXPECT_TRUE(SameGroups(OnDisk(), {first}));
    EXPECT_TRUE(journal.Record(second));
    EXPECT_TRUE(SameGroups(OnDisk(), {first, second}));
    EXPECT_THAT(Finish(journal), IsEmpty());
    EXPECT_FALSE(machine.Exists(journalPath));
}

TEST_F(RunJournalTest, AfterAFailedWriteNothingMoreIsRecorded) {
    RunJournal journal = Loaded();
    EXPECT_EQ(journal.Begin(), RunJournal::Begun::yes);
    machine.faults.TearWrites(true);
    machine.faults.FailWhen(
        [](const Step& step) { return step.operation == "Write" ? error::diskFull : error::success; });
    EXPECT_FALSE(journal.Record(first));
    machine.faults.FailWhen(nullptr);
    EXPECT_FALSE(journal.Record(second)) << "behind a torn group nobody would find it";
    EXPECT_FALSE(OnDisk().damaged);
    EXPECT_THAT(Finish(journal), IsEmpty());
}

TEST_F(RunJournalTest, WhereNothingCanBeRecordedTheRunGoesOn) {
    DriveOptions options;
    options.readOnly = true;
    machine.AddDrive('E', options);
    RunJournal journal = Loaded();
    EXPECT_EQ(journal.Begin(), RunJournal::Begun::yes);
    EXPECT_FALSE(journal.Record(first));
    EXPECT_THAT(Finish(journal), IsEmpty());
}

TEST_F(RunJournalTest, WhatMayBeTornIsNotDeleted) {
    machine.Seed({{R"(E:\Save\Data\torn.doc)", "o", At(11, 0)}, {R"(E:\Save\Data\whole.doc)", "one", At(10, 0)}});
    WriteJournal({{Entry(R"(Data\torn.doc)"), Entry(R"(Data\whole.doc)"), Entry(R"(Data\none.doc)")}});
    RunJournal journal = Loaded();
    EXPECT_EQ(machine.Tree(location.Path()).size(), 4U);
    EXPECT_TRUE(journal.MayBeTorn(R"(Data\torn.doc)"));
    EXPECT_TRUE(journal.MayBeTorn(R"(data\WHOLE.doc)")) << "size and time prove nothing";
    EXPECT_FALSE(journal.MayBeTorn(R"(Data\other.doc)"));
    EXPECT_THAT(journal.Originals(), IsEmpty()) << "copied anew, they are listed then";
}

TEST_F(RunJournalTest, OnlyTheLastGroupCanBeTornAndThoseBeforeAreListed) {
    machine.Seed({{R"(E:\Save\Data\early.doc)", "one", At(11, 0)},
                  {R"(E:\Save\Data\short.doc)", "o", At(10, 0)},
                  {R"(E:\Save\Data\torn.doc)", "o", At(11, 0)}});
    WriteJournal({{Entry(R"(Data\early.doc)"), Entry(R"(Data\short.doc)"), Entry(R"(Data\gone.doc)")},
                  {Entry(R"(Data\torn.doc)")}});
    const RunJournal journal = Loaded();
    EXPECT_THAT(journal.Originals(), ElementsAre(R"(C:\Data\early.doc)"));
    EXPECT_FALSE(journal.MayBeTorn(R"(Data\early.doc)"));
    EXPECT_TRUE(journal.MayBeTorn(R"(Data\torn.doc)"));
}

TEST_F(RunJournalTest, AWholeCopyThatCannotBeLookedAtIsCopiedAnew) {
    machine.Seed({{R"(E:\Save\Data\early.doc)", "one", At(11, 0)}, {R"(E:\Save\Data\last.doc)", "one", At(11, 0)}});
    WriteJournal({{Entry(R"(Data\early.doc)")}, {Entry(R"(Data\last.doc)")}});
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "GetEntry" && step.path == R"(E:\Save\Data\early.doc)" ? error::ioDevice
                                                                                        : error::success;
    });
    const RunJournal journal = Loaded();
    EXPECT_THAT(journal.Originals(), IsEmpty());
    EXPECT_TRUE(journal.MayBeTorn(R"(Data\early.doc)"));
}

TEST_F(RunJournalTest, ASourceIsBelievedOnlyWhereItIsSavedInThatPlace) {
    machine.Seed({{R"(E:\Save\Data\a.doc)", "one", At(10, 0)}});
    JournalEntry lie = Entry(R"(Data\a.doc)");
    lie.source = R"(C:\Windows\a.doc)";
    WriteJournal({{lie}, {}});
    EXPECT_THAT(Loaded().Originals(), IsEmpty());
}

TEST_F(RunJournalTest, AJournalThatEndsInATornGroupEndsWithTheGroupBefore) {
    const std::string next = FormatJournalGroup(Group{Entry("next.doc")});
    machine.Write(journalPath, FormatJournalGroup(Group{Entry("torn.doc")}) + next.substr(0, next.size() / 2));
    const RunJournal journal = Loaded();
    EXPECT_TRUE(journal.MayBeTorn("torn.doc"));
    EXPECT_FALSE(journal.MayBeTorn("next.doc"));
}

TEST_F(RunJournalTest, WhatIsNotSettledStaysForTheNextRun) {
    machine.Seed({{R"(E:\Save\torn.doc)", "o"}, {R"(E:\Save\again.doc)", "o"}});
    WriteJournal({{Entry("torn.doc"), Entry("again.doc"), Entry("none.doc")}});
    {
        RunJournal journal = Loaded();
        EXPECT_EQ(journal.Begin(), RunJournal::Begun::yes);
        EXPECT_TRUE(OnDisk().groups.front().unsettled) << "before this run writes anything of its own";
        EXPECT_TRUE(journal.Record(Group{Entry("again.doc"), Entry("new.doc")}));
        journal.Settle("again.doc");
        EXPECT_THAT(Finish(journal), ElementsAre(R"(E:\Save\torn.doc)"));
    }
    RunJournal later = Loaded();
    EXPECT_TRUE(later.MayBeTorn("torn.doc"));
    EXPECT_FALSE(later.MayBeTorn("again.doc"));
    EXPECT_FALSE(later.MayBeTorn("none.doc")) << "it was searched for, and is not there";
    EXPECT_FALSE(later.MayBeTorn("new.doc"));
    EXPECT_THAT(Finish(later), ElementsAre(R"(E:\Save\torn.doc)"));
    machine.Remove(R"(E:\Save\torn.doc)");
    RunJournal last = Loaded();
    EXPECT_THAT(Finish(last), IsEmpty());
    EXPECT_FALSE(machine.Exists(journalPath));
}

TEST_F(RunJournalTest, WhatCannotBeLookedAtIsNotForgotten) {
    machine.Seed({{R"(E:\Save\torn.doc)", "o"}});
    WriteJournal({{Entry("torn.doc")}});
    RunJournal journal = Loaded();
    machine.faults.FailWhen([](const Step& step) {
        return step.operation == "GetEntry" && step.path.ends_with("torn.doc") ? error::ioDevice : error::success;
    });
    EXPECT_THAT(Finish(journal), ElementsAre(R"(E:\Save\torn.doc)"));
    machine.faults.FailWhen(nullptr);
    EXPECT_TRUE(Loaded().MayBeTorn("torn.doc"));
}

TEST_F(RunJournalTest, ALeftoverOfThisRunIsWrittenDownAtOnce) {
    RunJournal journal = Loaded();
    EXPECT_EQ(journal.Begin(), RunJournal::Begun::yes);
    EXPECT_TRUE(journal.Record(Group{Entry("a.doc"), Entry("b.doc")}));
    journal.MarkUnsettled(Entry("a.doc"));
    EXPECT_TRUE(journal.Record(Group{Entry("c.doc")}));
    ASSERT_EQ(OnDisk().groups.size(), 3U);
    EXPECT_TRUE(OnDisk().groups[1].unsettled);
    // The process dies here.
    machine.Seed({{R"(E:\Save\a.doc)", "o"}, {R"(E:\Save\b.doc)", "one"}, {R"(E:\Save\c.doc)", "o"}});
    machine.Write(journalPath + "x", machine.Read(journalPath));
    journal.Leave();
    const RunJournal next = Loaded();
    EXPECT_TRUE(next.MayBeTorn("a.doc"));
    EXPECT_FALSE(next.MayBeTorn("b.doc"));
    EXPECT_TRUE(next.MayBeTorn("c.doc"));
}

TEST_F(RunJournalTest, AGroupBehindWhichALeftoverWasWrittenIsStillTheLast) {
    machine.Write(journalPath, FormatJournalGroup(Group{Entry("a.doc"), Entry("b.doc")}) +
                                   FormatJournalGroup(Group{Entry("a.doc")}, true));
    EXPECT_TRUE(Loaded().MayBeTorn("b.doc"));
}

TEST_F(RunJournalTest, TheNeighbourOfAReplacedCopyGoesAndTheCopyStays) {
    const std::string part = R"(E:\Save\Data\)" + partName;
    machine.Seed({{R"(E:\Save\Data\a.doc)", "old", At(9, 0)}, {part, "ne", {}, attribute::readOnly}});
    WriteJournal({{Entry(R"(Data\a.doc)", true)}});
    EXPECT_FALSE(Loaded().MayBeTorn(R"(Data\a.doc)"));
    EXPECT_EQ(machine.Tree(R"(E:\Save\Data)"), (Tree{{"a.doc", "old"}}));
}

TEST_F(RunJournalTest, ANeighbourThatCannotBeRemovedStaysInTheJournalUntilItIs) {
    const std::string part = R"(E:\Save\Data\)" + partName;
    machine.Seed({{R"(E:\Save\Data\a.doc)", "old", At(9, 0)}, {part, "ne"}});
    WriteJournal({{Entry(R"(Data\a.doc)", true)}});
    machine.Lock(part);
    RunJournal journal = Loaded();
    EXPECT_THAT(Finish(journal), IsEmpty()) << "the saved copy is whole";
    EXPECT_TRUE(machine.Exists(journalPath));
    machine.Lock(part, false);
    RunJournal next = Loaded();
    EXPECT_FALSE(machine.Exists(part));
    EXPECT_THAT(Finish(next), IsEmpty());
    EXPECT_FALSE(machine.Exists(journalPath));
}

TEST_F(RunJournalTest, ADamagedJournalIsKeptAndNothingIsRecordedInIt) {
    const std::string damaged = FormatJournalGroup(Group{Entry("a.doc")}) + "nonsense\nmore\n";
    machine.Write(journalPath, damaged);
    machine.Seed({{R"(E:\Save\a.doc)", "o"}});
    RunJournal journal(machine.machine(), location);
    EXPECT_EQ(journal.Load(), RunJournal::State::unreadable);
    EXPECT_EQ(journal.Code(), error::success);
    EXPECT_TRUE(journal.MayBeTorn("a.doc"));
    EXPECT_EQ(journal.Begin(), RunJournal::Begun::yes);
    EXPECT_FALSE(journal.Record(first));
    Finish(journal);
    EXPECT_EQ(machine.Read(journalPath), damaged);
}

TEST_F(RunJournalTest, CopyingEverythingAfreshSettlesADamagedJournal) {
    machine.Write(journalPath, "nonsense\nmore\n");
    RunJournal journal(machine.machine(), location);
    EXPECT_EQ(journal.Load(), RunJournal::State::unreadable);
    EXPECT_THAT(Finish(journal, true), IsEmpty());
    EXPECT_FALSE(machine.Exists(journalPath));
}

TEST_F(RunJournalTest, AJournalThatCannotBeReadIsKept) {
    WriteJournal({{Entry("a.doc")}});
    machine.faults.FailWhen(
        [](const Step& step) { return step.operation == "Read" ? error::ioDevice : error::success; });
    RunJournal journal(machine.machine(), location);
    EXPECT_EQ(journal.Load(), RunJournal::State::unreadable);
    EXPECT_EQ(journal.Code(), error::ioDevice);
    EXPECT_EQ(journal.Begin(), RunJournal::Begun::yes);
    EXPECT_FALSE(journal.Record(first));
    Finish(journal);
    machine.faults.FailWhen(nullptr);
    EXPECT_TRUE(Loaded().MayBeTorn("a.doc"));
}

TEST_F(RunJournalTest, WhatCouldNotBeListedStaysAsItIs) {
    machine.Seed({{R"(E:\Save\Data\a.doc)", "one"}});
    WriteJournal({{Entry(R"(Data\a.doc)")}, {}});
    const std::string before = machine.Read(journalPath);
    RunJournal journal = Loaded();
    journal.KeepAsItIs();
    EXPECT_EQ(journal.Begin(), RunJournal::Begun::yes);
    EXPECT_FALSE(journal.Record(first));
    Finish(journal);
    EXPECT_EQ(machine.Read(journalPath), before);
}

TEST_F(RunJournalTest, AJournalWithoutAComputersNameIsOursToo) {
    machine.Seed({{R"(E:\Save\torn.doc)", "o"}, {R"(E:\Save\~Marlok Backup.part)", "p"}});
    const std::string former = R"(E:\Save\~Marlok Backup.run)";
    machine.Write(former, FormatJournalGroup(Group{Entry("torn.doc"), Entry("b.doc", true)}));
    RunJournal journal = Loaded();
    EXPECT_TRUE(journal.MayBeTorn("torn.doc"));
    EXPECT_FALSE(machine.Exists(R"(E:\Save\~Marlok Backup.part)"));
    EXPECT_EQ(journal.Begin(), RunJournal::Begun::yes);
    EXPECT_FALSE(machine.Exists(former)) << "what stood in it stands in the new one";
    EXPECT_THAT(Finish(journal), ElementsAre(R"(E:\Save\torn.doc)"));
    EXPECT_TRUE(Loaded().MayBeTorn("torn.doc"));
}

TEST_F(RunJournalTest, AnotherRunAtWorkIsSeen) {
    RunJournal here = Loaded();
    EXPECT_EQ(here.Begin(), RunJournal::Begun::yes);
    machine.system.computerName = "OTHER";
    RunJournal there(machine.machine(), location);
    EXPECT_EQ(there.Load(), RunJournal::State::inUse);
    Finish(here);
    RunJournal later(machine.machine(), location);
    EXPECT_EQ(later.Load(), RunJournal::State::ready);
}

TEST_F(RunJournalTest, TheJournalOfAnotherComputerIsLeftAlone) {
    WriteJournal({{Entry("torn.doc"), Entry("b.doc", true)}});
    machine.Seed({{R"(E:\Save\torn.doc)", "o"}, {R"(E:\Save\)" + partName, "p"}});
    machine.system.computerName = "OTHER";
    RunJournal journal = Loaded();
    EXPECT_TRUE(journal.ForeignLeft());
    EXPECT_FALSE(journal.MayBeTorn("torn.doc"));
    Finish(journal);
    EXPECT_TRUE(machine.Exists(journalPath));
    EXPECT_TRUE(machine.Exists(R"(E:\Save\)" + partName));
}

TEST_F(RunJournalTest, ANeighbourOfATextFileGoes) {
    machine.Seed({{R"(E:\Save\~Marlok Backup.new)", "half"}});
    Loaded();
    EXPECT_EQ(machine.Tree(location.Path()), Tree{});
}

class HostileJournalTest : public RunJournalTest, public testing::WithParamInterface<const char*> {};

TEST_P(HostileJournalTest, NothingOutsideTheLocationIsTouched) {
    machine.Seed({{R"(E:\x)", "o", At(11, 0)},
                  {R"(E:\x.txt)", "o", At(11, 0)},
                  {R"(E:\Other\x)", "o", At(11, 0)},
                  {R"(E:\Other\)" + partName, "o", At(11, 0)},
                  {"E:\\" + partName, "o", At(11, 0)},
                  {R"(C:\x)", "o", At(11, 0)},
                  {R"(E:\Save\kept.doc)", "o", At(11, 0)},
                  {R"(E:\Save\Sub\kept.doc)", "o", At(11, 0)}});
    machine.MakeLink(R"(E:\Save\Link)", R"(E:\Other)");
    for (const bool replaces : {false, true}) {
        WriteJournal({{Entry(GetParam(), replaces)}});
        const Tree c = machine.Tree("C:\\");
        const Tree e = machine.Tree("E:\\");
        const RunJournal journal = Loaded();
        EXPECT_THAT(journal.Originals(), IsEmpty());
        EXPECT_EQ(machine.Tree("C:\\"), c);
        EXPECT_EQ(machine.Tree("E:\\"), e);
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, HostileJournalTest,
                         testing::Values(R"(..\x)", R"(..\..\x)", R"(Sub\..\..\x)", R"(..\Other\x)", R"(C:\x)",
                                         R"(E:\x)", R"(\x)", R"(\\server\share\x)", R"(\\?\C:\x)", "kept.doc:stream",
                                         "../x", "Sub/../../x", R"(Link\x)", R"(Link\..\..\x)", "", ".", "..", R"(.\x)",
                                         R"(Sub\)", "*", "?ept.doc", R"(Sub\*)", R"(Missing\x)", R"(kept.doc\x)"));

}  // namespace
}  // namespace marlok::test
