#include "engine/OriginalPathList.h"

#include <random>

#include "tests/unit/ProgramFixture.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NotOccurringTest, AnItemInsideALongerLineOccurs) {
    EXPECT_THAT(NotOccurring("C:\\a.txt.bak\r\n", {"C:\\a.txt"}), IsEmpty());
    EXPECT_THAT(NotOccurring("xC:\\a.txt\r\n", {"C:\\a.txt"}), IsEmpty());
    EXPECT_THAT(NotOccurring("C:\\a.txt", {"C:\\a.txt.bak"}), ElementsAre("C:\\a.txt.bak"));
}

TEST(NotOccurringTest, LetterCaseMatters) {
    EXPECT_THAT(NotOccurring("C:\\a.txt\r\n", {"C:\\A.txt", "c:\\a.txt", "C:\\a.txt"}),
                ElementsAre("C:\\A.txt", "c:\\a.txt"));
}

TEST(NotOccurringTest, WhatIsAddedTogetherDoesNotCount) {
    EXPECT_THAT(NotOccurring("", {"C:\\a.txt.bak", "C:\\a.txt", "C:\\a.txt"}),
                ElementsAre("C:\\a.txt.bak", "C:\\a.txt", "C:\\a.txt"));
}

TEST(NotOccurringTest, EmptyItemsAreLeftOut) {
    EXPECT_THAT(NotOccurring("", {"", "C:\\a", ""}), ElementsAre("C:\\a"));
}

TEST(NotOccurringTest, ManyItemsAreSoughtAtOnce) {
    const Lines items{"C:\\a", "C:\\a\\b", "C:\\ab", "\\\\s\\x", "\\\\s\\xy", "D:\\a", "plain", "C:\\"};
    EXPECT_THAT(NotOccurring("C:\\a\\b\r\n\\\\s\\xz\r\nis plain", items), ElementsAre("C:\\ab", "\\\\s\\xy", "D:\\a"));
}

/// Cases are made of few letters and of pieces of each other, so that hits, near hits, prefixes and overlaps are many.
class RandomLists {
 public:
    explicit RandomLists(std::uint32_t seed) : random_(seed) {}

    std::size_t Below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }

    std::string Letters(std::size_t most) {
        static constexpr std::string_view alphabet = "aAb\\:CD.\xC3\xA4";
        std::string text;
        for (std::size_t left = Below(most + 1); left > 0; --left) {
            text += alphabet[Below(alphabet.size())];
        }
        return text;
    }

    std::string Path() {
        static const Lines roots{"C:\\", "D:\\", "c:\\", "\\\\s\\", "\\\\", "", ":\\", "CC:\\", "C:\\C:\\"};
        return roots[Below(roots.size())] + Letters(6);
    }

    Lines Items() {
        Lines items;
        for (std::size_t left = Below(14); left > 0; --left) {
            if (!items.empty() && Below(3) == 0) {
                // A prefix of an item, an item made longer, or the same again.
                const std::string& other = items[Below(items.size())];
                items.push_back(other.substr(0, Below(other.size() + 1)) + Letters(2));
            } else {
                items.push_back(Path());
            }
        }
        return items;
    }

    std::string Text(const Lines& items) {
        std::string text;
        for (std::size_t left = Below(10); left > 0; --left) {
            if (!items.empty() && Below(2) == 0) {
                text += Letters(3) + items[Below(items.size())] + Letters(3);
            } else {
                text += Path();
            }
            text += Below(4) == 0 ? "" : "\r\n";
        }
        return text;
    }

 private:
    std::mt19937 random_;
};

TEST(NotOccurringTest, FindsWhatAPlainSearchFinds) {
    const std::uint32_t seed = std::random_device()();
    RandomLists lists(seed);
    std::size_t missing = 0;
    std::size_t present = 0;
    for (int round = 0; round < 5000; ++round) {
        const Lines items = lists.Items();
        const std::string text = lists.Text(items);
        std::vector<std::string_view> expected;
        for (const std::string& item : items) {
            if (!item.empty() && text.find(item) == std::string::npos) {
                expected.push_back(item);
            }
        }
        missing += expected.size();
        present += items.size() - expected.size();
        ASSERT_EQ(NotOccurring(text, items), expected) << "seed " << seed << ", round " << round << "\ntext: " << text
                                                       << "\nitems: " << testing::PrintToString(items);
    }
    // Both outcomes are met often: the comparison is not one of empty lists.
    EXPECT_GT(missing, 1000U);
    EXPECT_GT(present, 1000U);
}

