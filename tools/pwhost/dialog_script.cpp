#include "dialog_script.h"

#include <oleacc.h>

namespace {

// {618736E0-3C3D-11CF-810C-00AA00389B71}
const IID kIAccessible = {0x618736e0, 0x3c3d, 0x11cf, {0x81, 0x0c, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71}};
const UINT kTickMs = 100;
const int kGridId = 1001, kRowsId = 101, kDeveloperId = 5016, kWebsiteId = 149;
const int kPatienceTicks = 100;  // ten seconds for the dialog to appear

struct Script {
    HWND frame = nullptr;
    int count = 0;
    char** steps = nullptr;
    DialogScriptReport* report = nullptr;
    UINT_PTR timer = 0;
    int next = 0;
    int typed = 0;  // characters of the current "type" step already sent
    DWORD waitUntil = 0;
    int idleTicks = 0;
    int closingTicks = 0;  // since the script ended
    bool busy = false;
    bool done = false;
} g_script;

void Fail(const char* what, const char* detail) {
    DialogScriptReport* r = g_script.report;
    if (!r->failed) _snprintf(r->failure, sizeof r->failure - 1, "%s%s", what, detail);
    r->failed = true;
}

// The dialog: a visible dialog-class window owned by the frame.
HWND FindDialog() {
    for (HWND w = GetTopWindow(nullptr); w; w = GetWindow(w, GW_HWNDNEXT)) {
        char name[16] = {};
        GetClassNameA(w, name, sizeof name);
        if (strcmp(name, "#32770") == 0 && GetWindow(w, GW_OWNER) == g_script.frame && IsWindowVisible(w)) return w;
    }
    return nullptr;
}

IAccessible* RowsOf(HWND dialog) {
    HWND grid = GetDlgItem(dialog, kGridId);
    HWND rows = grid ? GetDlgItem(grid, kRowsId) : nullptr;
    IAccessible* accessible = nullptr;
    if (!rows ||
        FAILED(AccessibleObjectFromWindow(rows, OBJID_CLIENT, kIAccessible, reinterpret_cast<void**>(&accessible))))
        return nullptr;
    return accessible;
}

VARIANT Child(long id) {
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_I4;
    v.lVal = id;
    return v;
}

// A BSTR as text in the process code page; empty for null.
void Narrow(BSTR text, char* out, int size) {
    out[0] = 0;
    if (text) WideCharToMultiByte(CP_ACP, 0, text, -1, out, size, nullptr, nullptr);
    out[size - 1] = 0;
}

// The child id of the row named name, or 0.
long FindRow(IAccessible* rows, const char* name) {
    long count = 0;
    rows->get_accChildCount(&count);
    for (long id = 1; id <= count; ++id) {
        BSTR text = nullptr;
        char narrow[512];
        if (SUCCEEDED(rows->get_accName(Child(id), &text)))
            Narrow(text, narrow, sizeof narrow);
        else
            narrow[0] = 0;
        SysFreeString(text);
        if (strcmp(narrow, name) == 0) return id;
    }
    return 0;
}

void AppendJson(char*& buffer, const char* text) {
    size_t have = buffer ? strlen(buffer) : 0;
    size_t need = have + strlen(text) * 6 + 3;
    buffer = static_cast<char*>(realloc(buffer, need + 1));
    char* at = buffer + have;
    *at++ = '"';
    for (const unsigned char* c = reinterpret_cast<const unsigned char*>(text); *c; ++c) {
        if (*c == '"' || *c == '\\') {
            *at++ = '\\';
            *at++ = static_cast<char>(*c);
        } else if (*c < 0x20 || *c >= 0x80) {
            at += sprintf(at, "\\u%04x", *c);
        } else {
            *at++ = static_cast<char>(*c);
        }
    }
    *at++ = '"';
    *at = 0;
}

void AppendRaw(char*& buffer, const char* text) {
    size_t have = buffer ? strlen(buffer) : 0;
    buffer = static_cast<char*>(realloc(buffer, have + strlen(text) + 1));
    memcpy(buffer + have, text, strlen(text) + 1);
}

void NoteRows(IAccessible* rows) {
    char*& out = g_script.report->rows;
    free(out);
    out = nullptr;
    AppendRaw(out, "[");
    long count = 0;
    rows->get_accChildCount(&count);
    for (long id = 1; id <= count; ++id) {
        BSTR name = nullptr, value = nullptr;
        char n[512], v[512];
        rows->get_accName(Child(id), &name);
        rows->get_accValue(Child(id), &value);
        Narrow(name, n, sizeof n);
        Narrow(value, v, sizeof v);
        SysFreeString(name);
        SysFreeString(value);
        AppendRaw(out, id > 1 ? ",[" : "[");
        AppendJson(out, n);
        AppendRaw(out, ",");
        AppendJson(out, v);
        AppendRaw(out, "]");
    }
    AppendRaw(out, "]");
}

WPARAM KeyCode(const char* name) {
    struct {
        const char* name;
        WPARAM key;
    } keys[] = {{"space", VK_SPACE}, {"return", VK_RETURN}, {"escape", VK_ESCAPE}, {"delete", VK_DELETE},
                {"tab", VK_TAB},     {"up", VK_UP},         {"down", VK_DOWN},     {"f4", VK_F4}};
    for (const auto& k : keys)
        if (strcmp(k.name, name) == 0) return k.key;
    return 0;
}

bool SaveScreenRect(const RECT& area, const char* path) {
    int width = area.right - area.left, height = area.bottom - area.top;
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    bool saved = SaveBitmapAsBmp(bitmap, path);
    DeleteObject(bitmap);
    return saved;
}

void ClickButton(HWND dialog, int id) {
    HWND button = GetDlgItem(dialog, id);
    if (button)
        PostMessageA(button, BM_CLICK, 0, 0);
    else
        Fail("the dialog has no button ", id == IDOK ? "OK" : "Cancel");
    g_script.done = true;
}

// One step; false while the step needs more ticks.
bool RunStep(HWND dialog, const char* step) {
    const char* space = strchr(step, ' ');
    char verb[16] = {};
    size_t verbLength = space ? static_cast<size_t>(space - step) : strlen(step);
    if (verbLength >= sizeof verb) verbLength = sizeof verb - 1;
    memcpy(verb, step, verbLength);
    const char* arg = space ? space + 1 : "";

    if (strcmp(verb, "ok") == 0) {
        ClickButton(dialog, IDOK);
    } else if (strcmp(verb, "cancel") == 0) {
        ClickButton(dialog, IDCANCEL);
    } else if (strcmp(verb, "wait") == 0) {
        if (!g_script.waitUntil) g_script.waitUntil = GetTickCount() + static_cast<DWORD>(atoi(arg));
        if (static_cast<LONG>(GetTickCount() - g_script.waitUntil) < 0) return false;
        g_script.waitUntil = 0;
    } else if (strcmp(verb, "key") == 0) {
        WPARAM key = KeyCode(arg);
        HWND focus = GetFocus();
        if (!key)
            Fail("unknown key ", arg);
        else if (!focus)
            Fail("no window has the focus for ", arg);
        else {
            PostMessageA(focus, WM_KEYDOWN, key, 1);
            PostMessageA(focus, WM_KEYUP, key, 0xC0000001);
        }
    } else if (strcmp(verb, "type") == 0) {
        // One character per tick: the first may open an editor that takes the rest.
        if (arg[g_script.typed]) {
            if (HWND focus = GetFocus())
                PostMessageA(focus, WM_CHAR, static_cast<unsigned char>(arg[g_script.typed]), 1);
            ++g_script.typed;
            return false;
        }
        g_script.typed = 0;
    } else if (strcmp(verb, "shot") == 0) {
        RECT area, extra;
        GetWindowRect(g_script.frame, &area);
        GetWindowRect(dialog, &extra);
        UnionRect(&area, &area, &extra);
        if (!SaveScreenRect(area, arg)) Fail("cannot save ", arg);
    } else if (strcmp(verb, "select") == 0 || strcmp(verb, "set") == 0 || strcmp(verb, "rows") == 0) {
        IAccessible* rows = RowsOf(dialog);
        if (!rows) {
            Fail("no accessible grid rows for ", step);
            return true;
        }
        if (strcmp(verb, "rows") == 0) {
            NoteRows(rows);
        } else {
            char name[256] = {};
            const char* value = nullptr;
            if (strcmp(verb, "set") == 0) {
                const char* equals = strchr(arg, '=');
                if (!equals) {
                    Fail("set needs NAME=VALUE: ", arg);
                    rows->Release();
                    return true;
                }
                memcpy(name, arg, static_cast<size_t>(equals - arg) < sizeof name - 1 ? equals - arg : sizeof name - 1);
                value = equals + 1;
            } else {
                lstrcpynA(name, arg, sizeof name);
            }
            long id = FindRow(rows, name);
            if (!id) {
                Fail("no row named ", name);
            } else if (value) {
                int length = MultiByteToWideChar(CP_ACP, 0, value, -1, nullptr, 0);
                BSTR wide = SysAllocStringLen(nullptr, length);
                MultiByteToWideChar(CP_ACP, 0, value, -1, wide, length);
                HRESULT hr = rows->put_accValue(Child(id), wide);
                SysFreeString(wide);
                if (FAILED(hr)) Fail("the row refused the value of ", step);
            } else if (FAILED(rows->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, Child(id)))) {
                Fail("cannot select ", name);
            }
        }
        rows->Release();
    } else {
        Fail("unknown step ", step);
    }
    return true;
}

