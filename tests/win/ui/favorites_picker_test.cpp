// The favourites picker over a Favorites folder of our own, named in the
// registry for the test (the user's value is put back afterwards).
#include <windows.h>

#include <commctrl.h>

#include "link_dialogs_fixture.h"
#include "test_pictures.h"
#include "ui/favorites_picker.h"
#include "ui/link_dialog.h"
#include "ui/link_dialog_resources.h"

namespace {

const char kShellFolders[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

class FavoritesPickerTest : public LinkDialogsTest {
protected:
    void SetUp() override {
        LinkDialogsTest::SetUp();
        ASSERT_EQ(
            RegCreateKeyExA(HKEY_CURRENT_USER, kShellFolders, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, nullptr),
            ERROR_SUCCESS);
        char old[MAX_PATH * 2] = {};
        DWORD size = sizeof old - 1;
        hadValue_ = RegQueryValueExA(key_, "Favorites", nullptr, &oldKind_, reinterpret_cast<BYTE*>(old), &size) ==
                    ERROR_SUCCESS;
        oldValue_.assign(old, size);
    }

    void TearDown() override {
        if (key_) {
            if (hadValue_)
                RegSetValueExA(key_, "Favorites", 0, oldKind_, reinterpret_cast<const BYTE*>(oldValue_.data()),
                               static_cast<DWORD>(oldValue_.size()));
            else
                RegDeleteValueA(key_, "Favorites");
            RegCloseKey(key_);
        }
        LinkDialogsTest::TearDown();
    }

    // Names the folder in the registry, through an environment variable as
    // the system writes it.
    void UseFolder(const std::string& folder) {
        SetEnvironmentVariableA("PW_FAVORITES_TEST", folder.c_str());
        const char value[] = "%PW_FAVORITES_TEST%";
        RegSetValueExA(key_, "Favorites", 0, REG_EXPAND_SZ, reinterpret_cast<const BYTE*>(value), sizeof value);
    }

    void Shortcut(const std::string& relative, const std::string& url) {
        favorites_.Write(relative, "[InternetShortcut]\r\nURL=" + url + "\r\n");
    }

    test_pictures::ScratchFolder favorites_;
    HKEY key_ = nullptr;
    bool hadValue_ = false;
    DWORD oldKind_ = REG_EXPAND_SZ;
    std::string oldValue_;
};

TEST_F(FavoritesPickerTest, ListsSubfoldersFirstThenShortcutsSortedAndReturnsTheChosenUrl) {
    Shortcut("zeta.url", "http://zeta.example/");
    Shortcut("Alpha.URL", "http://alpha.example/");
    Shortcut("beta.url", "http://beta.example/");
    Shortcut("notes.txt", "http://not-a-shortcut.example/");
    Shortcut("secret.url", "http://hidden.example/");
    SetFileAttributesA(favorites_.Path("secret.url").c_str(), FILE_ATTRIBUTE_HIDDEN);
    Shortcut("News\\Daily.url", "http://daily.example/");
    Shortcut("News\\Deeper\\deep.url", "http://deep.example/");
    Shortcut("broken.url", "");
    UseFolder(favorites_.Folder());

    std::vector<std::string> top, news;
    std::string caption;
    Then([&](HWND d) {
        caption = WindowText(d);
        HWND tree = GetDlgItem(d, IDC_FAVORITES_TREE);
        top = TreeChildren(tree, nullptr);
        news = TreeChildren(tree, FindTreeItem(tree, "News"));
        // A folder does not close the dialog, nor does a shortcut without URL.
        TreeView_SelectItem(tree, FindTreeItem(tree, "News"));
        Click(d, IDOK);
        TreeView_SelectItem(tree, FindTreeItem(tree, "broken"));
        Click(d, IDOK);
        DoubleClickTreeItem(d, IDC_FAVORITES_TREE, FindTreeItem(tree, "deep"));
    });
    std::string url;
    ASSERT_TRUE(RunFavoritesPicker(nullptr, url));
    EXPECT_EQ(url, "http://deep.example/");
    EXPECT_EQ(caption, "Select Link from Favorites");
    EXPECT_EQ(top, (std::vector<std::string>{"News", "Alpha", "beta", "broken", "zeta"}));
    EXPECT_EQ(news, (std::vector<std::string>{"Deeper", "Daily"}));
}

TEST_F(FavoritesPickerTest, TheLinkDialogTakesTheChosenFavorite) {
    Shortcut("a.url", "http://a.example/");
    UseFolder(favorites_.Folder());
    Then([](HWND d) {
        Click(d, IDC_FAVORITES);
        EXPECT_EQ(GetControlText(d, IDC_LINK), "http://a.example/");
        Click(d, IDOK);
    });
    Then([](HWND picker) {
        HWND tree = GetDlgItem(picker, IDC_FAVORITES_TREE);
        TreeView_SelectItem(tree, FindTreeItem(tree, "a"));
        Click(picker, IDOK);
    });
    std::string link = "http://old.example/";
    ASSERT_TRUE(RunLinkDialog(nullptr, link, nullptr));
    EXPECT_EQ(link, "http://a.example/");
}

}  // namespace
