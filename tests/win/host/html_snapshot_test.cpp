// The HTML snapshot of render method 2, in-process under Wine. Wine has no
// HTML engine here, so every test but the last runs against the stand-in
// document of htmlfile_double.cpp, registered for "htmlfile" in the test
// prefix while the test runs; its journal shows each step the renderer
// took, and it counts every reference.
#include <windows.h>
#include <mshtml.h>
#include <mshtmhst.h>
#include <urlmon.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "import_patch.h"
#include "render/element_behavior.h"
#include "render/html_snapshot.h"
#include "test_pictures.h"

using test_pictures::Surface;

namespace {

// Two boxes as the double draws them: red at (4, 3) 10 × 6, green at
// (20, 2) 5 × 12; together 25 × 14.
const std::string kBoxes =
    "<div style=\"left:4px;top:3px;width:10px;height:6px;background:#C00000\"></div>"
    "<div style=\"left:20px;top:2px;width:5px;height:12px;background:#00A000\"></div>";

// What the renderer does to the body of every document before it is drawn.
const std::string kPrepared =
    "bgColor BSTR:transparent\nborderStyle none\nsetAttribute topmargin I4:0 0\n"
    "setAttribute leftmargin I4:0 0\nsetAttribute bottommargin I4:0 0\n";

// The host's page under the object: 4-pixel squares.
std::uint32_t Page(int x, int y) { return ((x / 4 + y / 4) & 1) ? 0x3060C0 : 0xF0E0D0; }

// What the boxes drawn at (left, top) show at (x, y), or background there.
std::uint32_t Expected(int x, int y, int left, int top, std::uint32_t background) {
    int bx = x - left, by = y - top;
    if (bx >= 4 && bx < 14 && by >= 3 && by < 9) return 0xC00000;
    if (bx >= 20 && bx < 25 && by >= 2 && by < 14) return 0x00A000;
    return background;
}

// Every pixel of rect is the boxes over the page (or over black without a
// captured background); every other pixel is the page.
void ExpectSnapshotAt(const Surface& surface, int width, int height, const RECT& rect, bool background = true) {
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            bool inside = x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
            std::uint32_t expected =
                inside ? Expected(x, y, rect.left, rect.top, background ? Page(x, y) : 0) : Page(x, y);
            ASSERT_EQ(surface.At(x, y), expected) << x << "," << y;
        }
    }
}

// The stand-in document's own exports.
class HtmlDouble {
public:
    HtmlDouble() : module_(LoadLibraryA("pwhtmlfile_double.dll")) {}
    ~HtmlDouble() { FreeLibrary(module_); }
    bool Loaded() const { return module_ != nullptr; }
    HRESULT Register() { return Get<HRESULT(WINAPI*)()>("DllRegisterServer")(); }
    HRESULT Unregister() { return Get<HRESULT(WINAPI*)()>("DllUnregisterServer")(); }
    void Reset() { Get<void (*)()>("HtmlDoubleReset")(); }
    void Set(const char* key, const char* value) {
        Get<void (*)(const char*, const char*)>("HtmlDoubleSet")(key, value);
    }
    std::string Journal() { return Get<const char* (*)()>("HtmlDoubleJournal")(); }
    std::string LoadedBytes() {
        int length = 0;
        const char* bytes = Get<const char* (*)(int*)>("HtmlDoubleLoaded")(&length);
        return std::string(bytes, static_cast<std::size_t>(length));
    }
    int Count(const char* what) { return Get<int (*)(const char*)>("HtmlDoubleCount")(what); }
    IUnknown* ClientSite() { return Get<IUnknown* (*)()>("HtmlDoubleClientSite")(); }

private:
    template <typename F>
    F Get(const char* name) {
        return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }
    HMODULE module_;
};

