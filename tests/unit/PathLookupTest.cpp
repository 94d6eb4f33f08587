#include "engine/PathLookup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace marlok::test {
namespace {

using testing::ElementsAre;

std::vector<std::size_t> BruteFirst(std::string_view text, const std::vector<std::string>& items) {
    std::vector<std::size_t> places;
    for (const std::string& item : items) {
        places.push_back(text.find(item));
    }
    return places;
}

std::vector<std::vector<std::size_t>> BruteLines(std::string_view text, const std::vector<std::string>& items) {
    std::vector<std::vector<std::size_t>> found(items.size());
    std::size_t number = 0;
    for (std::size_t start = 0; start <= text.size(); ++number) {
        const std::size_t end = std::min(text.find("\r\n", start), text.size());
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (!items[i].empty() && text.substr(start, end - start).find(items[i]) != std::string_view::npos) {
                found[i].push_back(number);
            }
        }
        start = end + 2;
    }
    return found;
}

/// Random paths of few letters, so that they occur in each other.
class RandomPaths {
 public:
    explicit RandomPaths(unsigned seed) : random_(seed) {}

    int Number(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

    std::string Path() {
        static const char* const roots[] = {"C:\\", "D:\\", "\\\\s\\", "", "a\\", "ab\\"};
        std::string path = roots[Number(6)];
        for (int parts = Number(3); parts >= 0; --parts) {
            for (int letters = Number(3); letters >= 0; --letters) {
                path += "aab."[Number(4)];
            }
            path += parts > 0 ? "\\" : "";
        }
        return path;
    }

    std::string Text(int lines) {
        std::string text;
        for (int line = 0; line < lines; ++line) {
            text += Path() + "\r\n";
        }
        return text;
    }

 private:
    std::mt19937 random_;
};

TEST(PathLookup, FindsWhatSeekingEachItemFinds) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        RandomPaths random(seed);
        const std::string text = random.Text(1 + random.Number(30));
        std::vector<std::string> items;
        for (int count = random.Number(25); count >= 0; --count) {
            items.push_back(random.Path());
        }
        ASSERT_EQ(FirstOccurrences(text, items), BruteFirst(text, items)) << seed;
        ASSERT_EQ(LinesContaining(text, items), BruteLines(text, items)) << seed;
    }
}

TEST(PathLookup, AnItemInsideALongerLineCounts) {
    EXPECT_THAT(FirstOccurrences("C:\\Data\\a.doc.bak\r\nC:\\Data\\a.doc\r\n", {R"(Data\a.doc)"}), ElementsAre(3U));
}

TEST(PathLookup, LetterCaseMatters) {
    EXPECT_THAT(FirstOccurrences("C:\\DATA\\A.DOC\r\n", {R"(Data\a.doc)"}), ElementsAre(notFound));
}

TEST(PathLookup, ALineIsToldOnceForAnItemThatOccursInItTwice) {
    EXPECT_THAT(LinesContaining("a\\a\\a\r\nb\r\na\\a\r\n", {"a\\a"}), ElementsAre(ElementsAre(0U, 2U)));
}

TEST(PathLookup, ManyItemsInALongTextAreFound) {
    std::string text;
    std::vector<std::string> items;
    for (int i = 0; i < 50'000; ++i) {
        const std::string path = "Data\\folder" + std::to_string(i / 100) + "\\file" + std::to_string(i) + ".txt";
        text += "C:\\" + path + "\r\n";
        items.push_back(path);
    }
    const std::vector<std::size_t> places = FirstOccurrences(text, items);
    EXPECT_EQ(text.substr(places[49'999] - 3, 3), "C:\\");
    EXPECT_EQ(std::count(places.begin(), places.end(), notFound), 0);
}

}  // namespace
}  // namespace marlok::test
