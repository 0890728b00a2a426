// The favourites picker over a Favorites folder of our own, named in the
// registry for the test (the user's value is put back afterwards).
#include <windows.h>

#include <commctrl.h>

#include <cstdio>

#include "link_dialogs_fixture.h"
#include "ui/favorites_picker.h"
#include "ui/link_dialog.h"
#include "ui/link_dialog_resources.h"

namespace {

const char kShellFolders[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

class FavoritesPickerTest : public LinkDialogsTest {
protected:
    void SetUp() override {
        LinkDialogsTest::SetUp();
        char temp[MAX_PATH] = {};
        GetTempPathA(MAX_PATH, temp);
        folder_ = std::string(temp) + "pw-favorites-" + std::to_string(GetCurrentProcessId());
        RemoveFolder(folder_);
        CreateDirectoryA(folder_.c_str(), nullptr);
        ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kShellFolders, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_,
                                  nullptr),
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
        RemoveFolder(folder_);
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
        std::string path = folder_ + "\\" + relative;
        FILE* file = std::fopen(path.c_str(), "wb");
        ASSERT_NE(file, nullptr) << path;
        std::fprintf(file, "[InternetShortcut]\r\nURL=%s\r\n", url.c_str());
        std::fclose(file);
    }

    void Folder(const std::string& relative) { CreateDirectoryA((folder_ + "\\" + relative).c_str(), nullptr); }

    static void RemoveFolder(const std::string& path) {
        WIN32_FIND_DATAA entry = {};
        HANDLE search = FindFirstFileA((path + "\\*").c_str(), &entry);
        if (search != INVALID_HANDLE_VALUE) {
            do {
                std::string name = entry.cFileName;
                if (name == "." || name == "..") continue;
                std::string child = path + "\\" + name;
                SetFileAttributesA(child.c_str(), FILE_ATTRIBUTE_NORMAL);
                if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) RemoveFolder(child);
                else DeleteFileA(child.c_str());
            } while (FindNextFileA(search, &entry));
            FindClose(search);
        }
        RemoveDirectoryA(path.c_str());
    }

    std::string folder_;
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
    SetFileAttributesA((folder_ + "\\secret.url").c_str(), FILE_ATTRIBUTE_HIDDEN);
    Folder("News");
    Shortcut("News\\Daily.url", "http://daily.example/");
    Folder("News\\Deeper");
    Shortcut("News\\Deeper\\deep.url", "http://deep.example/");
    Shortcut("broken.url", "");
    UseFolder(folder_);

    std::vector<std::string> top, news;
    std::string caption;
    Then([&](HWND d) {
        caption = Caption(d);
        HWND tree = GetDlgItem(d, IDC_FAVORITES_TREE);
        top = TreeChildren(tree, nullptr);
        news = TreeChildren(tree, FindTreeItem(tree, "News"));
        // A folder does not close the dialog, nor does a shortcut without URL.
        SelectTreeItem(tree, FindTreeItem(tree, "News"));
        Click(d, IDOK);
        SelectTreeItem(tree, FindTreeItem(tree, "broken"));
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

TEST_F(FavoritesPickerTest, AMissingFolderGivesAnEmptyTree) {
    UseFolder(folder_ + "\\does-not-exist");
    std::size_t items = 99;
    Then([&](HWND d) {
        items = TreeChildren(GetDlgItem(d, IDC_FAVORITES_TREE), nullptr).size();
        Click(d, IDOK);  // nothing chosen: stays open, then cancelled
    });
    std::string url = "kept";
    EXPECT_FALSE(RunFavoritesPicker(nullptr, url));
    EXPECT_EQ(items, 0u);
    EXPECT_EQ(url, "kept");
}

TEST_F(FavoritesPickerTest, TheLinkDialogTakesTheChosenFavorite) {
    Shortcut("a.url", "http://a.example/");
    UseFolder(folder_);
    Then([](HWND d) {
        Click(d, IDC_FAVORITES);
        EXPECT_EQ(Text(d, IDC_LINK), "http://a.example/");
        Click(d, IDOK);
    });
    Then([](HWND picker) {
        HWND tree = GetDlgItem(picker, IDC_FAVORITES_TREE);
        SelectTreeItem(tree, FindTreeItem(tree, "a"));
        Click(picker, IDOK);
    });
    std::string link = "http://old.example/";
    ASSERT_TRUE(RunLinkDialog(nullptr, link, nullptr));
    EXPECT_EQ(link, "http://a.example/");
}

}  // namespace
