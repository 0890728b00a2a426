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
        EXPECT_EQ(Text(d, IDC_LINK), "http://old.example/");
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

TEST_F(LinkDialogTest, APageOfTheSiteOpensAsInternalWebPageWithItsName) {
    CXmlDocument* site = Site(kSite);
    std::string link = "./news.html";
    Then([](HWND d) {
        ExpectPageLinkControls(d);
        EXPECT_EQ(Text(d, IDC_PAGE_DISPLAY), "NEWS");
        Click(d, IDOK);
    });
    ASSERT_TRUE(Run(link, site));
    EXPECT_EQ(link, "./news.html");
}

TEST_F(LinkDialogTest, ARelativeLinkToNoKnownPageStaysInTheLinkBox) {
    CXmlDocument* site = Site(kSite);
    std::string link = "./missing.html";
    Then([](HWND d) {
        EXPECT_EQ(ComboSelection(d, IDC_LINK_TYPE), kLinkWebSite);
        EXPECT_EQ(Text(d, IDC_LINK_LABEL), "&Page:");
        EXPECT_EQ(Text(d, IDC_PAGE_DISPLAY), kChoosePageHint);
        EXPECT_TRUE(Visible(d, IDC_LINK));
        Click(d, IDCANCEL);
    });
    Run(link, site);
}

TEST_F(LinkDialogTest, AnEmailAddressOpensWithFavoritesHidden) {
    std::string link = "MailTo:x@example.com";
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
        EXPECT_EQ(Text(d, IDC_LINK), "http://");
        EXPECT_EQ(Text(d, IDC_LINK_LABEL), "&URL:");

        TypeComboText(d, IDC_LINK, "shop.example");
        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkEmailAddress);
        EXPECT_EQ(Text(d, IDC_LINK), "mailto:");
        EXPECT_EQ(Text(d, IDC_LINK_LABEL), "T&o:");
        // Deliberately left in view, only disabled.
        EXPECT_TRUE(Visible(d, IDC_FAVORITES));
        EXPECT_FALSE(Enabled(d, IDC_FAVORITES));

        TypeComboText(d, IDC_LINK, "Write to mailto:x");
        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkEmailAddress);
        EXPECT_EQ(Text(d, IDC_LINK), "Write to mailto:x");

        ChooseComboEntry(d, IDC_LINK_TYPE, kLinkInternalPage);
        EXPECT_EQ(Text(d, IDC_LINK_LABEL), "&Page:");
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
        EXPECT_EQ(Text(d, IDC_PAGE_DISPLAY), kChoosePageHint);
        Click(d, IDC_SELECT_PAGE);
        EXPECT_EQ(Text(d, IDC_PAGE_DISPLAY), "index");
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

TEST_F(LinkDialogTest, HistoryListsTheValuesUpToTheFirstMissingOne) {
    WriteHistory({"http://a.example/|A site", "b.example", "c.example|"});
    std::string link = "http://x.example/";
    std::vector<std::string> entries;
    Then([&](HWND d) {
        for (int i = 0; i < ComboCount(d, IDC_LINK); ++i) entries.push_back(ComboEntry(d, IDC_LINK, i));
        ChooseComboEntry(d, IDC_LINK, 1);
        Click(d, IDOK);
    });
    ASSERT_TRUE(Run(link));
    EXPECT_EQ(entries, (std::vector<std::string>{"http://a.example/", "b.example", "c.example"}));
    EXPECT_EQ(link, "b.example");
}

TEST_F(LinkDialogTest, HistoryStopsAtAnEmptyValueAndAtSixteenEntries) {
    std::vector<std::string> values;
    for (int i = 0; i < 20; ++i) values.push_back("h" + std::to_string(i));
    WriteHistory(values);
    std::string link;
    int count = 0;
    Then([&](HWND d) {
        count = ComboCount(d, IDC_LINK);
        Click(d, IDCANCEL);
    });
    Run(link);
    EXPECT_EQ(count, 16);

    WriteHistory({"a|b", ""});
    Then([&](HWND d) {
        count = ComboCount(d, IDC_LINK);
        EXPECT_EQ(ComboEntry(d, IDC_LINK, 0), "a");
        Click(d, IDCANCEL);
    });
    Run(link);
    EXPECT_EQ(count, 1);
}

}  // namespace