class ImportHook {
public:
    ImportHook(const char* dll, const char* function, void* replacement)
        : dll_(dll),
          function_(function),
          original_(ReplaceImport(GetModuleHandleA(nullptr), dll, function, replacement)) {}
    ~ImportHook() {
        if (original_) ReplaceImport(GetModuleHandleA(nullptr), dll_, function_, original_);
    }
    void* Original() const { return original_; }

private:
    const char* dll_;
    const char* function_;
    void* original_;
};

class HtmlSnapshot : public ::testing::Test {
protected:
    void SetUp() override {
        OleInitialize(nullptr);
        ASSERT_TRUE(html.Loaded());
        ASSERT_EQ(html.Register(), S_OK);
        html.Reset();
    }
    void TearDown() override {
        html.Unregister();
        OleUninitialize();
    }
    // References and objects of the double, which all come back to zero
    // when nothing holds a document any more.
    std::vector<int> Counts() { return {html.Count("objects"), html.Count("references"), html.Count("held")}; }

    HtmlDouble html;
};

TEST_F(HtmlSnapshot, LoadsThePageWaitsPreparesTheBodyAndDrawsOverTheHostsPage) {
    auto snapshot = std::make_unique<CHtmlSnapshot>();
    EXPECT_EQ(snapshot->LoadState(), 0);
    // The document completes on a timer, which only fires while the wait
    // runs the thread's messages.
    ASSERT_TRUE(snapshot->Render(kBoxes));
    EXPECT_EQ(snapshot->LoadState(), 4);
    EXPECT_EQ(html.LoadedBytes(),
              "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">\r\n<html>\r\n<head>\r\n"
              "<title></title>\r\n</head>\r\n<body bgcolor=\"transparent\">\r\n<span>\r\n" +
                  kBoxes + "</span>\r\n</body>\r\n</html>\r\n");
    EXPECT_EQ(html.Journal(),
              "SetClientSite\nLoad\nAdvise\ncomplete\nUnadvise\n" + kPrepared +
                  "scroll no\naddBehavior 1 no url UNKNOWN\nInvalidateRect all\npainter 2 4 zero\n");
    EXPECT_EQ(snapshot->ContentWidth(), 25);
    EXPECT_EQ(snapshot->ContentHeight(), 14);

    Surface surface(40, 30);
    surface.Fill(Page);
    RECT rect = {5, 4, 35, 24};
    snapshot->DrawSnapshot(surface.Dc(), rect);
    ExpectSnapshotAt(surface, 40, 30, rect);
    // The size in HIMETRIC at 96 pixels per inch, offered and taken back.
    EXPECT_EQ(html.Journal(), "SetExtent 1 794x529\nGetExtent 1\nDraw 1 -1 plain 0,0,30,20\n");

    // The document may choose its own size; an empty rectangle shows nothing.
    html.Set("extent", "12,8");
    Surface small(40, 30);
    small.Fill(Page);
    snapshot->DrawSnapshot(small.Dc(), rect);
    ExpectSnapshotAt(small, 40, 30, RECT{5, 4, 17, 12});
    html.Set("extent", "0,0");
    snapshot->DrawSnapshot(small.Dc(), RECT{9, 9, 9, 9});
    ExpectSnapshotAt(small, 40, 30, RECT{5, 4, 17, 12});
    html.Journal();

    snapshot.reset();
    EXPECT_EQ(html.Journal(), "removeBehavior 1\nDetach 1\nInvalidateRect all\n");
    EXPECT_EQ(Counts(), (std::vector<int>{0, 0, 0}));
}

HANDLE WINAPI NoEvent(SECURITY_ATTRIBUTES*, BOOL, BOOL, const char*) { return nullptr; }