void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    if (g_script.busy) return;
    if (g_script.done) {
        // A dialog that does not close (another window of its own in front
        // of it, say) must not keep the host, and the test, waiting.
        if (FindDialog() && ++g_script.closingTicks > kPatienceTicks) {
            fprintf(stderr, "pwhost: script: the dialog did not close within ten seconds after the script ended\n");
            ExitProcess(1);
        }
        return;
    }
    g_script.busy = true;
    HWND dialog = FindDialog();
    DialogScriptReport* report = g_script.report;
    if (!dialog) {
        if (++g_script.idleTicks > kPatienceTicks) {
            Fail("the dialog did not appear", "");
            g_script.done = true;
        }
        g_script.busy = false;
        return;
    }
    if (!report->found) {
        report->found = true;
        report->frameDisabled = !IsWindowEnabled(g_script.frame);
        GetWindowTextA(dialog, report->caption, sizeof report->caption);
        GetDlgItemTextA(dialog, kDeveloperId, report->developer, sizeof report->developer);
        GetDlgItemTextA(dialog, kWebsiteId, report->website, sizeof report->website);
    }
    if (report->failed || g_script.next >= g_script.count) {
        ClickButton(dialog, IDCANCEL);
    } else if (RunStep(dialog, g_script.steps[g_script.next])) {
        ++g_script.next;
    }
    g_script.busy = false;
}

}  // namespace

void StartDialogScript(HWND frame, int stepCount, char** steps, DialogScriptReport* report) {
    g_script.frame = frame;
    g_script.count = stepCount;
    g_script.steps = steps;
    g_script.report = report;
    g_script.timer = SetTimer(nullptr, 0, kTickMs, Tick);
}

void StopDialogScript() {
    if (g_script.timer) KillTimer(nullptr, g_script.timer);
    g_script.timer = 0;
}
