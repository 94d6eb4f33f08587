#include "ui/run/RunStorage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "forms/Form.h"
#include "forms/Windows.h"
#include "platform/RuntimeError.h"
#include "tests/machine/InMemoryMachine.h"

namespace marlok::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RunStorageTest : public testing::Test {
 protected:
    RunStorageTest() { machine.Seed({{R"(C:\Data\Projects\Deep\)"}, {R"(C:\Data\z\)"}, {R"(C:\Empty\)"}}); }

    void Show(const std::string& source, bool sorted = true, bool expanded = true) {
        storage.FoldersFound(ScanFolders(machine.files, source, {}), sorted, expanded);
    }

    InMemoryMachine machine;
    forms::Windows windows{machine.desktop, machine.clock, nullptr};
    forms::Form form{windows, "Form", ""};
    forms::ListBox List1{form, "List1"};
    forms::ListBox List3{form, "List3"};
    forms::TextBox Text1{form, "Text1"};
    forms::TextBox Text2{form, "Text2"};
    forms::TreeView TreeView1{form, "TreeView1"};
    RunStorage storage{List1, List3, Text1, Text2, TreeView1};
};

TEST_F(RunStorageTest, TheListHoldsTheFoldersBelowTheSource) {
    Show(R"(C:\Data)");
    EXPECT_THAT(List1.Items(), ElementsAre(R"(C:\Data\Projects)", R"(C:\Data\Projects\Deep)", R"(C:\Data\z)"));
}

TEST_F(RunStorageTest, NodesBearKeyAndNameAndThePathFollowsFromThem) {
    Show(R"(C:\Data)");
    const forms::Node* projects = TreeView1.Find(R"(C:\Data\ProjectsDir)");
    ASSERT_NE(projects, nullptr);
    EXPECT_EQ(projects->Text(), "Projects");
    EXPECT_EQ(projects->Parent(), TreeView1.Find(R"(C:\DataDir)"));
    EXPECT_EQ(projects->FullPath(), R"(C:\Data\Projects)");
    ASSERT_NE(TreeView1.Find(R"(C:\Data\Projects\DeepDir)"), nullptr);
}

TEST_F(RunStorageTest, EveryNodeIsSortedAndExpandedAsAsked) {
    for (const bool wanted : {true, false}) {
        Show(R"(C:\Data)", wanted, !wanted);
        EXPECT_EQ(TreeView1.NodeCount(), 4);
        for (const char* key : {R"(C:\DataDir)", R"(C:\Data\ProjectsDir)", R"(C:\Data\Projects\DeepDir)"}) {
            ASSERT_NE(TreeView1.Find(key), nullptr) << key;
            EXPECT_EQ(TreeView1.Find(key)->Sorted, wanted) << key;
            EXPECT_EQ(TreeView1.Find(key)->Expanded, !wanted) << key;
        }
    }
}

TEST_F(RunStorageTest, AFolderWithoutSubfoldersIsStillSortedAndExpanded) {
    Show(R"(C:\Empty)");
    const forms::Node* node = TreeView1.Find(R"(C:\EmptyDir)");
    ASSERT_NE(node, nullptr);
    EXPECT_THAT(node->Children(), IsEmpty());
    EXPECT_TRUE(node->Sorted && node->Expanded);
}

TEST_F(RunStorageTest, AFolderThatIsInTheTreeAlreadyIsAnError) {
    forms::Node& root = TreeView1.Add(nullptr, R"(C:\DataDir)", R"(C:\Data)");
    TreeView1.Add(&root, R"(C:\Data\zDir)", "z");
    try {
        AddChildFolders(ScanFolders(machine.files, R"(C:\Data)", {}), TreeView1, root, List1, true, true);
        FAIL() << "a key must be unique";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), runtimeerror::keyNotUnique);
    }
}

TEST_F(RunStorageTest, TheNextSourceHasTheTreeToItself) {
    Show(R"(C:\Data)");
    Show(R"(C:\Data\Projects)");
    EXPECT_THAT(List1.Items(), ElementsAre(R"(C:\Data\Projects\Deep)"));
    EXPECT_EQ(TreeView1.NodeCount(), 2);
}

TEST_F(RunStorageTest, ALocationBeginsWithEmptyLists) {
    Show(R"(C:\Data)");
    storage.EntryBegins(R"(C:\Data)", R"(E:\Save\Data)");
    storage.Copied(R"(C:\Data\a.doc)");
    EXPECT_THAT(List3.Items(), ElementsAre(R"(C:\Data\a.doc)"));
    EXPECT_EQ(Text1.Text.Get(), R"(C:\Data)");
    EXPECT_EQ(Text2.Text.Get(), R"(E:\Save\Data)");
    storage.LocationBegins();
    EXPECT_THAT(List1.Items(), IsEmpty());
    EXPECT_THAT(List3.Items(), IsEmpty());
    EXPECT_EQ(TreeView1.NodeCount(), 0);
}

}  // namespace
}  // namespace marlok::test
