#include "link_dialogs_fixture.h"

#include <commctrl.h>

#include "ui/dialog_shown_hook.h"
#include "ui/link_dialog_resources.h"
#include "ui/link_type.h"
#include "ui/open_file_dialog.h"

namespace {

const char kHistoryKey[] = "Software\\SlidewaveTests\\LinkDialogs\\URL_History";

void DeleteTestKeys() { RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\SlidewaveTests"); }

}  // namespace

// --- FakeHostSettings -------------------------------------------------------------

std::string FakeHostSettings::GetString(const char* section, const char* entry) {
    auto found = values.find(std::string(section) + "/" + entry);
    return found == values.end() ? std::string() : found->second;
}

void FakeHostSettings::WriteString(const char* section, const char* entry, const std::string& value) {
    values[std::string(section) + "/" + entry] = value;
}

bool FakeHostSettings::GetRegistryLocation(std::string& registryKey, std::string& profileName) {
    registryKey = "SlidewaveTests";
    profileName = "LinkDialogs";
    return true;
}

// --- LinkDialogsTest ---------------------------------------------------------------

void LinkDialogsTest::SetUp() {
    DeleteTestKeys();
    InstallHostSettings(&settings_);
    SetDialogShownHandler([this](HWND dialog) {
        if (!steps_.empty()) {
            DialogStep step = std::move(steps_.front());
            steps_.pop_front();
            step(dialog);
        }
        // Still open (no step, or a step that stopped early): cancel it.
        PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    });
}

void LinkDialogsTest::TearDown() {
    SetDialogShownHandler(nullptr);
    SetOpenFileDialogFunction(nullptr);
    InstallHostSettings(nullptr);
    DeleteTestKeys();
    EXPECT_TRUE(steps_.empty()) << steps_.size() << " dialog step(s) never ran";
}

CXmlDocument* LinkDialogsTest::Site(const std::string& xml) {
    site_ = std::make_unique<CXmlDocument>();
    site_->Parse(xml);
    return site_.get();
}

void LinkDialogsTest::WriteHistory(const std::vector<std::string>& entries) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kHistoryKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        std::string name = "URL_History" + std::to_string(i);
        RegSetValueExA(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(entries[i].c_str()),
                       static_cast<DWORD>(entries[i].size() + 1));
    }
    RegCloseKey(key);
}

// --- controls ----------------------------------------------------------------------

void Click(HWND dialog, int id) {
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
}

void ChooseComboEntry(HWND dialog, int id, int index) {
    HWND combo = GetDlgItem(dialog, id);
    SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
}

void TypeComboText(HWND dialog, int id, const std::string& text) {
    HWND combo = GetDlgItem(dialog, id);
    SetWindowTextA(combo, text.c_str());
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, CBN_EDITCHANGE), reinterpret_cast<LPARAM>(combo));
}

void TypeEditText(HWND dialog, int id, const std::string& text) {
    // A one-line edit box reports a programmatic change itself; a multi-line
    // one only what the user types.
    HWND edit = GetDlgItem(dialog, id);
    SetWindowTextA(edit, text.c_str());
    if (GetWindowLongA(edit, GWL_STYLE) & ES_MULTILINE)
        SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, EN_CHANGE), reinterpret_cast<LPARAM>(edit));
}


int ComboSelection(HWND dialog, int id) {
    return static_cast<int>(SendDlgItemMessageA(dialog, id, CB_GETCURSEL, 0, 0));
}
int ComboCount(HWND dialog, int id) { return static_cast<int>(SendDlgItemMessageA(dialog, id, CB_GETCOUNT, 0, 0)); }