TEST_F(HtmlSnapshot, AFailedStepOrNoHtmlComponentLeavesNothingToDrawUntilARenderSucceeds) {
    {
        // Without the ready event nothing starts.
        ImportHook events("kernel32.dll", "CreateEventA", reinterpret_cast<void*>(&NoEvent));
        ASSERT_TRUE(events.Original());
        CHtmlSnapshot snapshot;
        EXPECT_FALSE(snapshot.Render(kBoxes));
        EXPECT_EQ(snapshot.LoadState(), 0);
        EXPECT_EQ(html.Journal(), "");
    }
    html.Set("delay", "never");
    struct Case {
        const char* fail;
        const char* journal;  // the steps taken: none after the failed one
    };
    const Case cases[] = {
        {"IOleObject", ""},
        {"SetClientSite", "SetClientSite\n"},
        {"IViewObject", "SetClientSite\n"},
        {"IPersistStreamInit", "SetClientSite\n"},
        {"Load", "SetClientSite\nLoad\n"},
        {"IHTMLDocument2", "SetClientSite\nLoad\n"},
        {"IConnectionPointContainer", "SetClientSite\nLoad\n"},
        {"FindConnectionPoint", "SetClientSite\nLoad\n"},
        {"Advise", "SetClientSite\nLoad\nAdvise\n"},
    };
    for (const Case& c : cases) {
        {
            CHtmlSnapshot snapshot;
            html.Set("fail", c.fail);
            EXPECT_FALSE(snapshot.Render(kBoxes)) << c.fail;
            EXPECT_EQ(snapshot.LoadState(), 1) << c.fail;
            EXPECT_EQ(html.Journal(), c.journal) << c.fail;
            Surface surface(30, 20);
            snapshot.DrawSnapshot(surface.Dc(), RECT{0, 0, 30, 20});
            EXPECT_TRUE(surface.WhiteOutside(0, 0, 0, 0)) << c.fail;

            html.Set("fail", "");
            html.Set("delay", "0");
            EXPECT_TRUE(snapshot.Render(kBoxes)) << c.fail;
            snapshot.DrawSnapshot(surface.Dc(), RECT{0, 0, 30, 20});
            EXPECT_EQ(surface.At(5, 4), 0xC00000u) << c.fail;
            html.Set("delay", "never");
        }
        html.Journal();
        EXPECT_EQ(Counts(), (std::vector<int>{0, 0, 0})) << c.fail;
    }
    // Wine's own "htmlfile" cannot be created: there is no HTML engine.
    ASSERT_EQ(html.Unregister(), S_OK);
    CHtmlSnapshot snapshot;
    EXPECT_FALSE(snapshot.Render(kBoxes));
    EXPECT_EQ(snapshot.LoadState(), 1);
    EXPECT_EQ(html.Journal(), "");
}

TEST_F(HtmlSnapshot, WithoutABehaviorTheContentIsDrawnOverAnEmptyBackground) {
    html.Set("delay", "0");
    // No body: nothing prepared. No IHTMLElement2: no scroll bars taken
    // away, no size, no behavior.
    const std::pair<const char*, const char*> cases[] = {
        {"get_body", ""},
        {"IHTMLElement2", kPrepared.c_str()},
    };
    for (const auto& [fail, preparation] : cases) {
        html.Set("fail", fail);
        CHtmlSnapshot snapshot;
        EXPECT_TRUE(snapshot.Render(kBoxes)) << fail;
        EXPECT_EQ(snapshot.LoadState(), 4);
        EXPECT_EQ(html.Journal(), std::string("SetClientSite\nLoad\ncomplete\nAdvise\nUnadvise\n") + preparation);
        EXPECT_EQ(snapshot.ContentWidth(), 0);
        Surface surface(30, 20);
        surface.Fill(Page);
        RECT rect = {2, 3, 28, 19};
        snapshot.DrawSnapshot(surface.Dc(), rect);
        ExpectSnapshotAt(surface, 30, 20, rect, false);
        html.Journal();
    }
}

// --- the wait ----------------------------------------------------------------------

struct WindowLog {
    std::vector<UINT> messages;
    CHtmlSnapshot* snapshot = nullptr;
    int paints = 0;
    bool paintDrewSomething = false;
} g_window;