class OriginalPathListTest : public ProgramTest {
 protected:
    SystemError Add(const Lines& originals, const Location& location = Location(R"(E:\Save)")) {
        return OriginalPathList(machine.machine(), location).Add(originals);
    }
};

TEST_F(OriginalPathListTest, AMissingListIsMade) {
    EXPECT_EQ(Add({"C:\\a", "", "C:\\b"}), error::success);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\a\r\nC:\\b\r\n");
}

TEST_F(OriginalPathListTest, AMissingListIsMadeEvenWhenNothingIsAdded) {
    EXPECT_EQ(Add({}), error::success);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "");
}

TEST_F(OriginalPathListTest, TheListGrows) {
    EXPECT_EQ(Add({"C:\\a", "C:\\b"}), error::success);
    EXPECT_EQ(Add({"C:\\b", "C:\\c"}), error::success);
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre("C:\\a", "C:\\b", "C:\\c"));
}

TEST_F(OriginalPathListTest, AListThatNeedsNothingIsNotWritten) {
    EXPECT_EQ(Add({"C:\\a"}), error::success);
    machine.faults.Reset();
    EXPECT_EQ(Add({"C:\\a"}), error::success);
    EXPECT_EQ(machine.faults.Mutations(), 0U);
}

TEST_F(OriginalPathListTest, AnUnfinishedLastLineIsEnded) {
    machine.Seed({{Beside("Save.txt"), "C:\\a\r\nC:\\b"}});
    EXPECT_EQ(Add({"C:\\c"}), error::success);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\a\r\nC:\\b\r\nC:\\c\r\n");
}

TEST_F(OriginalPathListTest, TheFolderOfTheListIsMade) {
    EXPECT_EQ(Add({"C:\\a"}, Location(R"(E:\Backups\Weekly\Save)")), error::success);
    EXPECT_THAT(OriginalList(machine, R"(Backups\Weekly\Save)"), ElementsAre("C:\\a"));
}

TEST_F(OriginalPathListTest, AHiddenListIsReadAndKept) {
    machine.Seed({{Beside("Save.txt"), "C:\\a\r\n", {}, attribute::hidden | attribute::readOnly}});
    EXPECT_EQ(Add({"C:\\b"}), error::success);
    EXPECT_THAT(OriginalList(machine, "Save"), ElementsAre("C:\\a", "C:\\b"));
}

TEST_F(OriginalPathListTest, AnUnreadableListIsReportedAndStays) {
    machine.Seed({{Beside("Save.txt"), "C:\\a\r\n"}});
    machine.Lock(Beside("Save.txt"));
    EXPECT_EQ(Add({"C:\\b"}), error::sharingViolation);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\a\r\n");
    EXPECT_THAT(WorkingFilesLeft(machine), IsEmpty());
}

TEST_F(OriginalPathListTest, AFileWhereTheFolderBelongsIsReported) {
    machine.Seed({{Beside("Backups"), "a file"}});
    EXPECT_EQ(Add({"C:\\a"}, Location(R"(E:\Backups\Save)")), error::pathNotFound);
    EXPECT_EQ(machine.Read(Beside("Backups")), "a file");
}

TEST_F(OriginalPathListTest, OldLinesInTheCodePageBecomeUtf8) {
    machine.Seed({{Beside("Save.txt"), "C:\\\xC4lt.doc\r\nC:\\\xE4.doc\r\n"}});
    EXPECT_EQ(Add({"C:\\\u00C4lt.doc", "C:\\\u4E2D.doc"}), error::success);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\\u00C4lt.doc\r\nC:\\\u00E4.doc\r\nC:\\\u4E2D.doc\r\n");
}

TEST_F(OriginalPathListTest, AListCannotBeWrittenHalf) {
    machine.Seed({{Beside("Save.txt"), "C:\\a\r\n"}});
    machine.faults.TearWrites(true);
    for (std::size_t k = 1;; ++k) {
        machine.faults.Reset();
        machine.faults.FailAt(k, error::diskFull);
        const SystemError code = Add({"C:\\b"});
        const std::string text = machine.Read(Beside("Save.txt"));
        EXPECT_EQ(text, code == error::success ? "C:\\a\r\nC:\\b\r\n" : "C:\\a\r\n") << "step " << k;
        if (!machine.faults.Fired()) {
            EXPECT_GT(k, 5U);
            return;
        }
        machine.Seed({{Beside("Save.txt"), "C:\\a\r\n"}});
    }
}

