#include "grid/window_binding.h"

#include <commctrl.h>

namespace {

// The subclassing functions of the common controls, bound by ordinal: older
// versions of the library, which a host may have loaded, export them by
// ordinal only.
struct SubclassApi {
    BOOL(WINAPI* set)(HWND, window_binding::SubclassFn, UINT_PTR, DWORD_PTR) = nullptr;
    BOOL(WINAPI* remove)(HWND, window_binding::SubclassFn, UINT_PTR) = nullptr;
    LRESULT(WINAPI* original)(HWND, UINT, WPARAM, LPARAM) = nullptr;
};

template <typename Fn>
void Bind(HMODULE module, WORD ordinal, Fn& fn) {
    fn = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(module, MAKEINTRESOURCEA(ordinal))));
}

const SubclassApi& Api() {
    static const SubclassApi api = [] {
        SubclassApi a;
        // The library this module is bound to (the version the host's
        // activation context chose), not just any loaded copy.
        HMODULE module = nullptr;
        GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCSTR>(&InitCommonControlsEx), &module);
        if (module) {
            Bind(module, 410, a.set);
            Bind(module, 412, a.remove);
            Bind(module, 413, a.original);
        }
        return a;
    }();
    return api;
}

}  // namespace

namespace window_binding {

bool Add(HWND hwnd, SubclassFn procedure, void* object) {
    return hwnd && Api().set && Api().set(hwnd, procedure, 0, reinterpret_cast<DWORD_PTR>(object));
}

void Remove(HWND hwnd, SubclassFn procedure) {
    if (hwnd && Api().remove) Api().remove(hwnd, procedure, 0);
}

}  // namespace window_binding

LRESULT CallOriginalProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return Api().original ? Api().original(hwnd, message, wParam, lParam)
                          : DefWindowProcA(hwnd, message, wParam, lParam);
}
