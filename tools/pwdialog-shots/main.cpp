// Pictures of the Files, URL and Select Page dialogs for scripts/screenshots:
//
//   pwdialog-shots FOLDER
//
// opens each dialog with sample data, lets it paint, writes FOLDER\NAME.bmp
// (files-dialog, link-dialog, select-page) and cancels it. Run it in a Wine
// desktop so the windows get their frames. Not shipped.
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "html/image_list.h"
#include "screen_capture.h"
#include "ui/dialog_shown_hook.h"
#include "ui/host_settings.h"
#include "ui/image_list_dialog.h"
#include "ui/link_dialog.h"
#include "ui/link_dialog_resources.h"
#include "ui/page_picker.h"
#include "ui/picker_tree.h"
#include "xml/xml_document.h"

namespace {

const char kSite[] =
    "<site><page name=\"index\" url=\"./index.html\"/>"
    "<folder name=\"gallery\"><page name=\"summer\" url=\"./gallery/summer.html\" current_page=\"true\"/>"
    "<page name=\"winter\" url=\"./gallery/winter.html\"/></folder>"
    "<folder name=\"about\"><page name=\"contact\" url=\"./about/contact.html\"/>"
    "<page name=\"team\" url=\"./about/team.html\"/></folder></site>";

// The link history lives under HKEY_CURRENT_USER\Software\<key>\<profile>.
const char kHistoryKey[] = "Software\\SlidewaveShots\\Dialogs\\URL_History";

class ShotSettings : public CHostSettings {
public:
    std::string GetString(const char*, const char*) override { return {}; }
    void WriteString(const char*, const char*, const std::string&) override {}
    bool GetRegistryLocation(std::string& registryKey, std::string& profileName) override {
        registryKey = "SlidewaveShots";
        profileName = "Dialogs";
        return true;
    }
};

void WriteHistory(std::initializer_list<const char*> entries) {
    HKEY key = nullptr;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, kHistoryKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr))
        return;
    int i = 0;
    for (const char* entry : entries) {
        std::string name = "URL_History" + std::to_string(i++);
        RegSetValueExA(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(entry),
                       static_cast<DWORD>(lstrlenA(entry) + 1));
    }
    RegCloseKey(key);
}

void DeleteHistory() {
    for (const char* key : {kHistoryKey, "Software\\SlidewaveShots\\Dialogs", "Software\\SlidewaveShots"})
        RegDeleteKeyA(HKEY_CURRENT_USER, key);
}

// Shows the dialog, lets it paint for a while, writes it and cancels it.
bool Capture(HWND dialog, const std::string& path) {
    SetWindowPos(dialog, HWND_TOP, 40, 40, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
    SetForegroundWindow(dialog);
    for (DWORD until = GetTickCount() + 700; GetTickCount() < until; Sleep(20)) {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }
    RECT area;
    GetWindowRect(dialog, &area);
    bool written = CaptureScreenRect(area, path.c_str());
    PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    return written;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::string folder = argv[1];
    InitCommonControls();
    ShotSettings settings;
    InstallHostSettings(&settings);
    CXmlDocument site;
    site.Parse(kSite);
    bool ok = true;

    SetDialogShownHandler([&](HWND d) {
        ListView_SetItemState(GetDlgItem(d, IDC_IMAGE_LIST), 2, LVIS_SELECTED | LVIS_FOCUSED,
                              LVIS_SELECTED | LVIS_FOCUSED);
        ok = Capture(d, folder + "\\files-dialog.bmp") && ok;
    });
    std::string images = WriteImageList({
        {"C:\\Pictures\\Holiday\\01-dawn.png", "Dawn", "First light over the bay"},
        {"C:\\Pictures\\Holiday\\02-noon.png", "Noon", "", "http://www.example.com/noon", "_blank"},
        {"C:\\Pictures\\Holiday\\03-dusk.png", "Dusk", "The harbour at dusk,\r\nseen from the old lighthouse",
         "./gallery/summer.html", "_self"},
        {"C:\\Pictures\\Holiday\\04-night.png", "Night", "", "mailto:photos@example.com"},
    });
    RunImageListDialog(nullptr, images, &site);

    DeleteHistory();
    WriteHistory({"http://www.example.com/|Example", "http://www.example.org/news"});
    SetDialogShownHandler([&](HWND d) { ok = Capture(d, folder + "\\link-dialog.bmp") && ok; });
    std::string link = "http://www.example.com/gallery/";
    RunLinkDialog(nullptr, link, nullptr);
    DeleteHistory();

    SetDialogShownHandler([&](HWND d) {
        // The site's root item holds the folders.
        HWND tree = GetDlgItem(d, IDC_PAGE_TREE);
        HTREEITEM root = TreeView_GetRoot(tree);
        for (HTREEITEM item = TreeView_GetChild(tree, root); item; item = TreeView_GetNextSibling(tree, item))
            if (TreeItemText(tree, item) == "about") TreeView_Expand(tree, item, TVE_EXPAND);
        ok = Capture(d, folder + "\\select-page.bmp") && ok;
    });
    PagePickerRequest request;
    request.site = &site;
    request.currentPage = "summer";
    CXmlElement* chosen = nullptr;
    RunPagePicker(nullptr, request, chosen);

    SetDialogShownHandler(nullptr);
    InstallHostSettings(nullptr);
    return ok ? 0 : 1;
}