class OriginalPathLookupTest : public OriginalPathListTest {
 protected:
    /// The list with these lines, read.
    OriginalPathList Loaded(const std::string& text) {
        machine.Write(Beside("Save.txt"), text);
        OriginalPathList list(machine.machine(), Location(R"(E:\Save)"));
        EXPECT_EQ(list.Load(), OriginalPathList::State::read);
        return list;
    }

    FoundOriginal Find(const std::string& text, const std::string& name) {
        return Loaded(text).FindAll({name}).front();
    }

    static bool Always(const std::string& /*line*/) { return true; }
};

TEST_F(OriginalPathLookupTest, TheExactLineWinsOverALongerOneThatComesFirst) {
    const char* text = "D:\\Old\\Data\\a.doc\r\nC:\\Data\\a.doc.bak\r\nD:\\Data\\a.doc\r\n";
    const FoundOriginal found = Find(text, R"(Data\a.doc)");
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, R"(D:\Data\a.doc)");
}

TEST_F(OriginalPathLookupTest, WithoutAnExactLineTheFirstOccurrenceCounts) {
    const FoundOriginal found = Find("C:\\Data\\a.doc.bak\r\n", R"(Data\a.doc)");
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, R"(C:\Data\a.doc)");
    EXPECT_FALSE(Find("C:\\Data\\A.DOC\r\n", R"(Data\a.doc)")) << "letter case matters";
    EXPECT_FALSE(Find("C:\\Music\\m.mp3\r\n", R"(Data\a.doc)"));
    const FoundOriginal noPath = Find("xData\\a.doc\r\n", R"(Data\a.doc)");
    ASSERT_TRUE(noPath);
    EXPECT_EQ(*noPath, "");
}

TEST_F(OriginalPathLookupTest, TwoExactLinesAreTwoOriginals) {
    const FoundOriginal found = Find("C:\\Data\\a.doc\r\nD:\\DATA\\a.doc\r\nc:\\data\\A.doc\r\n", R"(Data\a.doc)");
    EXPECT_EQ(found.kind, FoundOriginal::Kind::several);
    EXPECT_FALSE(found);
    EXPECT_THAT(found.paths, ElementsAre(R"(C:\Data\a.doc)", R"(D:\DATA\a.doc)"));
}

TEST_F(OriginalPathLookupTest, LinesThatDifferInLetterCaseAloneAreOneOriginal) {
    const FoundOriginal found = Find("C:\\DATA\\a.doc\r\nC:\\Data\\a.doc\r\n", R"(Data\a.doc)");
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, R"(C:\Data\a.doc)");
}

TEST_F(OriginalPathLookupTest, ANetworkOriginalIsFoundWhole) {
    const FoundOriginal found = Find("C:\\a\r\n\\\\server\\share\\x.doc\r\n", R"(server\share\x.doc)");
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, R"(\\server\share\x.doc)");
}

TEST_F(OriginalPathLookupTest, AFileOfARootIsFoundWhole) {
    const FoundOriginal found = Find("C:\\Data\\a.doc\r\nD:\\a.doc\r\n", "a.doc");
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, R"(D:\a.doc)");
}

TEST_F(OriginalPathLookupTest, EachNameTakesItsExactLineElseTheFirstThatContainsIt) {
    OriginalPathList list =
        Loaded("D:\\DATA\\A.DOC.old\r\nC:\\Data\\a.doc\r\nC:\\x\\Data\\b.doc.bak\r\nC:\\y\\Data\\B.doc.bak\r\n");
    list.RemoveFirst({R"(Data\a.doc)", R"(Data\b.doc)"}, Always);
    EXPECT_THAT(list.Lines(), ElementsAre(R"(D:\DATA\A.DOC.old)", R"(C:\y\Data\B.doc.bak)"));
}

TEST_F(OriginalPathLookupTest, ALineThatMayNotGoStays) {
    OriginalPathList list = Loaded("C:\\Data\\a.doc.bak\r\nC:\\Data\\a.doc.old\r\n");
    list.RemoveFirst({R"(Data\a.doc)"}, [](const std::string& line) { return line.ends_with(".old"); });
    EXPECT_THAT(list.Lines(), ElementsAre(R"(C:\Data\a.doc.bak)"));
    list.RemoveBelow({R"(C:\Data)"}, [](const std::string&) { return false; });
    EXPECT_THAT(list.Lines(), ElementsAre(R"(C:\Data\a.doc.bak)"));
}

TEST_F(OriginalPathLookupTest, WholeComponentsLieBelow) {
    OriginalPathList list =
        Loaded("C:\\Photos2019\\p.jpg\r\nc:\\PHOTOS\\p.jpg\r\nC:\\Photos\r\nD:\\Photos\\p.jpg\r\nX C:\\Photos\\q\r\n");
    list.RemoveBelow({R"(C:\Photos)"}, Always);
    EXPECT_THAT(list.Lines(), ElementsAre(R"(C:\Photos2019\p.jpg)", R"(D:\Photos\p.jpg)", R"(X C:\Photos\q)"));
}