LRESULT CALLBACK LoggingWindow(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message >= 0x100 && message < WM_USER + 10) g_window.messages.push_back(message);
    if (message == WM_PAINT) {
        PAINTSTRUCT paint;
        BeginPaint(window, &paint);
        EndPaint(window, &paint);
        // The host repaints, and draws the object, while a render waits.
        Surface surface(30, 20);
        g_window.snapshot->DrawSnapshot(surface.Dc(), RECT{0, 0, 30, 20});
        g_window.paintDrewSomething |= !surface.WhiteOutside(0, 0, 0, 0);
        ++g_window.paints;
        return 0;
    }
    return DefWindowProcA(window, message, w, l);
}

TEST_F(HtmlSnapshot, TheWaitDropsKeysAndClicksButPaintsAndRunsTheRest) {
    CHtmlSnapshot snapshot;
    g_window = WindowLog();
    g_window.snapshot = &snapshot;
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = LoggingWindow;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = "PwSnapshotTestWindow";
    RegisterClassA(&windowClass);
    HWND window = CreateWindowExA(0, "PwSnapshotTestWindow", "", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                                  windowClass.hInstance, nullptr);
    ASSERT_NE(window, nullptr);
    html.Set("delay", "0");
    ASSERT_TRUE(snapshot.Render(kBoxes));  // a finished snapshot, replaced below

    g_window.messages.clear();
    g_window.paints = 0;
    html.Set("delay", "50");
    const UINT posted[] = {0x100, 0x108, 0x109, 0x200, 0x201, 0x209, 0x20A, WM_USER + 1};
    for (UINT message : posted) PostMessageA(window, message, 0, 0);
    InvalidateRect(window, nullptr, FALSE);
    ASSERT_TRUE(snapshot.Render(kBoxes));

    std::set<UINT> seen;
    for (UINT message : posted)
        if (std::find(g_window.messages.begin(), g_window.messages.end(), message) != g_window.messages.end())
            seen.insert(message);
    EXPECT_EQ(seen, (std::set<UINT>{0x109, 0x200, 0x20A, WM_USER + 1}));
    EXPECT_GE(g_window.paints, 1);
    EXPECT_FALSE(g_window.paintDrewSomething);  // a document was loading
    MSG left;
    EXPECT_FALSE(PeekMessageA(&left, window, 0x100, 0x209, PM_NOREMOVE));
    DestroyWindow(window);
    UnregisterClassA("PwSnapshotTestWindow", windowClass.hInstance);
}

// The clock and the wait, scripted: the budget of 90,000 ms is summed over
// the waits, and a wait that times out ends the load at once.
struct ScriptedWait {
    std::vector<DWORD> ticks;
    std::size_t nextTick = 0;
    DWORD answer = WAIT_OBJECT_0 + 1;  // input arrived
    std::vector<DWORD> limits;
} g_script;

DWORD WINAPI ScriptedTickCount() {
    DWORD tick = g_script.ticks[std::min(g_script.nextTick, g_script.ticks.size() - 1)];
    ++g_script.nextTick;
    return tick;
}

DWORD WINAPI ScriptedMsgWait(DWORD, const HANDLE*, BOOL, DWORD limit, DWORD) {
    g_script.limits.push_back(limit);
    return g_script.answer;
}