std::string ComboEntry(HWND dialog, int id, int index) {
    char text[1024] = {};
    SendDlgItemMessageA(dialog, id, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    return text;
}

bool Visible(HWND dialog, int id) { return (GetWindowLongA(GetDlgItem(dialog, id), GWL_STYLE) & WS_VISIBLE) != 0; }
bool Enabled(HWND dialog, int id) { return IsWindowEnabled(GetDlgItem(dialog, id)) != FALSE; }


// --- list and tree -------------------------------------------------------------------

void SelectRow(HWND dialog, int row) {
    ClearRowSelection(dialog);
    ListView_SetItemState(GetDlgItem(dialog, IDC_IMAGE_LIST), row, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
}

void ClearRowSelection(HWND dialog) {
    ListView_SetItemState(GetDlgItem(dialog, IDC_IMAGE_LIST), -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
}

int RowCount(HWND dialog) { return ListView_GetItemCount(GetDlgItem(dialog, IDC_IMAGE_LIST)); }

std::string RowText(HWND dialog, int row) {
    char text[1024] = {};
    ListView_GetItemText(GetDlgItem(dialog, IDC_IMAGE_LIST), row, 0, text, sizeof text);
    return text;
}

HTREEITEM FindTreeItem(HWND tree, const std::string& text) {
    std::vector<HTREEITEM> pending;
    for (HTREEITEM item = TreeView_GetRoot(tree); item; item = TreeView_GetNextSibling(tree, item))
        pending.push_back(item);
    for (std::size_t i = 0; i < pending.size(); ++i) {
        if (TreeItemText(tree, pending[i]) == text) return pending[i];
        for (HTREEITEM c = TreeView_GetChild(tree, pending[i]); c; c = TreeView_GetNextSibling(tree, c))
            pending.push_back(c);
    }
    return nullptr;
}

std::vector<std::string> TreeChildren(HWND tree, HTREEITEM item) {
    std::vector<std::string> texts;
    HTREEITEM child = item ? TreeView_GetChild(tree, item) : TreeView_GetRoot(tree);
    for (; child; child = TreeView_GetNextSibling(tree, child)) texts.push_back(TreeItemText(tree, child));
    return texts;
}


void DoubleClickTreeItem(HWND dialog, int treeId, HTREEITEM item) {
    HWND tree = GetDlgItem(dialog, treeId);
    TreeView_SelectItem(tree, item);
    NMHDR header = {tree, static_cast<UINT_PTR>(treeId), static_cast<UINT>(NM_DBLCLK)};
    SendMessageA(dialog, WM_NOTIFY, static_cast<WPARAM>(treeId), reinterpret_cast<LPARAM>(&header));
}

// --- message boxes ---------------------------------------------------------------------

namespace {
MessageBoxCatcher* g_catcher = nullptr;

LRESULT CALLBACK CatchMessageBoxes(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_ACTIVATE && g_catcher) {
        HWND window = reinterpret_cast<HWND>(wParam);
        char className[16] = {};
        GetClassNameA(window, className, sizeof className);
        // A system dialog without any of our dialogs' controls.
        bool ours =
            GetDlgItem(window, IDC_LINK) || GetDlgItem(window, IDC_PAGE_TREE) || GetDlgItem(window, IDC_FAVORITES_TREE);
        if (std::string(className) == "#32770" && !ours) {
            char text[512] = {};
            GetDlgItemTextA(window, 0xFFFF, text, sizeof text);
            g_catcher->texts.push_back(text);
            PostMessageA(window, WM_COMMAND, IDOK, 0);
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}
}  // namespace

MessageBoxCatcher::MessageBoxCatcher() {
    g_catcher = this;
    hook_ = SetWindowsHookExA(WH_CBT, CatchMessageBoxes, nullptr, GetCurrentThreadId());
}

MessageBoxCatcher::~MessageBoxCatcher() {
    if (hook_) UnhookWindowsHookEx(hook_);
    g_catcher = nullptr;
}

void ExpectPageLinkControls(HWND d) {
    EXPECT_EQ(ComboSelection(d, IDC_LINK_TYPE), kLinkInternalPage);
    EXPECT_EQ(GetControlText(d, IDC_LINK_LABEL), "&Page:");
    EXPECT_TRUE(Visible(d, IDC_PAGE_DISPLAY));
    EXPECT_TRUE(Visible(d, IDC_SELECT_PAGE));
    EXPECT_FALSE(Visible(d, IDC_LINK));
    EXPECT_FALSE(Visible(d, IDC_FAVORITES));
}
