// pwgrid-demo: a window with a property grid holding every cell kind.
//
//   --alphabetical         start in alphabetical order
//   --filter TEXT          show the filter box holding TEXT
//   --select NAME          focus the row of that name
//   --edit                 open the focus row's editor
//   --modify               change a few values (changed values are bold)
//   --open-colour-popup    open the colour popup of "Background color" (or of --select)
//   --open-menu            open the context menu of the focus row
//   --open-combo           drop the list of "Font size" (or of --select)
//   --dpi N                size everything for N DPI (96, 120, 144)
//   --screenshot FILE.bmp  write the window (and any open popup) to FILE and exit
#include <windows.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "demo_store.h"
#include "grid/color_popup.h"
#include "grid/inplace_editor.h"
#include "grid/property_grid_ctrl.h"
#include "screen_capture.h"

namespace {

struct Options {
    bool alphabetical = false;
    bool edit = false;
    bool modify = false;
    bool openColourPopup = false;
    bool openCombo = false;
    bool openMenu = false;
    int dpi = 0;
    std::string filter;
    std::string select;
    std::string screenshot;
};

constexpr UINT_PTR kOpenTimer = 1;
constexpr UINT_PTR kCaptureTimer = 2;
constexpr int kGridId = 1001;

Options g_options;
std::unique_ptr<CExtPropertyStore> g_store;
CExtPropertyGridCtrl* g_grid = nullptr;
HWND g_status = nullptr;

void SelectByName(const std::string& name) {
    CExtPropertyGridWnd& rows = g_grid->GetGrid();
    for (int row = 0; row < rows.RowCount(); ++row)
        if (rows.RowItem(row)->NameGet() == name) {
            rows.FocusSet(row);
            return;
        }
}

CExtPropertyValue* FindValue(const std::string& name) {
    for (int c = 0; c < g_store->ItemGetCount(); ++c)
        if (CExtPropertyItem* item = g_store->ItemGetAt(c)->ItemFind(name))
            if (item->IsValue()) return static_cast<CExtPropertyValue*>(item);
    return nullptr;
}

// The window, grown to take in the popup or drop-down list that is open.
RECT CaptureArea(HWND main) {
    RECT area;
    GetWindowRect(main, &area);
    HWND popup = CExtColorPopup::ActiveWindow();
    if (!popup) popup = FindWindowA("#32768", nullptr);  // an open popup menu
    HWND editor = g_grid->GetGrid().IsEditing() ? GetParent(g_grid->GetGrid().EditorHwnd()) : nullptr;
    if (HWND control = g_grid->GetGrid().EditorHwnd()) {
        char name[32] = {};
        GetClassNameA(control, name, sizeof name);
        editor = lstrcmpiA(name, "ComboBox") == 0 ? control : GetParent(control);
        COMBOBOXINFO info{};
        info.cbSize = sizeof(info);
        if (GetComboBoxInfo(editor, &info) && IsWindowVisible(info.hwndList)) popup = info.hwndList;
    }
    if (popup && IsWindowVisible(popup)) {
        RECT extra;
        GetWindowRect(popup, &extra);
        UnionRect(&area, &area, &extra);
    }
    return area;
}

void OnValueChanged(const NMPROPERTYGRID& nm) {
    CExtGridCell* cell = nm.item->ValueActiveGet();
    std::string line = std::string(nm.hdr.code == PGN_INPUTCOMPLETE ? "Input complete: " : "Value applied: ") +
                       nm.item->NameGet() + " = " + (cell ? cell->GetText() : std::string());
    SetWindowTextA(g_status, line.c_str());
}

LRESULT CALLBACK MainProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE: {
            g_grid = new CExtPropertyGridCtrl();
            g_grid->Create(hwnd, RECT{0, 0, 100, 100}, kGridId);
            if (g_options.dpi) g_grid->SetDpi(g_options.dpi);
            g_status = CreateWindowExA(0, "STATIC", "Change a value to see the notifications here.",
                                       WS_CHILD | WS_VISIBLE | SS_LEFTNOWORDWRAP | SS_NOPREFIX, 0, 0, 10, 10, hwnd,
                                       nullptr, GetModuleHandleA(nullptr), nullptr);
            SendMessageA(g_status, WM_SETFONT, reinterpret_cast<WPARAM>(g_grid->PaintManager().NormalFont()), FALSE);
            g_store.reset(BuildDemoStore());
            CExtPropertyGridComboBoxBar& bar = g_grid->GetComboBar();
            bar.PropertyStoreInsert(g_store.get());
            SendMessageA(bar.GetHwnd(), CB_SETCURSEL, 0, 0);
            bar.Show(false);
            g_grid->PropertyStoreSynchronize();
            g_grid->SetSorted(g_options.alphabetical);
            if (g_options.modify) {
                FindValue("Title")->ValueActiveGet()->SetText("Autumn 2026");
                FindValue("Speed")->ValueActiveGet()->SetText("5");
                FindValue("Reflections")->ValueActiveGet()->SetText("true");
            }
            if (!g_options.filter.empty()) {
                g_grid->ShowFilter(true);
                g_grid->SetFilterText(g_options.filter);
            }
            if (!g_options.select.empty())
                SelectByName(g_options.select);
            else
                g_grid->GetGrid().FocusSet(1);
            return 0;
        }
        case WM_SIZE: {
            int w = LOWORD(lParam), h = HIWORD(lParam);
            int margin = g_grid->PaintManager().Scale(8);
            int status = g_grid->PaintManager().TextHeight() + margin;
            SetWindowPos(g_grid->GetHwnd(), nullptr, margin, margin, w - 2 * margin, h - 2 * margin - status,
                         SWP_NOZORDER);
            SetWindowPos(g_status, nullptr, margin, h - status, w - 2 * margin, status - margin / 2, SWP_NOZORDER);
            return 0;
        }
        case WM_SETFOCUS: SetFocus(g_grid->GetGrid().GetHwnd()); return 0;
        case WM_NOTIFY: {
            const auto* nm = reinterpret_cast<const NMPROPERTYGRID*>(lParam);
            if (nm->hdr.idFrom == kGridId && (nm->hdr.code == PGN_INPUTCOMPLETE || nm->hdr.code == PGN_VALUEAPPLIED))
                OnValueChanged(*nm);
            return 0;
        }
        case WM_TIMER:
            KillTimer(hwnd, wParam);
            if (wParam == kOpenTimer) {
                if (!g_options.screenshot.empty()) SetTimer(hwnd, kCaptureTimer, 700, nullptr);
                if (g_options.edit) g_grid->GetGrid().BeginEdit();
                if (g_options.openColourPopup) {
                    SelectByName(g_options.select.empty() ? "Background color" : g_options.select);
                    g_grid->GetGrid().ClickButton(0);  // runs until the popup closes
                } else if (g_options.openMenu) {
                    if (!g_options.select.empty()) SelectByName(g_options.select);
                    // As Shift+F10 does; the menu runs until it closes.
                    SendMessageA(g_grid->GetHwnd(), WM_CONTEXTMENU,
                                 reinterpret_cast<WPARAM>(g_grid->GetGrid().GetHwnd()), -1);
                } else if (g_options.openCombo) {
                    SelectByName(g_options.select.empty() ? "Font size" : g_options.select);
                    g_grid->GetGrid().ClickButton(0);
                }
            } else if (wParam == kCaptureTimer) {
                RECT area = CaptureArea(hwnd);
                bool ok = CaptureScreenRect(area, g_options.screenshot.c_str());
                if (HWND popup = CExtColorPopup::ActiveWindow()) PostMessageA(popup, WM_KEYDOWN, VK_ESCAPE, 0);
                EndMenu();
                PostMessageA(hwnd, WM_CLOSE, 0, 0);
                if (!ok) PostQuitMessage(2);
            }
            return 0;
        case WM_DESTROY:
            delete g_grid;
            g_grid = nullptr;
            PostQuitMessage(0);
            return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

Options ParseOptions(int argc, char** argv) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        auto next = [&]() { return i + 1 < argc ? std::string(argv[++i]) : std::string(); };
        if (a == "--alphabetical")
            o.alphabetical = true;
        else if (a == "--edit")
            o.edit = true;
        else if (a == "--modify")
            o.modify = true;
        else if (a == "--open-colour-popup" || a == "--open-color-popup")
            o.openColourPopup = true;
        else if (a == "--open-combo")
            o.openCombo = true;
        else if (a == "--open-menu")
            o.openMenu = true;
        else if (a == "--dpi")
            o.dpi = std::atoi(next().c_str());  // 0 or nonsense: the screen's
        else if (a == "--filter")
            o.filter = next();
        else if (a == "--select")
            o.select = next();
        else if (a == "--screenshot")
            o.screenshot = next();
    }
    if (o.dpi < 48 || o.dpi > 480) o.dpi = 0;
    return o;
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show) {
    g_options = ParseOptions(__argc, __argv);
    WNDCLASSA wc{};
    wc.lpfnWndProc = MainProc;
    wc.hInstance = instance;
    wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_3DFACE + 1);
    wc.lpszClassName = "PwGridDemo";
    RegisterClassA(&wc);
    int dpi = g_options.dpi ? g_options.dpi : 96;
    RECT frame{0, 0, MulDiv(420, dpi, 96), MulDiv(540, dpi, 96)};
    AdjustWindowRect(&frame, WS_OVERLAPPEDWINDOW, FALSE);
    HWND main = CreateWindowExA(0, "PwGridDemo", "Property grid", WS_OVERLAPPEDWINDOW, 40, 40, frame.right - frame.left,
                                frame.bottom - frame.top, nullptr, nullptr, instance, nullptr);
    if (!main) return 1;
    ShowWindow(main, show);
    UpdateWindow(main);
    SetTimer(main, kOpenTimer, g_options.screenshot.empty() ? 100 : 800, nullptr);

    MSG msg;
    int result = 0;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        if (CExtPropertyGridCtrl::PreTranslateGridMessage(&msg)) continue;
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    result = static_cast<int>(msg.wParam);
    return result;
}