TEST_F(HtmlSnapshot, ADocumentThatNeverCompletesEndsAfterTheBudgetAndIsDrawnAsItIs) {
    html.Set("delay", "never");
    struct Case {
        std::vector<DWORD> ticks;
        DWORD answer;
        std::vector<DWORD> limits;
    };
    const Case cases[] = {
        // 29,990 ms, then 20,009 across the wrap of the counter (one tick
        // less), 40,001 (90,000 in all: not over), 1 more.
        {{0xFFFF8AD0, 0xFFFFFFF6, 20000, 60001, 60002}, WAIT_OBJECT_0 + 1, {90000, 60010, 40001, 0}},
        {{1000}, WAIT_TIMEOUT, {90000}},
    };
    for (const Case& c : cases) {
        g_script = ScriptedWait();
        g_script.ticks = c.ticks;
        g_script.answer = c.answer;
        CHtmlSnapshot snapshot;
        {
            ImportHook clock("kernel32.dll", "GetTickCount", reinterpret_cast<void*>(&ScriptedTickCount));
            ImportHook wait("user32.dll", "MsgWaitForMultipleObjects", reinterpret_cast<void*>(&ScriptedMsgWait));
            ASSERT_TRUE(clock.Original() && wait.Original());
            EXPECT_FALSE(snapshot.Render(kBoxes));
        }
        EXPECT_EQ(g_script.limits, c.limits);
        EXPECT_EQ(snapshot.LoadState(), 4);
        std::string journal = html.Journal();
        EXPECT_NE(journal.find("Advise\nClose 1\nUnadvise\nbgColor"), std::string::npos) << journal;
        // What loaded is drawn, over the captured page.
        Surface surface(30, 20);
        surface.Fill(Page);
        snapshot.DrawSnapshot(surface.Dc(), RECT{0, 0, 30, 20});
        ExpectSnapshotAt(surface, 30, 20, RECT{0, 0, 30, 20});
    }
}

// --- the COM faces ---------------------------------------------------------------------

TEST_F(HtmlSnapshot, TheClientSiteAnswersWhatTheBrowserAsks) {
    html.Set("delay", "0");
    CHtmlSnapshot snapshot;
    ASSERT_TRUE(snapshot.Render(kBoxes));
    IUnknown* site = html.ClientSite();
    ASSERT_NE(site, nullptr);

    IOleClientSite* clientSite = nullptr;
    IDispatch* ambient = nullptr;
    IDocHostUIHandler* handler = nullptr;
    ASSERT_EQ(site->QueryInterface(IID_IOleClientSite, reinterpret_cast<void**>(&clientSite)), S_OK);
    ASSERT_EQ(site->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&ambient)), S_OK);
    ASSERT_EQ(site->QueryInterface(IID_IDocHostUIHandler, reinterpret_cast<void**>(&handler)), S_OK);

    // Ambient properties, read only; VT_BOOL 1 rather than VARIANT_TRUE.
    struct Ambient {
        DISPID dispid;
        WORD flags;
        HRESULT result;
        VARTYPE type;
        LONG value;
    };
    const Ambient ambients[] = {
        {-5512, DISPATCH_PROPERTYGET, S_OK, VT_I4, 0x40000730},
        {-5502, DISPATCH_PROPERTYGET, S_OK, VT_BOOL, 1},
        {-5501, DISPATCH_PROPERTYGET, S_OK, VT_BOOL, 0},
        {-5511, DISPATCH_PROPERTYGET, DISP_E_MEMBERNOTFOUND, VT_EMPTY, 0},
        {-5512, DISPATCH_METHOD, DISP_E_MEMBERNOTFOUND, VT_EMPTY, 0},
        {-5512, DISPATCH_PROPERTYPUT, DISP_E_MEMBERNOTFOUND, VT_EMPTY, 0},
    };
    DISPPARAMS none = {nullptr, nullptr, 0, 0};
    for (const Ambient& a : ambients) {
        VARIANT value;
        VariantInit(&value);
        EXPECT_EQ(ambient->Invoke(a.dispid, IID_NULL, 0, a.flags, &none, &value, nullptr, nullptr), a.result)
            << a.dispid;
        EXPECT_EQ(V_VT(&value), a.type) << a.dispid;
        LONG given = a.type == VT_I4 ? V_I4(&value) : a.type == VT_BOOL ? V_BOOL(&value) : 0;
        EXPECT_EQ(given, a.value) << a.dispid;
    }

    // Host information: the flags given are kept, no scroll bars, and UTF-8
    // in addresses as the URL-moniker session option says.
    const char kSettings[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
    for (DWORD disable : {0u, 1u}) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kSettings, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr), 0);
        RegSetValueExA(key, "UrlEncoding", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&disable), sizeof disable);
        DOCHOSTUIINFO info = {};
        info.cbSize = sizeof info;
        info.dwFlags = 0x40;
        info.dwDoubleClick = 7;
        EXPECT_EQ(handler->GetHostInfo(&info), S_OK);
        EXPECT_EQ(info.dwFlags,
                  0x40u | DOCHOSTUIFLAG_SCROLL_NO |
                      (disable ? DOCHOSTUIFLAG_URL_ENCODING_DISABLE_UTF8 : DOCHOSTUIFLAG_URL_ENCODING_ENABLE_UTF8));
        EXPECT_EQ(info.dwDoubleClick, 0u);
        RegDeleteValueA(key, "UrlEncoding");
        RegCloseKey(key);
    }

    handler->Release();
    ambient->Release();
    clientSite->Release();
}