std::string AsUtf16(const std::u16string& text, bool bigEndian) {
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8U);
        const char low = static_cast<char>(unit & 0xFFU);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

TEST_F(OriginalPathLookupTest, WhatOtherProgramsMadeOfTheListIsReadAndNeverMixed) {
    const std::u16string text = u"C:\\Data\\\u00E4.doc\r\nC:\\Data\\\U0001F382.doc\r\n";
    const std::string utf8 = "C:\\Data\\\u00E4.doc\r\nC:\\Data\\\U0001F382.doc\r\n";
    for (const std::string& bytes : {AsUtf16(text, false), AsUtf16(text, true), "\xEF\xBB\xBF" + utf8,
                                     std::string("C:\\Data\\\u00E4.doc\nC:\\Data\\\U0001F382.doc\n"),
                                     std::string("C:\\Data\\\u00E4.doc\rC:\\Data\\\U0001F382.doc"),
                                     std::string("C:\\Data\\\u00E4.doc\n\r\nC:\\Data\\\U0001F382.doc")}) {
        const OriginalPathList list = Loaded(bytes);
        EXPECT_THAT(list.Lines(), ElementsAre("C:\\Data\\\u00E4.doc", "C:\\Data\\\U0001F382.doc"));
        EXPECT_TRUE(list.FindAll({"Data\\\U0001F382.doc"}).front());
        EXPECT_EQ(Add({R"(C:\new)"}), error::success);
        EXPECT_THAT(machine.Read(Beside("Save.txt")), testing::StartsWith("C:\\Data\\\u00E4.doc\r\n"));
        EXPECT_THAT(machine.Read(Beside("Save.txt")), testing::EndsWith("C:\\Data\\\U0001F382.doc\r\nC:\\new\r\n"));
    }
}

TEST_F(OriginalPathLookupTest, AListThatIsNoTextIsReportedAndStays) {
    for (const std::string& bytes : {std::string(64, '\0'), std::string("C:\\a\r\n\0\0", 8),
                                     std::string("\xFF\xFE"
                                                 "C\0:",
                                                 5)}) {
        machine.Write(Beside("Save.txt"), bytes);
        EXPECT_EQ(Add({R"(C:\new)"}), error::invalidData);
        EXPECT_EQ(machine.Read(Beside("Save.txt")), bytes);
    }
}

TEST_F(OriginalPathLookupTest, AHalfPairInANameIsListedExactlyInValidUtf8) {
    const std::string odd = "C:\\Data\\a\xED\xA0\xBD.doc";  // U+D83D alone
    EXPECT_EQ(Add({odd, "C:\\100%\\<b>"}), error::success);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\Data\\a<D83D>.doc\r\nC:\\100%\\<b>\r\n");
    OriginalPathList list(machine.machine(), Location(R"(E:\Save)"));
    EXPECT_EQ(list.Load(), OriginalPathList::State::read);
    EXPECT_THAT(list.Lines(), ElementsAre(odd, "C:\\100%\\<b>"));
    EXPECT_EQ(*list.FindAll({odd.substr(3)}).front(), odd);
    machine.faults.Reset();
    EXPECT_EQ(Add({odd}), error::success) << "it is listed already";
    EXPECT_EQ(machine.faults.Mutations(), 0U);
    list.RemoveFirst({"100%\\<b>"}, Always);
    EXPECT_EQ(list.Save(OriginalPathList::NothingLeft::removesTheFile), error::success);
    EXPECT_EQ(machine.Read(Beside("Save.txt")), "C:\\Data\\a<D83D>.doc\r\n");
}

TEST_F(OriginalPathListTest, AHundredThousandPathsAreListedInASecondOrTwo) {
    Lines originals;
    for (int i = 0; i < 100'000; ++i) {
        originals.push_back("C:\\Data\\Folder " + std::to_string(i % 100) + "\\file " + std::to_string(i) + ".txt");
    }
    EXPECT_EQ(Add(originals), error::success);
    EXPECT_EQ(OriginalList(machine, "Save").size(), 100'000U);
    // Every one is found again: nothing to add, in time proportional to the list and not to its square.
    EXPECT_THAT(NotOccurring(machine.Read(Beside("Save.txt")), originals), IsEmpty());
}

}  // namespace
}  // namespace marlok::test
