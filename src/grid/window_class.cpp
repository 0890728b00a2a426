#include "grid/window_class.h"

HINSTANCE GridModuleHandle() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCSTR>(&GridModuleHandle), &module);
    return module ? module : GetModuleHandleA(nullptr);
}

bool EnsureGridWindowClass(const char* name, WNDPROC procedure, UINT style) {
    HINSTANCE instance = GridModuleHandle();
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
