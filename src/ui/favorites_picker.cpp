#include "ui/favorites_picker.h"

#include <commctrl.h>

#include <algorithm>
#include <vector>

#include "ui/link_dialog_resources.h"
#include "ui/picker_tree.h"
#include "ui/tree_picker_dialog.h"
#include "platform/own_module.h"
#include "xml/ascii.h"

namespace {

constexpr int kFolderImage = 1;
constexpr int kLinkImage = 2;
constexpr LPARAM kNoLink = -1;
// Folders nested deeper than this (a junction that loops) are not listed.
constexpr int kMaximumDepth = 32;

struct Shortcut {
    std::string name;  // the file name without ".url"
    std::string url;
};

bool LessIgnoringCase(const std::string& a, const std::string& b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char x, char y) { return ascii::ToLower(x) < ascii::ToLower(y); });
}

bool EndsWithUrl(const std::string& fileName) {
    return fileName.size() >= 4 && ascii::Lower(fileName.substr(fileName.size() - 4)) == ".url";
}

std::string ShortcutUrl(const std::string& path) {
    char url[2048] = {};
    GetPrivateProfileStringA("InternetShortcut", "URL", "", url, sizeof url, path.c_str());
    return url;
}

class CFavoritesPicker : public CTreePickerDialog {
public:
    CFavoritesPicker() : CTreePickerDialog(IDC_FAVORITES_TREE) {}

    bool Run(HWND parent, std::string& url) {
        if (!CTreePickerDialog::Run(parent, PW_DIALOG_SELECT_FAVORITE)) return false;
        url = m_chosen;
        return true;
    }

private:
    void OnInitDialog() override {
        m_images = LoadSmallIcons({IDI_LINK_SITE, IDI_LINK_FOLDER, IDI_LINK_SHORTCUT});
        TreeView_SetImageList(m_tree, m_images, TVSIL_NORMAL);
        std::string folder = FavoritesFolder();
        if (!folder.empty()) FillFolder(folder, TVI_ROOT, 0);
    }

    HTREEITEM InsertItem(HTREEITEM parent, HTREEITEM after, const std::string& text, int image, LPARAM data) {
        return InsertTreeItem(m_tree, parent, after, text, image, data);
    }

    // The folder's shortcuts, sorted, then its subfolders above them in the
    // order the file system lists them, each filled in turn.
    void FillFolder(std::string path, HTREEITEM item, int depth) {
        if (path.empty() || path.back() != '\\') path += '\\';

        std::vector<Shortcut> shortcuts;
        std::vector<std::string> subfolders;
        WIN32_FIND_DATAA entry = {};
        HANDLE search = FindFirstFileA((path + "*.*").c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE) return;
        do {
            std::string name = entry.cFileName;
            if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                if (name != "." && name != "..") subfolders.push_back(name);
                continue;
            }
            if (entry.dwFileAttributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) continue;
            if (!EndsWithUrl(name)) continue;
            shortcuts.push_back({name.substr(0, name.size() - 4), ShortcutUrl(path + name)});
        } while (FindNextFileA(search, &entry));
        FindClose(search);

        std::stable_sort(shortcuts.begin(), shortcuts.end(),
                         [](const Shortcut& a, const Shortcut& b) { return LessIgnoringCase(a.name, b.name); });
        for (const Shortcut& shortcut : shortcuts) {
            m_urls.push_back(shortcut.url);
            InsertItem(item, TVI_LAST, shortcut.name, kLinkImage, static_cast<LPARAM>(m_urls.size() - 1));
        }

        if (depth >= kMaximumDepth) return;
        HTREEITEM previous = TVI_FIRST;
        for (const std::string& name : subfolders) {
            HTREEITEM folder = InsertItem(item, previous, name, kFolderImage, kNoLink);
            if (!folder) continue;
            previous = folder;
            FillFolder(path + name, folder, depth + 1);
        }
    }

    void OnOK() override {
        HTREEITEM selected = TreeView_GetSelection(m_tree);
        LPARAM index = selected ? TreeItemData(m_tree, selected) : -1;  // folders hold -1
        if (index >= 0 && static_cast<std::size_t>(index) < m_urls.size())
            m_chosen = m_urls[static_cast<std::size_t>(index)];
        if (!m_chosen.empty()) EndDialog(m_dialog, IDOK);
    }

    std::vector<std::string> m_urls;
    std::string m_chosen;
};

}  // namespace

std::string FavoritesFolder() {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders",
                      0, KEY_READ, &key) != ERROR_SUCCESS)
        return {};
    char value[MAX_PATH + 1] = {};
    DWORD size = MAX_PATH;
    DWORD kind = 0;
    bool read =
        RegQueryValueExA(key, "Favorites", nullptr, &kind, reinterpret_cast<BYTE*>(value), &size) == ERROR_SUCCESS &&
        (kind == REG_SZ || kind == REG_EXPAND_SZ);
    RegCloseKey(key);
    if (!read) return {};
    value[size < MAX_PATH ? size : MAX_PATH] = 0;
    char expanded[MAX_PATH + 1] = {};
    DWORD length = ExpandEnvironmentStringsA(value, expanded, MAX_PATH);
    if (length == 0 || length > MAX_PATH) return value;
    return expanded;
}

bool RunFavoritesPicker(HWND parent, std::string& url) {
    CFavoritesPicker picker;
    return picker.Run(parent, url);
}
