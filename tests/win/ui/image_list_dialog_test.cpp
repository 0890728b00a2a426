// The Files dialog driven through its controls: loading an image list, the
// rows' buttons, the fields of the selected row with the link-type rules,
// adding files through a stand-in open-file dialog, and the text it stores.
#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>

#include <cstring>

#include "html/image_list.h"
#include "link_dialogs_fixture.h"
#include "ui/image_list_dialog.h"
#include "ui/link_dialog_resources.h"
#include "ui/link_type.h"
#include "ui/open_file_dialog.h"

namespace {

const char kSite[] =
    "<site><folder name=\"pages\"><page name=\"about\" url=\"./pages/about.html\"/></folder>"
    "<page name=\"NEWS\" url=\"./news.html\" current_page=\"true\"/></site>";

std::string Gallery(const std::vector<ImageListEntry>& images) { return WriteImageList(images); }

class ImageListDialogTest : public LinkDialogsTest {
protected:
    // Runs the dialog over text; returns whether it ended with OK.
    bool Run(std::string& text, CXmlDocument* site = nullptr) { return RunImageListDialog(nullptr, text, site); }
};

TEST_F(ImageListDialogTest, LoadsEveryImageAndStoresOnlyTheTextsThatAreSet) {
    std::string text = Gallery(
        {{"C:\\pics\\a.png"}, {"C:\\pics\\b.jpg", "Bee", "A bee &amp; a flower", "http://b.example/", "_blank"}});
    std::vector<std::string> shown;
    Then([&](HWND d) {
        for (int row = 0; row < RowCount(d); ++row) shown.push_back(RowText(d, row));
        // Showing a row with no link puts "http://" into the box, not into the row.
        SelectRow(d, 0);
        SelectRow(d, 1);
        Click(d, IDOK);
    });
    std::string before = text;
    ASSERT_TRUE(Run(text));
    EXPECT_EQ(shown, (std::vector<std::string>{"C:\\pics\\a.png", "C:\\pics\\b.jpg"}));
    EXPECT_EQ(text, before);
}

TEST_F(ImageListDialogTest, FieldsAreDisabledUntilARowIsSelectedAndEditsGoToThatRow) {
    std::string text = Gallery({{"C:\\a.png", "A"}, {"C:\\b.png", "B"}});
    bool titleEnabledAtFirst = true;
    std::string shownTitle;
    Then([&](HWND d) {
        titleEnabledAtFirst = Enabled(d, IDC_TITLE);
        SelectRow(d, 1);
        shownTitle = GetControlText(d, IDC_TITLE);
        TypeEditText(d, IDC_TITLE, "Bee");
        TypeEditText(d, IDC_DESCRIPTION, "two\r\nlines");
        TypeComboText(d, IDC_LINK, "http://bee.example/");
        ChooseComboEntry(d, IDC_TARGET, 3);  // _top
        // Back to the first row: it shows its own texts.
        SelectRow(d, 0);
        EXPECT_EQ(GetControlText(d, IDC_TITLE), "A");
        EXPECT_EQ(GetControlText(d, IDC_TARGET), "");
        // With no row selected nothing is stored anywhere.
        ClearRowSelection(d);
        EXPECT_FALSE(Enabled(d, IDC_TITLE));
        TypeEditText(d, IDC_TITLE, "lost");
        Click(d, IDOK);
    });
    ASSERT_TRUE(Run(text));
    EXPECT_FALSE(titleEnabledAtFirst);
    EXPECT_EQ(shownTitle, "B");
    EXPECT_EQ(text, Gallery({{"C:\\a.png", "A"}, {"C:\\b.png", "Bee", "two\r\nlines", "http://bee.example/", "_top"}}));
}

TEST_F(ImageListDialogTest, MoveUpAndDownStopAtTheEndsAndKeepTheRecords) {
    std::string text = Gallery({{"C:\\1.png", "one"}, {"C:\\2.png", "two"}, {"C:\\3.png", "three"}});
    Then([&](HWND d) {
        SelectRow(d, 0);
        Click(d, IDC_MOVE_UP);  // first row: nothing
        SelectRow(d, 2);
        Click(d, IDC_MOVE_DOWN);  // last row: nothing
        EXPECT_EQ(RowText(d, 0), "C:\\1.png");
        EXPECT_EQ(RowText(d, 2), "C:\\3.png");
        Click(d, IDC_MOVE_UP);  // 3 above 2, still selected
        Click(d, IDC_MOVE_UP);  // and above 1
        EXPECT_EQ(GetControlText(d, IDC_TITLE), "three");
        SelectRow(d, 1);
        Click(d, IDC_MOVE_DOWN);  // 1 to the end
        ClearRowSelection(d);  // nothing to move
        Click(d, IDC_MOVE_DOWN);
        Click(d, IDC_MOVE_UP);
        Click(d, IDOK);
    });
    ASSERT_TRUE(Run(text));
    EXPECT_EQ(text, Gallery({{"C:\\3.png", "three"}, {"C:\\2.png", "two"}, {"C:\\1.png", "one"}}));
}

TEST_F(ImageListDialogTest, RemoveDeletesEverySelectedRowAndRemoveAllTheRest) {
    std::string text = Gallery({{"C:\\1.png"}, {"C:\\2.png"}, {"C:\\3.png"}, {"C:\\4.png"}});
    std::vector<std::string> left;
    Then([&](HWND d) {
        HWND list = GetDlgItem(d, IDC_IMAGE_LIST);
        ListView_SetItemState(list, 0, LVIS_SELECTED, LVIS_SELECTED);
        ListView_SetItemState(list, 2, LVIS_SELECTED, LVIS_SELECTED);
        Click(d, IDC_REMOVE);
        for (int row = 0; row < RowCount(d); ++row) left.push_back(RowText(d, row));
        EXPECT_FALSE(Enabled(d, IDC_FAVORITES));
        SelectRow(d, 0);
        Click(d, IDC_REMOVE_ALL);
        // Nothing left to edit: the row fields are empty and disabled, so Tab
        // cannot reach Favorites or Target.
        for (int id : {IDC_TITLE, IDC_FAVORITES, IDC_TARGET}) EXPECT_FALSE(Enabled(d, id)) << id;
        EXPECT_EQ(GetControlText(d, IDC_TITLE), "");
        Click(d, IDOK);
    });
    ASSERT_TRUE(Run(text));
    EXPECT_EQ(left, (std::vector<std::string>{"C:\\2.png", "C:\\4.png"}));
    EXPECT_EQ(text, Gallery({}));
}

TEST_F(ImageListDialogTest, RowsShowTheirLinkType) {
    CXmlDocument* site = Site(kSite);
    std::string text = Gallery({{"C:\\mail.png", "", "", "mailto:someone", "_blank"},
                                {"C:\\about.png", "", "", "./pages/about.html"},
                                {"C:\\plain.png", "", "", "pages/about.html"},
                                {"C:\\web.png", "", "", "HTTP://web.example/", "_self"}});
    Then([&](HWND d) {
        SelectRow(d, 0);
        EXPECT_EQ(ComboSelection(d, IDC_LINK_TYPE), kLinkEmailAddress);
        EXPECT_EQ(GetControlText(d, IDC_LINK), "mailto:someone");
        EXPECT_FALSE(Enabled(d, IDC_TARGET));
        EXPECT_EQ(GetControlText(d, IDC_TARGET), "");  // an e-mail address has no target
        // Back to a web address: the link is kept, the target usable again.
        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkWebSite);
        EXPECT_EQ(GetControlText(d, IDC_LINK), "mailto:someone");
        EXPECT_TRUE(Enabled(d, IDC_TARGET));

        SelectRow(d, 1);
        ExpectPageLinkControls(d);
        EXPECT_EQ(GetControlText(d, IDC_PAGE_DISPLAY), "about");
        EXPECT_TRUE(Enabled(d, IDC_TARGET));

        SelectRow(d, 2);
        EXPECT_EQ(ComboSelection(d, IDC_LINK_TYPE), kLinkWebSite);
        EXPECT_EQ(GetControlText(d, IDC_LINK), "pages/about.html");
        // Its page is still to be chosen: the page of the row before is gone.
        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkInternalPage);
        EXPECT_EQ(GetControlText(d, IDC_PAGE_DISPLAY), kChoosePageHint);

        SelectRow(d, 3);
        EXPECT_EQ(ComboSelection(d, IDC_LINK_TYPE), kLinkWebSite);
        EXPECT_EQ(GetControlText(d, IDC_TARGET), "_self");
        EXPECT_TRUE(Enabled(d, IDC_FAVORITES));
        Click(d, IDCANCEL);
    });
    EXPECT_FALSE(Run(text, site));
}

