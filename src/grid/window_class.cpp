#include "grid/window_class.h"

bool EnsureGridWindowClass(const char* name, WNDPROC procedure, UINT style) {
    HINSTANCE instance = OwnModule();
    WNDCLASSA existing{};
    if (GetClassInfoA(instance, name, &existing)) {
        if (existing.lpfnWndProc == procedure) return true;
        UnregisterClassA(name, instance);
    }
    WNDCLASSA wc{};
    wc.style = style;
    wc.lpfnWndProc = procedure;
    wc.hInstance = instance;
    wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
    wc.lpszClassName = name;
    return RegisterClassA(&wc) != 0;
}
