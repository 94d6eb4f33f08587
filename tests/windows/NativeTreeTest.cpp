#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "forms/Form.h"
#include "forms/TreeView.h"
#include "forms/Windows.h"
#include "win32/Win32Machine.h"
#include "win32/machine/Wide.h"

namespace marlok::test {
namespace {

class TreeForm : public forms::Form {
 public:
    TreeForm(forms::Windows& windows, const std::string& caption) : Form(windows, "Tree", caption) {
        Place(1500, 1500, 6000, 6000);
        TreeView1.MoveTo(0, 0, 6000, 6000);
    }

    forms::TreeView TreeView1{*this, "TreeView1"};
};

class NativeTreeTest : public ::testing::Test {
 protected:
    void SetUp() override {
        form.Show();
        window = FindWindowW(L"MarlokWindow", win32::ToWide(caption).c_str());
        tree = FindWindowExW(window, nullptr, WC_TREEVIEWW, nullptr);
        ASSERT_NE(tree, nullptr);
    }

    HTREEITEM Next(WPARAM kind, HTREEITEM from) const {
        return reinterpret_cast<HTREEITEM>(SendMessageW(tree, TVM_GETNEXTITEM, kind, reinterpret_cast<LPARAM>(from)));
    }

    std::string TextOf(HTREEITEM item) const {
        wchar_t text[100] = {};
        TVITEMW line{};
        line.mask = TVIF_TEXT | TVIF_HANDLE;
        line.hItem = item;
        line.pszText = text;
        line.cchTextMax = 100;
        SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&line));
        return win32::FromWide(line.pszText);
    }

    /// The tree on the screen as text: "a(b c(d))".
    std::string Outline(HTREEITEM parent = TVI_ROOT) const {
        std::string all;
        for (HTREEITEM item = Next(TVGN_CHILD, parent); item != nullptr; item = Next(TVGN_NEXT, item)) {
            const std::string inner = Outline(item);
            all += (all.empty() ? "" : " ") + TextOf(item) + (inner.empty() ? "" : "(" + inner + ")");
        }
        return all;
    }

    bool IsExpanded(HTREEITEM item) const {
        return (SendMessageW(tree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), TVIS_EXPANDED) & TVIS_EXPANDED) !=
               0;
    }

    win32::Win32Machine real;
    const std::string caption = "Tree " + std::to_string(GetCurrentProcessId()) + " " +
                                ::testing::UnitTest::GetInstance()->current_test_info()->name();
    forms::Windows windows{real.machine().desktop, real.machine().clock, &real.views()};
    TreeForm& form = windows.Load<TreeForm>(caption);
    forms::TreeView& model = form.TreeView1;
    HWND window = nullptr;
    HWND tree = nullptr;
};

TEST_F(NativeTreeTest, NodesAreShownWhereTheyBelong) {
    forms::Node& root = model.Add(nullptr, "1", "C:\\Données");
    model.Add(&root, "2", "b");
    model.Add(&model.Add(&root, "3", "a"), "4", "deep");
    model.Add(nullptr, "5", "second");
    form.Refresh();
    EXPECT_EQ(Outline(), "C:\\Données(b a(deep)) second");
    model.Add(&root, "6", "c");
    form.Refresh();
    EXPECT_EQ(Outline(), "C:\\Données(b a(deep) c) second");
    model.Clear();
    model.Add(nullptr, "1", "C:\\Données");
    form.Refresh();
    EXPECT_EQ(Outline(), "C:\\Données") << "nothing of the old tree stays";
    model.Clear();
    form.Refresh();
    EXPECT_EQ(Outline(), "");
}

TEST_F(NativeTreeTest, SortedNodesShowTheirChildrenInOrder) {
    forms::Node& root = model.Add(nullptr, "root", "root");
    root.Sorted = true;
    model.Add(&root, "1", "m");
    model.Add(&model.Add(&root, "2", "z"), "3", "below z");
    model.Add(&root, "4", "a");
    form.Refresh();
    EXPECT_EQ(Outline(), "root(a m z(below z))");
    model.Add(&root, "5", "k");
    form.Refresh();
    EXPECT_EQ(Outline(), "root(a k m z(below z))");
}

TEST_F(NativeTreeTest, WhatTheUserClosesStaysClosed) {
    forms::Node& root = model.Add(nullptr, "root", "root");
    root.Expanded = true;
    model.Add(&root, "1", "one");
    form.Refresh();
    HTREEITEM item = Next(TVGN_ROOT, nullptr);
    EXPECT_TRUE(IsExpanded(item));
    SendMessageW(tree, TVM_EXPAND, TVE_COLLAPSE, reinterpret_cast<LPARAM>(item));
    model.Add(&root, "2", "two");
    form.Refresh();
    EXPECT_FALSE(IsExpanded(item));
    EXPECT_EQ(Next(TVGN_ROOT, nullptr), item) << "the node was not made anew";
}

TEST_F(NativeTreeTest, ManyNodesAreQuick) {
    const auto start = GetTickCount64();
    forms::Node& root = model.Add(nullptr, "root", "root");
    for (int node = 0; node < 5000; ++node) {
        model.Add(&root, "key " + std::to_string(node), "folder " + std::to_string(node));
        if (node % 500 == 0) {
            form.Refresh();
        }
    }
    form.Refresh();
    EXPECT_EQ(SendMessageW(tree, TVM_GETCOUNT, 0, 0), 5001);
    EXPECT_LT(GetTickCount64() - start, 10000U);
}

}  // namespace
}  // namespace marlok::test
