// The URL dialog: how it reads a link at opening, the link-type switching,
// its pickers and the link history from the host's registry settings.
#include "link_dialogs_fixture.h"
#include "ui/link_dialog.h"
#include "ui/link_dialog_resources.h"
#include "ui/link_type.h"

namespace {

const char kSite[] =
    "<site><folder name=\"Docs\"><page name=\"NEWS\" url=\"./news.html\"/></folder>"
    "<page name=\"index\" url=\"./index.html\" current_page=\"true\"/></site>";

class LinkDialogTest : public LinkDialogsTest {
protected:
    bool Run(std::string& link, CXmlDocument* site = nullptr) { return RunLinkDialog(nullptr, link, site); }
};

TEST_F(LinkDialogTest, OkReturnsTheEditedLinkAndCancelKeepsIt) {
    std::string link = "http://old.example/";
    Then([](HWND d) {
        EXPECT_EQ(GetControlText(d, IDC_LINK), "http://old.example/");
        TypeComboText(d, IDC_LINK, "http://new.example/");
        Click(d, IDOK);
    });
    ASSERT_TRUE(Run(link));
    EXPECT_EQ(link, "http://new.example/");

    Then([](HWND d) {
        TypeComboText(d, IDC_LINK, "http://lost.example/");
        Click(d, IDCANCEL);
    });
    EXPECT_FALSE(Run(link));
    EXPECT_EQ(link, "http://new.example/");
}

TEST_F(LinkDialogTest, OpensWithTheTypeTheLinkHas) {
    CXmlDocument* site = Site(kSite);
    // A page of the site shows its name; a relative link to no known page
    // stays in the link box, the page still to be chosen; an e-mail address
    // (any case) hides Favorites.
    std::string link = "./news.html";
    Then([](HWND d) {
        ExpectPageLinkControls(d);
        EXPECT_EQ(GetControlText(d, IDC_PAGE_DISPLAY), "NEWS");
        Click(d, IDOK);
    });
    ASSERT_TRUE(Run(link, site));
    EXPECT_EQ(link, "./news.html");

    link = "./missing.html";
    Then([](HWND d) {
        EXPECT_EQ(ComboSelection(d, IDC_LINK_TYPE), kLinkWebSite);
        EXPECT_EQ(GetControlText(d, IDC_LINK_LABEL), "&Page:");
        EXPECT_EQ(GetControlText(d, IDC_PAGE_DISPLAY), kChoosePageHint);
        EXPECT_TRUE(Visible(d, IDC_LINK));
        Click(d, IDCANCEL);
    });
    Run(link, site);

    link = "MailTo:x@example.com";
    Then([](HWND d) {
        EXPECT_EQ(ComboSelection(d, IDC_LINK_TYPE), kLinkEmailAddress);
        EXPECT_FALSE(Visible(d, IDC_FAVORITES));
        Click(d, IDCANCEL);
    });
    Run(link);
}

TEST_F(LinkDialogTest, SwitchingTypesAdjustsTheTexts) {
    std::string link = "";
    Then([](HWND d) {
        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkWebSite);
        EXPECT_EQ(GetControlText(d, IDC_LINK), "http://");
        EXPECT_EQ(GetControlText(d, IDC_LINK_LABEL), "&URL:");

        TypeComboText(d, IDC_LINK, "shop.example");
        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkEmailAddress);
        EXPECT_EQ(GetControlText(d, IDC_LINK), "mailto:");
        EXPECT_EQ(GetControlText(d, IDC_LINK_LABEL), "T&o:");
        // Deliberately left in view, only disabled.
        EXPECT_TRUE(Visible(d, IDC_FAVORITES));
        EXPECT_FALSE(Enabled(d, IDC_FAVORITES));

        TypeComboText(d, IDC_LINK, "Write to mailto:x");
        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkEmailAddress);
        EXPECT_EQ(GetControlText(d, IDC_LINK), "Write to mailto:x");

        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkInternalPage);
        EXPECT_EQ(GetControlText(d, IDC_LINK_LABEL), "&Page:");
        EXPECT_TRUE(Visible(d, IDC_SELECT_PAGE));
        EXPECT_FALSE(Visible(d, IDC_LINK));
        Click(d, IDOK);
    });
    ASSERT_TRUE(Run(link));
    EXPECT_EQ(link, "Write to mailto:x");
}

TEST_F(LinkDialogTest, SelectTakesThePagesUrlAndCancelInThePickerChangesNothing) {
    CXmlDocument* site = Site(kSite);
    std::string link = "http://x.example/";
    Then([](HWND d) {
        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkInternalPage);
        Click(d, IDC_SELECT_PAGE);  // cancelled below
        EXPECT_EQ(GetControlText(d, IDC_PAGE_DISPLAY), kChoosePageHint);
        Click(d, IDC_SELECT_PAGE);
        EXPECT_EQ(GetControlText(d, IDC_PAGE_DISPLAY), "index");
        EXPECT_EQ(GetFocus(), GetDlgItem(d, IDOK)) << "Enter now confirms";
        Click(d, IDOK);
    });
    Then([](HWND picker) { Click(picker, IDCANCEL); });
    Then([](HWND picker) {
        HWND tree = GetDlgItem(picker, IDC_PAGE_TREE);
        DoubleClickTreeItem(picker, IDC_PAGE_TREE, FindTreeItem(tree, "index"));
    });
    ASSERT_TRUE(Run(link, site));
    EXPECT_EQ(link, "./index.html");
}

TEST_F(LinkDialogTest, HistoryShowsTheTextsBeforeTheBarUpToAMissingOrEmptyValueOrSixteen) {
    std::vector<std::string> twenty;
    for (int i = 0; i < 20; ++i) twenty.push_back("h" + std::to_string(i));
    // Each list is written over the one before.
    const std::pair<std::vector<std::string>, std::vector<std::string>> cases[] = {
        {{"http://a.example/|A site", "b.example", "c.example|"}, {"http://a.example/", "b.example", "c.example"}},
        {twenty, {twenty.begin(), twenty.begin() + 16}},
        {{"a|b", ""}, {"a"}},
    };
    for (const auto& [values, shown] : cases) {
        WriteHistory(values);
        std::string link = "http://x.example/";
        std::vector<std::string> entries;
        Then([&](HWND d) {
            for (int i = 0; i < ComboCount(d, IDC_LINK); ++i) entries.push_back(ComboEntry(d, IDC_LINK, i));
            ChooseComboEntry(d, IDC_LINK, ComboCount(d, IDC_LINK) - 1);
            Click(d, IDOK);
        });
        ASSERT_TRUE(Run(link));
        EXPECT_EQ(entries, shown);
        EXPECT_EQ(link, shown.back());
    }
}

}  // namespace
