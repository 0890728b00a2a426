#pragma once
// How our code finds the object behind a window: one way for each kind of
// window, each forgetting the object when the window goes.
//
// - Windows of our own classes: register the class with BoundWindowProc<T>
//   and pass the object as CreateWindowEx's last argument. It is kept in the
//   window's user data from WM_NCCREATE on; T::OnBindWindow(hwnd) hears of
//   the window, T::WindowProc(message, wParam, lParam) answers every message
//   after that, and T::OnUnbindWindow() is called at WM_NCDESTROY.
// - Dialogs of our own templates: BoundDialogProc<T> with the object as the
//   init parameter; T::DialogProc(dialog, message, wParam, lParam) answers
//   as a dialog procedure does, WM_INITDIALOG included.
// - Controls made by others that we listen to: SubclassControl(hwnd, object)
//   over the system's window subclassing; T::SubclassProc(hwnd, message,
//   wParam, lParam) answers and passes on with CallOriginalProc. The
//   subclass is removed at WM_NCDESTROY, or earlier by UnsubclassWindow.
#include <windows.h>

template <class T>
LRESULT CALLBACK BoundWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<T*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (message == WM_NCCREATE) {
        self = static_cast<T*>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams);
        SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        if (self) self->OnBindWindow(hwnd);
    }
    if (!self) return DefWindowProcA(hwnd, message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrA(hwnd, GWLP_USERDATA, 0);
        self->OnUnbindWindow();
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    return self->WindowProc(message, wParam, lParam);
}

// The object of a window of a class registered with BoundWindowProc<T>.
template <class T>
T* BoundObject(HWND hwnd) {
    return reinterpret_cast<T*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
}

template <class T>
INT_PTR CALLBACK BoundDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) SetWindowLongPtrA(dialog, DWLP_USER, lParam);
    auto* self = reinterpret_cast<T*>(GetWindowLongPtrA(dialog, DWLP_USER));
    if (!self) return FALSE;
    INT_PTR result = self->DialogProc(dialog, message, wParam, lParam);
    if (message == WM_NCDESTROY) SetWindowLongPtrA(dialog, DWLP_USER, 0);
    return result;
}

namespace window_binding {
using SubclassFn = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR);
bool Add(HWND hwnd, SubclassFn procedure, void* object);
void Remove(HWND hwnd, SubclassFn procedure);

template <class T>
LRESULT CALLBACK Thunk(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR object) {
    if (message == WM_NCDESTROY) Remove(hwnd, &Thunk<T>);
    return reinterpret_cast<T*>(object)->SubclassProc(hwnd, message, wParam, lParam);
}
}  // namespace window_binding

template <class T>
bool SubclassControl(HWND hwnd, T* object) {
    return window_binding::Add(hwnd, &window_binding::Thunk<T>, object);
}
template <class T>
void UnsubclassControl(HWND hwnd, T*) {
    window_binding::Remove(hwnd, &window_binding::Thunk<T>);
}
// The procedure the control had before it was subclassed.
LRESULT CallOriginalProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