// --- resources ---------------------------------------------------------------------

// Device contexts and bitmaps made through the test program's imports (the
// renderer's among them) that still exist.
std::set<HGDIOBJ> g_made;
void* g_createDc = nullptr;
void* g_createBitmap = nullptr;

HDC WINAPI CountedCreateCompatibleDC(HDC dc) {
    HDC made = reinterpret_cast<HDC(WINAPI*)(HDC)>(g_createDc)(dc);
    g_made.insert(made);
    return made;
}

HBITMAP WINAPI CountedCreateCompatibleBitmap(HDC dc, int width, int height) {
    HBITMAP made = reinterpret_cast<HBITMAP(WINAPI*)(HDC, int, int)>(g_createBitmap)(dc, width, height);
    g_made.insert(made);
    return made;
}

int LiveGdiObjects() {
    int live = 0;
    for (HGDIOBJ object : g_made) live += GetObjectType(object) != 0;
    return live;
}

TEST_F(HtmlSnapshot, ThousandDrawsAndHundredRendersLeaveNothingBehind) {
    ImportHook dcs("gdi32.dll", "CreateCompatibleDC", reinterpret_cast<void*>(&CountedCreateCompatibleDC));
    ImportHook bitmaps("gdi32.dll", "CreateCompatibleBitmap", reinterpret_cast<void*>(&CountedCreateCompatibleBitmap));
    g_createDc = dcs.Original();
    g_createBitmap = bitmaps.Original();
    ASSERT_TRUE(g_createDc && g_createBitmap);
    g_made.clear();

    html.Set("delay", "0");
    Surface surface(30, 20);
    surface.Fill(Page);
    {
        CHtmlSnapshot snapshot;
        ASSERT_TRUE(snapshot.Render(kBoxes));
        snapshot.DrawSnapshot(surface.Dc(), RECT{0, 0, 30, 20});
        int gdi = LiveGdiObjects();
        std::vector<int> counts = Counts();
        ULONG references = snapshot.AddRef() - 1;
        snapshot.Release();
        for (int render = 0; render < 100; ++render) {
            ASSERT_TRUE(snapshot.Render(kBoxes));
            for (int draw = 0; draw < 10; ++draw) snapshot.DrawSnapshot(surface.Dc(), RECT{0, 0, 30, 20});
        }
        EXPECT_EQ(LiveGdiObjects(), gdi);
        EXPECT_EQ(Counts(), counts);
        EXPECT_EQ(snapshot.AddRef() - 1, references);
        snapshot.Release();

        // An empty body shows nothing but the captured page, and has no
        // scroll size, so the last one stays.
        ASSERT_TRUE(snapshot.Render(""));
        EXPECT_EQ(snapshot.ContentWidth(), 25);
        EXPECT_EQ(snapshot.ContentHeight(), 14);
        Surface page(30, 20);
        page.Fill(Page);
        snapshot.DrawSnapshot(page.Dc(), RECT{0, 0, 30, 20});
        ExpectSnapshotAt(page, 30, 20, RECT{0, 0, 0, 0});
        html.Journal();
    }
    // Ending the renderer lets the captured background go too.
    EXPECT_EQ(LiveGdiObjects(), 1);  // the test's own surface
    EXPECT_EQ(Counts(), (std::vector<int>{0, 0, 0}));
}

}  // namespace