TEST_F(ImageListDialogTest, SelectTakesThePickedPageIntoTheRow) {
    CXmlDocument* site = Site(kSite);
    std::string text = Gallery({{"C:\\a.png"}});
    Then([&](HWND d) {
        SelectRow(d, 0);
        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkInternalPage);
        EXPECT_EQ(GetControlText(d, IDC_PAGE_DISPLAY), kChoosePageHint);
        Click(d, IDC_SELECT_PAGE);
        EXPECT_EQ(GetControlText(d, IDC_PAGE_DISPLAY), "NEWS");
        Click(d, IDOK);
    });
    Then([&](HWND picker) {
        HWND tree = GetDlgItem(picker, IDC_PAGE_TREE);
        TreeView_SelectItem(tree, FindTreeItem(tree, "NEWS"));
        Click(picker, IDOK);
    });
    ASSERT_TRUE(Run(text, site));
    EXPECT_EQ(text, Gallery({{"C:\\a.png", "", "", "./news.html"}}));
}

TEST_F(ImageListDialogTest, AddAppendsARowPerChosenFileAndNothingOnCancelOrError) {
    struct Case {
        std::string answer;  // what the open-file dialog leaves in its buffer
        bool chosen;
        DWORD error;
        std::vector<ImageListEntry> added;
        std::vector<std::string> boxes;
    };
    const Case cases[] = {
        {std::string("C:\\pics\0b.jpeg\0a.png\0", 22), true, 0,
         {{"C:\\pics\\b.jpeg", "b.jpeg"}, {"C:\\pics\\a.png", "a.png"}}, {}},
        {std::string("D:\\one picture.gif\0", 20), true, 0, {{"D:\\one picture.gif", "one picture.gif"}}, {}},
        {"", false, 0, {}, {}},                                                  // cancelled
        {"x", false, FNERR_BUFFERTOOSMALL, {}, {"Too many files selected!"}},  // what was left is ignored
    };
    for (const Case& c : cases) {
        std::string text = Gallery({{"C:\\old.png"}});
        DWORD flags = 0;
        SetOpenFileDialogFunction([&](OPENFILENAMEA& request, DWORD& error) {
            flags = request.Flags;
            memcpy(request.lpstrFile, c.answer.data(), c.answer.size());
            error = c.error;
            return c.chosen;
        });
        MessageBoxCatcher boxes;
        Then([](HWND d) {
            Click(d, IDC_ADD);
            Click(d, IDOK);
        });
        ASSERT_TRUE(Run(text));
        std::vector<ImageListEntry> rows{{"C:\\old.png"}};
        rows.insert(rows.end(), c.added.begin(), c.added.end());
        EXPECT_EQ(text, Gallery(rows)) << c.answer;
        EXPECT_EQ(boxes.texts, c.boxes);
        EXPECT_TRUE(flags & OFN_ALLOWMULTISELECT);
    }
}

}  // namespace
