// The page picker over a site structure: the tree it builds, which items
// may be chosen, the remembered folder, and its resizing.
#include "link_dialogs_fixture.h"
#include "ui/link_dialog_resources.h"
#include "ui/link_type.h"
#include "ui/page_picker.h"
#include "ui/picker_tree.h"

namespace {

const char kSite[] =
    "<SITE><FOLDER name=\"Products\"><Page name=\"Lamps\" url=\"./products/lamps.html\"/>"
    "<folder name=\"Old\"><page name=\"Candles\" url=\"./products/old/candles.html\"/></folder></FOLDER>"
    "<other name=\"Hidden\"><page name=\"Inside\" url=\"./inside.html\"/></other>"
    "<page name=\"Home\" url=\"./index.html\" current_page=\"true\"/></SITE>";

class PagePickerTest : public LinkDialogsTest {
protected:
    bool Run(CXmlElement*& chosen, const std::string& current = "") {
        PagePickerRequest request;
        request.site = site_;
        request.currentPage = current;
        return RunPagePicker(nullptr, request, chosen);
    }
    void SetUp() override {
        LinkDialogsTest::SetUp();
        site_ = Site(kSite);
    }
    CXmlDocument* site_ = nullptr;
};

TEST_F(PagePickerTest, ShowsFoldersAndPagesUnderWebSiteAndLowerCasesTheirNames) {
    std::vector<std::string> top, root, products;
    std::string caption;
    Then([&](HWND d) {
        HWND tree = GetDlgItem(d, IDC_PAGE_TREE);
        caption = WindowText(d);
        top = TreeChildren(tree, nullptr);
        HTREEITEM site = TreeView_GetRoot(tree);
        root = TreeChildren(tree, site);
        products = TreeChildren(tree, FindTreeItem(tree, "Products"));
        EXPECT_TRUE(TreeView_GetItemState(tree, site, TVIS_EXPANDED) & TVIS_EXPANDED);
        EXPECT_EQ(FindTreeItem(tree, "Inside"), nullptr);
        Click(d, IDCANCEL);
    });
    CXmlElement* chosen = nullptr;
    EXPECT_FALSE(Run(chosen));
    EXPECT_EQ(caption, "Select Page");
    EXPECT_EQ(top, (std::vector<std::string>{"Web Site"}));
    EXPECT_EQ(root, (std::vector<std::string>{"Products", "Home"}));
    EXPECT_EQ(products, (std::vector<std::string>{"Lamps", "Old"}));
    CXmlElement* folder = site_->GetRoot()->GetChild(0);
    EXPECT_EQ(folder->GetName(), "folder");
    EXPECT_EQ(folder->GetChild(0)->GetName(), "page");
    EXPECT_EQ(site_->GetRoot()->GetChild(1)->GetName(), "other");
}

TEST_F(PagePickerTest, TheCurrentPageIsSelectedAndAFolderDisablesOkAndDoesNotCloseOnADoubleClick) {
    std::string selected;
    Then([&](HWND d) {
        HWND tree = GetDlgItem(d, IDC_PAGE_TREE);
        selected = TreeItemText(tree, TreeView_GetSelection(tree));
        TreeView_SelectItem(tree, FindTreeItem(tree, "Products"));
        EXPECT_FALSE(Enabled(d, IDOK));
        DoubleClickTreeItem(d, IDC_PAGE_TREE, FindTreeItem(tree, "Old"));
        // The root is no page either.
        Click(d, IDOK);
        TreeView_SelectItem(tree, TreeView_GetRoot(tree));
        Click(d, IDOK);
        TreeView_SelectItem(tree, FindTreeItem(tree, "Lamps"));
        EXPECT_TRUE(Enabled(d, IDOK));
        Click(d, IDOK);
    });
    CXmlElement* chosen = nullptr;
    ASSERT_TRUE(Run(chosen, "CANDLES"));  // the current page text, in any case
    EXPECT_EQ(selected, "Candles");
    ASSERT_NE(chosen, nullptr);
    EXPECT_EQ(chosen->GetAttribute("url"), "./products/lamps.html");
}

TEST_F(PagePickerTest, TheLastExpandedFolderIsRememberedAndOpenedAgain) {
    Then([&](HWND d) {
        HWND tree = GetDlgItem(d, IDC_PAGE_TREE);
        HTREEITEM products = FindTreeItem(tree, "Products");
        TreeView_SelectItem(tree, products);
        SetFocus(tree);
        SendMessageA(tree, WM_KEYDOWN, VK_RIGHT, 0);  // the user opens it
        EXPECT_TRUE(TreeView_GetItemState(tree, products, TVIS_EXPANDED) & TVIS_EXPANDED);
        Click(d, IDCANCEL);
    });
    CXmlElement* chosen = nullptr;
    Run(chosen);
    EXPECT_EQ(settings_.GetString("Settings", "LastExpanded"), "Products");

    settings_.WriteString("Settings", "LastExpanded", "old");
    bool expanded = false, productsExpanded = false;
    Then([&](HWND d) {
        HWND tree = GetDlgItem(d, IDC_PAGE_TREE);
        expanded = TreeView_GetItemState(tree, FindTreeItem(tree, "Old"), TVIS_EXPANDED) & TVIS_EXPANDED;
        productsExpanded = TreeView_GetItemState(tree, FindTreeItem(tree, "Products"), TVIS_EXPANDED) & TVIS_EXPANDED;
        Click(d, IDCANCEL);
    });
    Run(chosen, kChoosePageHint);
    EXPECT_TRUE(expanded);
    EXPECT_TRUE(productsExpanded);
    // Opening it at start is not a user's choice: nothing new is written.
    EXPECT_EQ(settings_.GetString("Settings", "LastExpanded"), "old");
}

TEST(PickerIcons, ScaleWithTheDpiLikeTheRest) {
    for (auto [dpi, side] : {std::pair{96, 16}, std::pair{144, 24}}) {
        HIMAGELIST icons = LoadSmallIcons({IDI_LINK_SITE, IDI_LINK_PAGE}, dpi);
        int w = 0, h = 0;
        ImageList_GetIconSize(icons, &w, &h);
        EXPECT_EQ(std::pair(w, h), std::pair(side, side)) << dpi;
        EXPECT_EQ(ImageList_GetImageCount(icons), 2);
        ImageList_Destroy(icons);
    }
}

TEST_F(PagePickerTest, ResizingStretchesTheTreeAndMovesTheButtons) {
    Then([&](HWND d) {
        HWND tree = GetDlgItem(d, IDC_PAGE_TREE), ok = GetDlgItem(d, IDOK);
        RECT window, treeBefore, okBefore, treeAfter, okAfter;
        GetWindowRect(d, &window);
        GetWindowRect(tree, &treeBefore);
        GetWindowRect(ok, &okBefore);
        EXPECT_TRUE(GetWindowLongA(d, GWL_STYLE) & WS_THICKFRAME);

        SetWindowPos(d, nullptr, 0, 0, window.right - window.left + 100, window.bottom - window.top + 60,
                     SWP_NOMOVE | SWP_NOZORDER);
        GetWindowRect(tree, &treeAfter);
        GetWindowRect(ok, &okAfter);
        EXPECT_EQ(treeAfter.right - treeAfter.left, treeBefore.right - treeBefore.left + 100);
        EXPECT_EQ(treeAfter.bottom - treeAfter.top, treeBefore.bottom - treeBefore.top + 60);
        EXPECT_EQ(okAfter.left - okBefore.left, 100);
        EXPECT_EQ(okAfter.top - okBefore.top, 60);
        EXPECT_EQ(okAfter.right - okAfter.left, okBefore.right - okBefore.left);

        MINMAXINFO limits = {};
        SendMessageA(d, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
        EXPECT_EQ(limits.ptMinTrackSize.x, window.right - window.left);
        EXPECT_EQ(limits.ptMinTrackSize.y, window.bottom - window.top);

        // The grip: in the bottom-right corner, hidden while maximised.
        HWND grip = FindWindowExA(d, nullptr, "ScrollBar", nullptr);
        ASSERT_TRUE(grip && (GetWindowLongA(grip, GWL_STYLE) & SBS_SIZEGRIP));
        auto shown = [grip] { return (GetWindowLongA(grip, GWL_STYLE) & WS_VISIBLE) != 0; };
        EXPECT_TRUE(shown());
        SendMessageA(d, WM_SIZE, SIZE_MAXIMIZED, MAKELPARAM(800, 600));
        EXPECT_FALSE(shown());
        SendMessageA(d, WM_SIZE, SIZE_RESTORED, MAKELPARAM(600, 500));
        EXPECT_TRUE(shown());
        Click(d, IDCANCEL);
    });
    CXmlElement* chosen = nullptr;
    Run(chosen);
}

}  // namespace
