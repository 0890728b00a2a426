// Pictures of the Files, URL and Select Page dialogs for scripts/screenshots.
// They are taken only when PW_SCREENSHOT_DIR names a folder (the script runs
// them in a Wine desktop, so the windows have frames); otherwise skipped.
#include <windows.h>

#include <commctrl.h>

#include <cstdlib>

#include "html/image_list.h"
#include "link_dialogs_fixture.h"
#include "screen_capture.h"
#include "ui/image_list_dialog.h"
#include "ui/link_dialog.h"
#include "ui/link_dialog_resources.h"
#include "ui/page_picker.h"

namespace {

const char kSite[] =
    "<site><page name=\"index\" url=\"./index.html\"/>"
    "<folder name=\"gallery\"><page name=\"summer\" url=\"./gallery/summer.html\" current_page=\"true\"/>"
    "<page name=\"winter\" url=\"./gallery/winter.html\"/></folder>"
    "<folder name=\"about\"><page name=\"contact\" url=\"./about/contact.html\"/>"
    "<page name=\"team\" url=\"./about/team.html\"/></folder></site>";

class LinkDialogScreenshots : public LinkDialogsTest {
protected:
    void SetUp() override {
        const char* folder = std::getenv("PW_SCREENSHOT_DIR");
        if (!folder || !*folder) GTEST_SKIP() << "PW_SCREENSHOT_DIR is not set";
        folder_ = folder;
        LinkDialogsTest::SetUp();
    }

    // Shows the dialog, lets it paint, and writes it to NAME.bmp.
    void Capture(HWND dialog, const char* name) {
        SetWindowPos(dialog, HWND_TOP, 40, 40, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
        SetForegroundWindow(dialog);
        DWORD until = GetTickCount() + 700;
        while (GetTickCount() < until) {
            MSG message;
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
                TranslateMessage(&message);
                DispatchMessageA(&message);
            }
            Sleep(20);
        }
        RECT area;
        GetWindowRect(dialog, &area);
        std::string path = folder_ + "\\" + name + ".bmp";
        EXPECT_TRUE(CaptureScreenRect(area, path.c_str())) << path;
    }

    std::string folder_;
};

TEST_F(LinkDialogScreenshots, FilesDialog) {
    CXmlDocument* site = Site(kSite);
    std::string text = WriteImageList({
        {"C:\\Pictures\\Holiday\\01-dawn.png", "Dawn", "First light over the bay"},
        {"C:\\Pictures\\Holiday\\02-noon.png", "Noon", "", "http://www.example.com/noon", "_blank"},
        {"C:\\Pictures\\Holiday\\03-dusk.png", "Dusk", "The harbour at dusk,\r\nseen from the old lighthouse",
         "./gallery/summer.html", "_self"},
        {"C:\\Pictures\\Holiday\\04-night.png", "Night", "", "mailto:photos@example.com"},
    });
    Then([&](HWND d) {
        SelectRow(d, 2);
        Capture(d, "files-dialog");
        Click(d, IDCANCEL);
    });
    RunImageListDialog(nullptr, text, site);
}

TEST_F(LinkDialogScreenshots, LinkDialog) {
    WriteHistory({"http://www.example.com/|Example", "http://www.example.org/news"});
    std::string link = "http://www.example.com/gallery/";
    Then([&](HWND d) {
        Capture(d, "link-dialog");
        Click(d, IDCANCEL);
    });
    RunLinkDialog(nullptr, link, nullptr);
}

TEST_F(LinkDialogScreenshots, SelectPage) {
    CXmlDocument* site = Site(kSite);
    Then([&](HWND d) {
        HWND tree = GetDlgItem(d, IDC_PAGE_TREE);
        TreeView_Expand(tree, FindTreeItem(tree, "about"), TVE_EXPAND);
        Capture(d, "select-page");
        Click(d, IDCANCEL);
    });
    PagePickerRequest request;
    request.site = site;
    request.currentPage = "summer";
    CXmlElement* chosen = nullptr;
    RunPagePicker(nullptr, request, chosen);
}

}  // namespace
